// Replacements on the home screen's icon, icon image, label and badge views: the shadow behind each
// icon, the darkening of a pressed icon in the shape of the theme's mask, the theme's badge, and
// labels and badges that the user has removed. Most run the platform's method once for nothing
// before they do their own work.
#pragma once

#include "core/original_implementation.h"
#include "core/settings.h"
#include "platform/springboard.h"
#include "platform/uikit.h"

#include <cstdint>

namespace velmoranth::hooks {

struct SBIconViewHooks {
    // Treats each icon view once: a view that is done carries ThemedIconTag.
    static void layoutSubviews(
        const core::OriginalImplementation<void(platform::SBIconView&)>& original,
        platform::SBIconView& self);
};

struct SBIconImageViewDarkeningHooks {
    static platform::ImageRef darkeningOverlayImage(
        const core::OriginalImplementation<platform::ImageRef(platform::SBIconImageView&)>&
            original,
        platform::SBIconImageView& self);
};

struct SBIconLabelImageHooks {
    using Signature = platform::ImageRef(platform::SBIconLabelImage&, platform::BitmapImageRef,
                                         double, std::int64_t, platform::ObjectRef,
                                         platform::Point);

    // `orientation` is a UIImageOrientation. Nil when labels are removed.
    static platform::ImageRef _initWithCGImageScaleOrientationParametersMaxSizeOffset(
        const core::OriginalImplementation<Signature>& original, platform::SBIconLabelImage& self,
        platform::BitmapImageRef bitmap, double scale, std::int64_t orientation,
        platform::ObjectRef parameters, platform::Point maxSizeOffset);
};

struct SBIconBadgeViewHooks {
    static void layoutSubviews(
        const core::OriginalImplementation<void(platform::SBIconBadgeView&)>& original,
        platform::SBIconBadgeView& self);
    // Points.
    static double _maxTextWidth(
        const core::OriginalImplementation<double(platform::Class&)>& original,
        platform::Class& self);
};

struct SBIconLegibilityLabelViewHooks {
    static void setHidden(const core::OriginalImplementation<
                              void(platform::SBIconLegibilityLabelView&, bool)>& original,
                          platform::SBIconLegibilityLabelView& self, bool hidden);
    static bool isHidden(
        const core::OriginalImplementation<bool(platform::SBIconLegibilityLabelView&)>& original,
        platform::SBIconLegibilityLabelView& self);
    static double alpha(
        const core::OriginalImplementation<double(platform::SBIconLegibilityLabelView&)>& original,
        platform::SBIconLegibilityLabelView& self);
    static void setAlpha(const core::OriginalImplementation<
                             void(platform::SBIconLegibilityLabelView&, double)>& original,
                         platform::SBIconLegibilityLabelView& self, double alpha);
};

namespace detail {

[[nodiscard]] inline bool labelsAreRemoved() {
    return core::settings().enable && core::settings().removeLabels;
}

}  // namespace detail

// Every layout of the home screen asks each label several times, so a caller that knows what
// `original` leads to can have all of a replacement in one function.

inline void SBIconLegibilityLabelViewHooks::setHidden(
    const core::OriginalImplementation<void(platform::SBIconLegibilityLabelView&, bool)>& original,
    platform::SBIconLegibilityLabelView& self, bool hidden) {
    original(self, hidden);
    original(self, detail::labelsAreRemoved() || hidden);
}

inline bool SBIconLegibilityLabelViewHooks::isHidden(
    const core::OriginalImplementation<bool(platform::SBIconLegibilityLabelView&)>& original,
    platform::SBIconLegibilityLabelView& self) {
    original(self);
    return detail::labelsAreRemoved() || original(self);
}

inline double SBIconLegibilityLabelViewHooks::alpha(
    const core::OriginalImplementation<double(platform::SBIconLegibilityLabelView&)>& original,
    platform::SBIconLegibilityLabelView& self) {
    original(self);
    return detail::labelsAreRemoved() ? 0 : original(self);
}

inline void SBIconLegibilityLabelViewHooks::setAlpha(
    const core::OriginalImplementation<void(platform::SBIconLegibilityLabelView&, double)>&
        original,
    platform::SBIconLegibilityLabelView& self, double alpha) {
    original(self, alpha);
    original(self, detail::labelsAreRemoved() ? 0 : alpha);
}

}  // namespace velmoranth::hooks
