// Replacements of the other services through which app icons and a few small images reach the
// screen: widgets, the app switcher, the settings app, notifications, switches, the weather. Each
// calls the platform's method once at the start and drops the result, then anew wherever its result
// is needed.
#pragma once

#include "core/original_implementation.h"
#include "platform/foundation.h"
#include "platform/springboard.h"
#include "platform/uikit.h"

#include <string>
#include <vector>

namespace velmoranth::hooks {

struct WGWidgetInfoHooks {
    // size, scale, identifier, extension
    using Signature = platform::ImageRef(platform::WGWidgetInfo&, platform::Size, double,
                                         platform::NullableString, platform::ObjectRef);

    // Themes a widget that has no identifier, and no other.
    static platform::ImageRef _queue_iconWithSizeScaleForWidgetWithIdentifierExtension(
        const core::OriginalImplementation<Signature>& original, platform::WGWidgetInfo& self,
        platform::Size size, double scale, platform::NullableString identifier,
        platform::ObjectRef extension);
};

struct SBSwitcherAppSuggestionBannerViewHooks {
    // bundle identifier, icon image cache
    using Signature = platform::ImageRef(platform::SBSwitcherAppSuggestionBannerView&,
                                         platform::NullableString, platform::ObjectRef);

    static platform::ImageRef _iconImageFromAppWithBundleIdentifierWithIconImageCache(
        const core::OriginalImplementation<Signature>& original,
        platform::SBSwitcherAppSuggestionBannerView& self,
        platform::NullableString bundleIdentifier, platform::ObjectRef iconImageCache);
};

struct PKIconImageCacheHooks {
    using Signature = platform::ImageRef(platform::PKIconImageCache&, platform::NullableString);

    static platform::ImageRef imageForKey(const core::OriginalImplementation<Signature>& original,
                                          platform::PKIconImageCache& self,
                                          platform::NullableString key);
};

struct UNNotificationIconHooks {
    // name, path, application identifier
    using Signature = platform::ImageRef(platform::UNNotificationIcon&, platform::NullableString,
                                         platform::NullableString, platform::NullableString);

    // Gives the icon's image in the place of an initialised object.
    static platform::ImageRef _initWithNamePathApplicationIdentifier(
        const core::OriginalImplementation<Signature>& original, platform::UNNotificationIcon& self,
        platform::NullableString name, platform::NullableString path,
        platform::NullableString applicationIdentifier);
};

struct APWUtilHooks {
    using Signature = platform::ImageRef(platform::Class&, platform::NullableString);

    static platform::ImageRef iconForBundleIdentifier(
        const core::OriginalImplementation<Signature>& original, platform::Class& self,
        platform::NullableString bundleIdentifier);
};

struct UISwitchModernVisualElementHooks {
    using Signature = platform::ImageRef(platform::UISwitchModernVisualElement&);

    // The first answer serves every switch of the process, also after a theme change.
    static platform::ImageRef _effectiveThumbImage(
        const core::OriginalImplementation<Signature>& original,
        platform::UISwitchModernVisualElement& self);
};

struct WeatherImageLoaderHooks {
    // condition, style
    using Signature = platform::ImageRef(platform::Class&, platform::NullableString, long long);

    // What was found stays, also after a theme change.
    static platform::ImageRef conditionImageNamedStyle(
        const core::OriginalImplementation<Signature>& original, platform::Class& self,
        platform::NullableString name, long long style);
};

// Both on any thread: the images are kept under a lock (theme/keyed_images.h, theme/kept_image.h).

// WeatherImageKeys: "<condition>.<style>" of each weather image that was found, in that order.
[[nodiscard]] std::vector<std::string> WeatherImageKeys();

// The switch's knob that was found, nil before.
[[nodiscard]] platform::ImageRef SwitchKnobImage();

}  // namespace velmoranth::hooks
