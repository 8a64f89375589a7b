#include "theme/interface_image_lookup.h"

#include "core/format.h"
#include "core/settings.h"
#include "platform/platform.h"
#include "theme/keyed_images.h"
#include "theme/theme_selection.h"
#include "tools/image_dump.h"

#include <optional>

namespace velmoranth::theme {

using core::NSLog;
using core::stringWithFormat;
using platform::ImageRef;
using platform::NullableString;
using platform::platform;
using tools::ImageDump;

namespace {

// ThemedUIImageNames and ThemedUIImages: one pair for both searches, keyed by the name alone. Lives
// as long as the process and only grows; a theme change does not empty it.
KeyedImages& ThemedUIImages() {
    static KeyedImages instance;
    return instance;
}

// What either search found under that name before; a line in the log tells of it, always.
std::optional<ImageRef> keptImage(const NullableString& name) {
    std::optional<ImageRef> kept = ThemedUIImages().find(name);
    if (kept) {
        NSLog("VELMORANTH WeatherImageLoader Dict HasImg");
    }
    return kept;
}

KeyedImages& seenImages() {
    static KeyedImages instance;
    return instance;
}

ImageRef loadImage(const std::string& path) {
    return platform().images.imageWithContentsOfFile(path);
}

// The image that the theme has for the bundle's name, nil when none.
ImageRef searchBundle(const ThemeName& themeName, const NullableString& bundleIdentifier,
                      const NullableString& name) {
    if (ImageRef image = loadImage(stringWithFormat("/Library/Themes/%@/Bundles/%@/%@@3x.png",
                                                    themeName, bundleIdentifier, name))) {
        if (core::lookupLogging()) {
            NSLog("Velmoranth found bundle @3x image: %@ in theme: %@ fromBundle: %@", name,
                  themeName, bundleIdentifier);
        }
        return image;
    }
    if (ImageRef image = loadImage(stringWithFormat("/Library/Themes/%@/Bundles/%@/%@.png",
                                                    themeName, bundleIdentifier, name))) {
        if (core::lookupLogging()) {
            NSLog("Velmoranth found bundle .png image: %@ in theme: %@ fromBundle: %@", name,
                  themeName, bundleIdentifier);
        }
        return image;
    }
    if (ImageRef image = loadImage(stringWithFormat("/Library/Themes/%@/Bundles/%@/%@", themeName,
                                                    bundleIdentifier, name))) {
        if (core::lookupLogging()) {
            NSLog("Velmoranth found bundle no ext image: %@ in theme: %@ fromBundle: %@", name,
                  themeName, bundleIdentifier);
        }
        return image;
    }
    return nullptr;
}

// The theme's loose image of that name, nil when none.
ImageRef searchLoose(const ThemeName& themeName, const NullableString& name) {
    if (ImageRef image =
            loadImage(stringWithFormat("/Library/Themes/%@/UIImages/%@@3x.png", themeName, name))) {
        if (core::lookupLogging()) {
            NSLog("VelmoranthImageDump @3x found image %@ in theme: %@ ", name, themeName);
        }
        return image;
    }
    if (ImageRef image =
            loadImage(stringWithFormat("/Library/Themes/%@/UIImages/%@@2x.png", themeName, name))) {
        if (core::lookupLogging()) {
            NSLog("VelmoranthImageDump @2x found image %@ in theme: %@ ", name, themeName);
        }
        return image;
    }
    if (ImageRef image =
            loadImage(stringWithFormat("/Library/Themes/%@/UIImages/%@.png", themeName, name))) {
        if (core::lookupLogging()) {
            NSLog("VelmoranthImageDump found image %@ in theme: %@ ", name, themeName);
        }
        return image;
    }
    if (ImageRef image =
            loadImage(stringWithFormat("/Library/Themes/%@/UIImages/%@", themeName, name))) {
        if (core::lookupLogging()) {
            NSLog("VelmoranthImageDump no ext found image %@ in theme: %@ ", name, themeName);
        }
        return image;
    }
    return nullptr;
}

}  // namespace

ImageRef InterfaceImageLookup::deviceUIImageNamedFromBundleOriginalUIImage(
    const NullableString& name, const NullableString& bundleIdentifier, const ImageRef& original) {
    if (const std::optional<ImageRef> kept = keptImage(name)) {
        return *kept;
    }
    core::refreshLookupSwitches();
    if (core::lookupImageDump()) {
        ImageDump::VelmoranthImageDumpNamedInBundle(original, name, bundleIdentifier);
    }
    if (core::lookupLogging()) {
        NSLog("VelmoranthImageLoader loadUIImage %@   fromBundle: %@     ForOrigImg: %@ ", name,
              bundleIdentifier, original);
    }
    const std::vector<ThemeName> themes = activeThemes();
    if (core::lookupLogging()) {
        const platform::Size size = platform::sizeOf(original);
        NSLog("VELMORANTH LOAD IMAGE: %@ BUNDLEID: %@ Image Width: %f Image Height: %f", name,
              bundleIdentifier, size.width, size.height);
    }
    for (const ThemeName& themeName : themes) {
        if (ImageRef image = searchBundle(themeName, bundleIdentifier, name)) {
            ThemedUIImages().store(name, image);
            return image;
        }
    }
    return original;
}

ImageRef InterfaceImageLookup::deviceUIImageNamedOriginalUIImage(const NullableString& name,
                                                                 const ImageRef& original) {
    if (const std::optional<ImageRef> kept = keptImage(name)) {
        return *kept;
    }
    core::refreshLookupSwitches();
    if (core::lookupImageDump()) {
        ImageDump::VelmoranthImageDumpNamedInBundle(original, name, std::nullopt);
    }
    if (core::lookupLogging()) {
        NSLog("VelmoranthImageLoader loadUIImage %@ ForOrigImg: %@ ", name, original);
    }
    for (const ThemeName& themeName : activeThemes()) {
        if (ImageRef image = searchLoose(themeName, name)) {
            ThemedUIImages().store(name, image);
            return image;
        }
    }
    return original;
}

ImageRef InterfaceImageLookup::searchFolderForImageStr(const std::string& folder,
                                                       const std::string& imageString) {
    return searchFoldersForImageString({folder}, imageString);
}

ImageRef InterfaceImageLookup::searchFoldersForImageString(const std::vector<std::string>& folders,
                                                           const std::string& imageString) {
    for (const ThemeName& themeName : activeThemes()) {
        for (const std::string& folder : folders) {
            if (ImageRef image = loadImage(
                    stringWithFormat("/Library/Themes/%@/%@%@", themeName, folder, imageString))) {
                return image;
            }
        }
    }
    return nullptr;
}

bool InterfaceImageLookup::hasSearchForImageNamedOrBundleForImg(const std::string& name,
                                                                const ImageRef& image) {
    if (!seenImages().storeIfNew(name, image)) {
        return true;
    }
    NSLog("Velmoranth UIDictHasImg : %@", name);
    return false;
}

}  // namespace velmoranth::theme
