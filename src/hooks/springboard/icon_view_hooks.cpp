#include "hooks/springboard/icon_view_hooks.h"

#include "core/format.h"
#include "core/settings.h"
#include "imaging/chrome_images.h"
#include "imaging/icon_effects.h"
#include "imaging/view_tags.h"
#include "platform/platform.h"
#include "theme/interface_image_lookup.h"

#include <memory>

namespace velmoranth::hooks {

using core::NSLog;
using core::OriginalImplementation;
using core::settings;
using imaging::ChromeImages;
using imaging::IconEffects;
using platform::ImageRef;
using platform::platform;

namespace {

// The theme's mask, in two places; the icons' own search tries the second one twice.
ImageRef darkeningMask() {
    constexpr const char* kName = "AppIconMask.png";
    if (ImageRef mask = theme::InterfaceImageLookup::searchFolderForImageStr(
            "Bundles/com.apple.mobileicons.framework/", kName)) {
        return mask;
    }
    return theme::InterfaceImageLookup::searchFolderForImageStr("com.apple.mobileicons.framework/",
                                                                kName);
}

void addLayerShadow(platform::View& view) {
    const platform::LayerRef layer = view.layer();
    if (layer == nullptr) {
        return;
    }
    const core::Settings& values = settings();
    layer->setMasksToBounds(false);
    layer->setShadowColor(platform::kBlackColor);
    layer->setShadowOpacity(values.opacityVal);
    layer->setShadowOffset(
        {static_cast<double>(values.xAxisVal), static_cast<double>(values.yAxisVal)});
    layer->setShadowRadius(static_cast<double>(values.shadowRadiusVal));
    layer->setShadowPathRect({{0, 0},
                              {static_cast<double>(values.shadowWidthVal),
                               static_cast<double>(values.shadowHeightVal)}});
}

}  // namespace

void SBIconViewHooks::layoutSubviews(
    const OriginalImplementation<void(platform::SBIconView&)>& original,
    platform::SBIconView& self) {
    original(self);
    if (!settings().enable || self.icon() == nullptr) {
        return;
    }
    if (settings().enableShadow && self.tag() != imaging::ThemedIconTag) {
        if (const platform::ImageViewRef shadow = IconEffects::addShadowToIcon()) {
            self.insertSubviewAtIndex(shadow, 0);
        }
    }
    if (settings().dynamicShadow && self.tag() != imaging::ThemedIconTag) {
        addLayerShadow(self);
    }
    self.setTag(imaging::ThemedIconTag);
}

ImageRef SBIconImageViewDarkeningHooks::darkeningOverlayImage(
    const OriginalImplementation<ImageRef(platform::SBIconImageView&)>& original,
    platform::SBIconImageView& self) {
    original(self);
    if (settings().enableLogging) {
        NSLog("VELMORANTH SBIconImageView: darkeningOverlayImage %@", original(self));
    }
    if (!settings().enable) {
        return original(self);
    }
    const ImageRef mask = darkeningMask();
    if (mask == nullptr) {
        return nullptr;
    }
    return IconEffects::maskImageWithMask(original(self), mask);
}

// NOLINTBEGIN(performance-unnecessary-value-param): a replacement's arguments are values.
ImageRef SBIconLabelImageHooks::_initWithCGImageScaleOrientationParametersMaxSizeOffset(
    const OriginalImplementation<Signature>& original, platform::SBIconLabelImage& self,
    platform::BitmapImageRef bitmap, double scale, std::int64_t orientation,
    platform::ObjectRef parameters, platform::Point maxSizeOffset) {
    original(self, bitmap, scale, orientation, parameters, maxSizeOffset);
    if (detail::labelsAreRemoved()) {
        return nullptr;
    }
    return original(self, bitmap, scale, orientation, parameters, maxSizeOffset);
}

// NOLINTEND(performance-unnecessary-value-param)

void SBIconBadgeViewHooks::layoutSubviews(
    const OriginalImplementation<void(platform::SBIconBadgeView&)>& original,
    platform::SBIconBadgeView& self) {
    original(self);
    if (!settings().enable) {
        return;
    }
    if (settings().removeIconBadges) {
        self.setAlpha(0);
        return;
    }
    const ImageRef image = ChromeImages::badgeImage()->image();
    if (image == nullptr) {
        return;
    }
    const auto background = std::dynamic_pointer_cast<platform::ImageView>(
        platform().objc.instanceVariable(self, "_backgroundView"));
    if (background != nullptr) {
        background->setImage(image);
    }
}

double SBIconBadgeViewHooks::_maxTextWidth(
    const OriginalImplementation<double(platform::Class&)>& original, platform::Class& self) {
    original(self);
    return original(self);
}

}  // namespace velmoranth::hooks
