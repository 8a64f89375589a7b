#include "theme/app_icon_hooks.h"

#include "core/format.h"
#include "core/settings.h"
#include "imaging/icon_effects.h"
#include "platform/platform.h"
#include "theme/icon_theming.h"
#include "theme/theme_selection.h"
#include "theme/themed_icons.h"

#include <optional>

namespace velmoranth::theme {

using core::NSLog;
using core::OriginalImplementation;
using core::settings;
using core::stringWithFormat;
using platform::ImageRef;
using platform::NullableString;
using platform::platform;
using platform::SBIconRef;

namespace {

NullableString nodeIdentifierOf(const SBIconRef& icon) {
    return icon ? icon->nodeIdentifier() : std::nullopt;
}

// The kept image of the icon, or the one that theming the platform's gives, which is then kept.
template <class PlatformImage>
ImageRef keptOrThemed(const NullableString& identifier, PlatformImage original) {
    createThemedIconsWhenAbsent();
    if (const std::optional<ImageRef> kept = findThemedIcon(identifier)) {
        return *kept;
    }
    ImageRef image = themedIcon(identifier, original());
    storeThemedIcon(identifier, image);
    return image;
}

}  // namespace

ImageRef UIImageApplicationIconHooks::_applicationIconImageForBundleIdentifierFormatScaleOniOS12(
    const OriginalImplementation<Signature>& original, platform::Class& self,
    NullableString bundleIdentifier, int format, double scale) {
    const auto orig = [&] { return original(self, bundleIdentifier, format, scale); };
    orig();
    if (settings().enableLogging) {
        NSLog(
            "VELMORANTH _applicationIconImageForBundleIdentifier arg1: %@ format: %i Scale:%f  "
            "Orig: %@",
            bundleIdentifier, format, scale, orig());
    }
    createThemedIconsWhenAbsent();
    const std::string key = stringWithFormat("%@.%i", bundleIdentifier, format);
    if (const std::optional<ImageRef> kept = findThemedIcon(key)) {
        // Before "enable" is tested: a kept icon comes back even with theming off.
        NSLog("Velmoranth useIconFromDict : %@", key);
        return *kept;
    }
    if (!settings().enable) {
        return orig();
    }
    NSLog("Velmoranth loadIconFromTheme : %@", bundleIdentifier);
    const ImageRef image = themedIcon(bundleIdentifier, orig());
    ImageRef result =
        imaging::IconEffects::imageWithImageScaledToSize(image, platform::sizeOf(orig()));
    storeThemedIcon(key, result);
    return result;
}

ImageRef UIImageApplicationIconHooks::_applicationIconImageForBundleIdentifierFormatScaleOniOS13(
    const OriginalImplementation<Signature>& original, platform::Class& self,
    NullableString bundleIdentifier, int format, double scale) {
    const auto orig = [&] { return original(self, bundleIdentifier, format, scale); };
    orig();
    const ImageRef second = orig();
    if (!bundleIdentifier || second == nullptr) {
        return orig();
    }
    if (settings().enableLogging) {
        NSLog("VELMORANTH _applicationIconImageForBundleIdentifier arg1: %@  Orig: %@",
              bundleIdentifier, orig());
    }
    if (!settings().enable) {
        return orig();
    }
    const ImageRef image = themedIcon(bundleIdentifier, orig());
    return imaging::IconEffects::imageWithImageScaledToSize(image, platform::sizeOf(orig()));
}

ImageRef SBApplicationIconHooks::getUnmaskedIconImage(
    const OriginalImplementation<Signature>& original, platform::SBApplicationIcon& self,
    int format) {
    const auto orig = [&] { return original(self, format); };
    orig();
    if (!platform().coreFoundation.isSystemVersionAtLeast(12, 0, 0) || !settings().enable) {
        return orig();
    }
    if (settings().enableLogging) {
        const ImageRef image = orig();
        NSLog("VELMORANTH MainIcons, %@  With Identifier: %@", image, self.leafIdentifier());
    }
    return keptOrThemed(self.leafIdentifier(), orig);
}

ImageRef SBHIconImageCacheHooks::imageForIcon(const OriginalImplementation<Signature>& original,
                                              platform::SBHIconImageCache& self, SBIconRef icon) {
    const auto orig = [&] { return original(self, icon); };
    original.givesObject(self, icon);
    if (!settings().enable) {
        return orig();
    }
    if (!original.givesObject(self, icon)) {
        return orig();
    }
    const NullableString identifier = nodeIdentifierOf(icon);
    if (settings().enableLogging) {
        NSLog("VELMORANTH MainIcons, %@  With Identifier: %@", orig(), identifier);
    }
    if (identifier == "com.apple.mobilecal") {
        return orig();  // drawn from the theme's calendar settings elsewhere
    }
    return keptOrThemed(identifier, orig);
}

ImageRef SBHIconImageCacheHooks::unmaskedImageForIcon(
    const OriginalImplementation<Signature>& original, platform::SBHIconImageCache& self,
    SBIconRef icon) {
    const auto orig = [&] { return original(self, icon); };
    original.givesObject(self, icon);
    if (!settings().enable) {
        return orig();
    }
    if (icon == nullptr) {
        return orig();
    }
    const NullableString identifier = nodeIdentifierOf(icon);
    if (settings().enableLogging) {
        NSLog("VELMORANTH MainIcons, %@  With Identifier: %@", orig(), identifier);
    }
    return keptOrThemed(identifier, orig);
}

ImageRef SBIconImageViewHooks::contentsImage(const OriginalImplementation<Signature>& original,
                                             platform::SBIconImageView& self) {
    const auto orig = [&] { return original(self); };
    orig();
    if (!deviceIsPad() || !settings().enable) {
        return orig();
    }
    if (orig() == nullptr) {
        return orig();
    }
    const SBIconRef icon = self.icon();
    const NullableString identifier = icon ? icon->uniqueIdentifier() : std::nullopt;
    if (settings().enableLogging) {
        NSLog("VELMORANTH SBIconImageView, %@ contentsImage: %@", orig(), identifier);
    }
    createThemedIconsWhenAbsent();
    if (const std::optional<ImageRef> kept = findThemedIcon(identifier)) {
        return *kept;
    }
    ImageRef image = themedIcon(identifier, orig());
    if (image == nullptr || !identifier) {
        return orig();
    }
    storeThemedIcon(identifier, image);
    return image;
}

}  // namespace velmoranth::theme
