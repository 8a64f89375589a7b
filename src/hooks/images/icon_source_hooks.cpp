#include "hooks/images/icon_source_hooks.h"

#include "core/format.h"
#include "core/settings.h"
#include "hooks/images/image_names.h"
#include "imaging/icon_effects.h"
#include "platform/platform.h"
#include "theme/app_icon_lookup.h"
#include "theme/icon_theming.h"
#include "theme/interface_image_lookup.h"
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

struct State {
    // WeatherImageKeys and WeatherImages. Nothing until the first request.
    std::optional<theme::KeyedImages> weatherImages;
    ImageRef SwitchKnobImage;
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
    if (!state().weatherImages) {
        return std::nullopt;
    }
    const std::vector<std::string> keys = WeatherImageKeys();
    return platform::description(PropertyList::Array(keys.begin(), keys.end()));
}

}  // namespace

std::vector<std::string> WeatherImageKeys() {
    return state().weatherImages ? state().weatherImages->keys() : std::vector<std::string>();
}

ImageRef SwitchKnobImage() {
    return state().SwitchKnobImage;
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
    if (theme::isThemedIcon(self.widgetIdentifier())) {
        return theme::ThemedIconImage(self.widgetIdentifier());
    }
    const ImageRef icon = orig();
    if (icon == nullptr) {
        return orig();
    }
    if (self.widgetIdentifier()) {
        return orig();
    }
    ImageRef image =
        IconEffects::imageWithImageScaledToSize(appIcon(self.widgetIdentifier(), icon), size);
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
    const ImageRef icon = orig();
    if (icon == nullptr) {
        return orig();
    }
    return IconEffects::imageWithImageScaledToSize(appIcon(bundleIdentifier, icon), icon->size());
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
    if (theme::isThemedIcon(name)) {
        return theme::ThemedIconImage(applicationIdentifier);
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
    ImageRef& knob = state().SwitchKnobImage;
    if (knob == nullptr) {
        knob = InterfaceImageLookup::deviceUIImageNamedOriginalUIImage("UISwitchKnob.png",
                                                                       original(self));
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
    std::optional<theme::KeyedImages>& images = state().weatherImages;
    if (!images) {
        images.emplace();
    }
    const std::string key = stringWithFormat("%@.%lld", name, style);
    if (images->contains(key)) {
        return images->image(key);
    }
    // The style is not asked for: every style of a condition gets the same image.
    ImageRef image = InterfaceImageLookup::deviceUIImageNamedFromBundleOriginalUIImage(
        name, std::string(kWeatherFramework), nullptr);
    if (image == nullptr) {
        return orig();
    }
    images->store(key, image);
    return image;
}

}  // namespace velmoranth::hooks
