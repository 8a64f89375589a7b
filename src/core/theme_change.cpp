#include "core/theme_change.h"

#include "core/format.h"
#include "core/settings.h"
#include "core/system_versions.h"
#include "imaging/icon_effects.h"
#include "platform/platform.h"
#include "theme/themed_icons.h"

#include <string_view>
#include <vector>

namespace velmoranth::core {

using platform::NullableString;
using platform::platform;

namespace {

// The format of the home screen's main icons.
constexpr int kHomeScreenFormat = 2;
// How a key of the iOS 12 replacement ends for that format.
constexpr std::string_view kHomeScreenEnding = ".2";

void clearEffectsAndIcons() {
    imaging::IconEffects::clearIconOverlay();
    imaging::IconEffects::clearIconMask();
    imaging::IconEffects::clearShadowImg();
    theme::dropThemedIcons();
}

// The bundle identifier in a key of the iOS 12 replacement; nil for any other key, whose icon is
// asked for all the same.
NullableString bundleIdentifierOf(const std::string& key) {
    if (!key.ends_with(kHomeScreenEnding)) {
        return std::nullopt;
    }
    return key.substr(0, key.size() - kHomeScreenEnding.size());
}

void requestIconAgain(const NullableString& bundleIdentifier) {
    NSLog("Velmoranth updateIcon : %@", bundleIdentifier);
    platform().images.applicationIconImageForBundleIdentifierFormatScale(
        bundleIdentifier, kHomeScreenFormat, platform().screen.scale());
}

}  // namespace

void ThemePreferencesChangedCallback(platform::DarwinNotificationCenter& /*center*/,
                                     void* /*observer*/, const std::string& name,
                                     const void* /*object*/,
                                     const platform::Dictionary* /*userInfo*/) {
    if (settings().enableLogging) {
        NSLog(
            "VELMORANTH **********************************************Theme "
            "PreferencesChangedCallback CFStringRef:%@ "
            "********************************************",
            name);
    }
    loadSettings();
    if (!(platform().coreFoundation.versionNumber() > kNewestiOS12)) {
        // The requests fill the new list while this one is walked.
        const std::vector<std::string> identifiers = theme::ThemedIconIdentifiers();
        clearEffectsAndIcons();
        for (const std::string& key : identifiers) {
            requestIconAgain(bundleIdentifierOf(key));
        }
    } else {
        clearEffectsAndIcons();
    }
    NSLog("Velmoranth UpdateIcons ");
}

}  // namespace velmoranth::core
