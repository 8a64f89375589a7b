#include "hooks/images/icon_source_hooks.h"

#include "core/format.h"
#include "core/settings.h"
#include "hooks/images/image_names.h"
#include "imaging/icon_effects.h"
#include "platform/platform.h"
#include "theme/app_icon_lookup.h"
#include "theme/icon_theming.h"
#include "theme/interface_image_lookup.h"
#include "theme/kept_image.h"
#include "theme/keyed_images.h"
#include "theme/themed_icons.h"

#include <optional>

namespace velmoranth::hooks {

using core::NSLog;
using core::OriginalImplementation;
using core::settings;
using core::stringWithFormat;
using imaging::IconEffects;
using platform::ImageRef;
using platform::NullableString;
using platform::ObjectRef;
using platform::PropertyList;
using platform::Size;
using theme::AppIconLookup;
using theme::InterfaceImageLookup;

namespace {

// For all threads, as the rest of what is kept: each is made once, here.
struct State {
    theme::KeyedImages weatherImages;  // WeatherImageKeys and WeatherImages
    theme::KeptImage SwitchKnobImage;
};

State& state() {
    static State instance;
    return instance;
}

ImageRef appIcon(const NullableString& identifier, const ImageRef& fallBack) {
    return AppIconLookup::searchforIconInIconBundlesWithLeafIdentifierForImg(identifier, fallBack);
}

// What "%@" prints for WeatherImageKeys: nil before there are any.
NullableString weatherKeysDescription() {
    const std::optional<std::vector<std::string>> keys = state().weatherImages.keys();
    return keys ? NullableString(
                      platform::description(PropertyList::Array(keys->begin(), keys->end())))
                : std::nullopt;
}

}  // namespace

std::vector<std::string> WeatherImageKeys() {
    return state().weatherImages.keys().value_or(std::vector<std::string>());
}

ImageRef SwitchKnobImage() {
    return state().SwitchKnobImage.image();
}

ImageRef WGWidgetInfoHooks::_queue_iconWithSizeScaleForWidgetWithIdentifierExtension(
    const OriginalImplementation<Signature>& original, platform::WGWidgetInfo& self, Size size,
    double scale, NullableString identifier, ObjectRef extension) {
    const auto orig = [&] { return original(self, size, scale, identifier, extension); };
    orig();
    if (settings().enableLogging) {
        NSLog("VELMORANTH WGWidgetInfo _queue_iconWithSize: %@  identifier: %@  extension: %@",
              orig(), identifier, extension);
    }
    if (!settings().enable) {
        return orig();
    }
    theme::createThemedIconsWhenAbsent();
    if (const std::optional<ImageRef> kept = theme::findThemedIcon(self.widgetIdentifier())) {
        return *kept;
    }
    if (orig() == nullptr) {
        return orig();
    }
    if (self.widgetIdentifier()) {
        return orig();
    }
    const NullableString searched = self.widgetIdentifier();
    ImageRef image = IconEffects::imageWithImageScaledToSize(appIcon(searched, orig()), size);
    theme::storeThemedIcon(self.widgetIdentifier(), image);
    return image;
}

ImageRef
SBSwitcherAppSuggestionBannerViewHooks::_iconImageFromAppWithBundleIdentifierWithIconImageCache(
    const OriginalImplementation<Signature>& original,
    platform::SBSwitcherAppSuggestionBannerView& self, NullableString bundleIdentifier,
    ObjectRef iconImageCache) {
    const auto orig = [&] { return original(self, bundleIdentifier, iconImageCache); };
    orig();
    if (settings().enableLogging) {
        NSLog(
            "VELMORANTH SBSwitcherAppSuggestionBannerView _icon: %@    identifier: %@ "
            "withIconImageCache:  %@",
            orig(), bundleIdentifier, iconImageCache);
    }
    if (!settings().enable) {
        return orig();
    }
    if (orig() == nullptr) {
        return orig();
    }
    const ImageRef image = appIcon(bundleIdentifier, orig());
    return IconEffects::imageWithImageScaledToSize(image, platform::sizeOf(orig()));
}

ImageRef PKIconImageCacheHooks::imageForKey(const OriginalImplementation<Signature>& original,
                                            platform::PKIconImageCache& self, NullableString key) {
    const auto orig = [&] { return original(self, key); };
    orig();
    if (settings().enableLogging) {
        NSLog("VELMORANTH PKIconImageCache: imageForKey: %@ Key : %@", orig(), key);
    }
    if (!settings().enable) {
        return orig();
    }
    const ImageRef image = theme::withOverlay(
        theme::withIconMask(InterfaceImageLookup::deviceUIImageNamedFromBundleOriginalUIImage(
            key, "com.apple.Preferences", orig())));
    return IconEffects::imageWithImageScaledToSize(image, platform::sizeOf(orig()));
}

ImageRef UNNotificationIconHooks::_initWithNamePathApplicationIdentifier(
    const OriginalImplementation<Signature>& original, platform::UNNotificationIcon& self,
    NullableString name, NullableString path, NullableString applicationIdentifier) {
    const auto orig = [&] { return original(self, name, path, applicationIdentifier); };
    orig();
    if (!settings().enable) {
        return orig();
    }
    if (settings().enableLogging) {
        NSLog("VELMORANTH UNNotificationIcon, %@  With Identifier: %@", orig(),
              applicationIdentifier);
    }
    if (orig() == nullptr) {
        return orig();
    }
    theme::createThemedIconsWhenAbsent();
    // Looked for by the name, kept under the identifier.
    if (const std::optional<ImageRef> kept = theme::findThemedIcon(name, applicationIdentifier)) {
        return *kept;
    }
    ImageRef image = theme::themedIcon(applicationIdentifier, orig());
    theme::storeThemedIcon(applicationIdentifier, image);
    return image;
}

ImageRef APWUtilHooks::iconForBundleIdentifier(const OriginalImplementation<Signature>& original,
                                               platform::Class& self,
                                               NullableString bundleIdentifier) {
    const auto orig = [&] { return original(self, bundleIdentifier); };
    orig();
    if (settings().enableLogging) {
        // The text names another class and method, as callers of the log have come to expect.
        NSLog("VELMORANTH APWAppIconAndLabelView _loadImageWithBundleIdentifier %@ Icon: %@",
              bundleIdentifier, orig());
    }
    return settings().enable ? theme::themedIcon(bundleIdentifier, orig()) : orig();
}

ImageRef UISwitchModernVisualElementHooks::_effectiveThumbImage(
    const OriginalImplementation<Signature>& original,
    platform::UISwitchModernVisualElement& self) {
    original(self);
    if (!settings().enable) {
        return original(self);
    }
    ImageRef knob = state().SwitchKnobImage.image();
    if (knob == nullptr) {
        knob = InterfaceImageLookup::deviceUIImageNamedOriginalUIImage("UISwitchKnob.png",
                                                                       original(self));
        state().SwitchKnobImage.keep(knob);
    }
    return knob;
}

ImageRef WeatherImageLoaderHooks::conditionImageNamedStyle(
    const OriginalImplementation<Signature>& original, platform::Class& self, NullableString name,
    long long style) {
    const auto orig = [&] { return original(self, name, style); };
    orig();
    if (settings().enableLogging) {
        NSLog(
            "VELMORANTH WeatherImageLoader IOS13+ ONLY, conditionImageNamed: %@  orig: %@  Style: "
            "%lld   WeatherImgArray: %@",
            name, orig(), style, weatherKeysDescription());
    }
    if (!settings().enable) {
        return orig();
    }
    theme::KeyedImages& images = state().weatherImages;
    images.createWhenAbsent();
    const std::string key = stringWithFormat("%@.%lld", name, style);
    if (const std::optional<ImageRef> kept = images.find(key)) {
        return *kept;
    }
    // The style is not asked for: every style of a condition gets the same image.
    ImageRef image = InterfaceImageLookup::deviceUIImageNamedFromBundleOriginalUIImage(
        name, std::string(kWeatherFramework), nullptr);
    if (image == nullptr) {
        return orig();
    }
    images.store(key, image);
    return image;
}

}  // namespace velmoranth::hooks
