#include "theme/app_icon_lookup.h"

#include "core/format.h"
#include "core/settings.h"
#include "platform/platform.h"
#include "theme/theme_selection.h"
#include "tools/image_dump.h"

#include <string>

namespace velmoranth::theme {

using core::NSLog;
using core::stringWithFormat;
using platform::ImageRef;
using platform::NullableString;
using platform::platform;

ImageRef AppIconLookup::searchforIconInIconBundlesWithLeafIdentifierForImg(
    const NullableString& leafIdentifier, const ImageRef& fallBack) {
    core::refreshIconLookupSwitches();
    if (core::lookupImageDump()) {
        tools::ImageDump::VelmoranthImageDumpNamedInBundle(fallBack, leafIdentifier, "IconBundles");
    }
    if (core::lookupLogging()) {
        NSLog("Velmoranth.M searchforIconInIconBundlesWithLeafIdentifier: %@", leafIdentifier);
    }
    for (const ThemeName& themeName : activeThemes()) {
        if (core::lookupLogging()) {
            NSLog("Velmoranth GetICON  /Library/Themes/%@/IconBundles/%@-large.png", themeName,
                  leafIdentifier);
        }
        const std::string path = stringWithFormat("/Library/Themes/%@/IconBundles/%@-large.png",
                                                  themeName, leafIdentifier);
        if (platform().fileManager.fileExistsAtPath(path)) {
            if (core::lookupLogging()) {
                NSLog("Velmoranth BUNDLE FOUND in theme %@/%@-large ", themeName, leafIdentifier);
            }
            return platform().images.imageWithContentsOfFile(path);
        }
    }
    return fallBack;
}

}  // namespace velmoranth::theme
