// Replacements on the page control of icon lists: the theme's dots, or no dots at all.
#pragma once

#include "core/original_implementation.h"
#include "platform/springboard.h"
#include "platform/uikit.h"

namespace velmoranth::hooks {

struct SBIconListPageControlHooks {
    using IndicatorImage = platform::ImageRef(platform::SBIconListPageControl&, bool);

    static void layoutSubviews(
        const core::OriginalImplementation<void(platform::SBIconListPageControl&)>& original,
        platform::SBIconListPageControl& self);
    static platform::ImageRef _iconListIndicatorImage(
        const core::OriginalImplementation<IndicatorImage>& original,
        platform::SBIconListPageControl& self, bool isCurrent);
    static platform::ImageRef _searchIndicatorImage(
        const core::OriginalImplementation<IndicatorImage>& original,
        platform::SBIconListPageControl& self, bool isCurrent);
};

}  // namespace velmoranth::hooks
