#include "hooks/springboard/page_control_hooks.h"

#include "core/format.h"
#include "core/settings.h"
#include "imaging/chrome_images.h"

namespace velmoranth::hooks {

using core::NSLog;
using core::OriginalImplementation;
using core::settings;
using imaging::ChromeImages;
using platform::ImageRef;

namespace {

bool dotsAreThemed() {
    return settings().enable && !settings().removePageDots;
}

}  // namespace

void SBIconListPageControlHooks::layoutSubviews(
    const OriginalImplementation<void(platform::SBIconListPageControl&)>& original,
    platform::SBIconListPageControl& self) {
    original(self);
    if (settings().enable && settings().removePageDots) {
        self.setHidden(true);
    } else {
        original(self);
    }
}

ImageRef SBIconListPageControlHooks::_iconListIndicatorImage(
    const OriginalImplementation<IndicatorImage>& original, platform::SBIconListPageControl& self,
    bool isCurrent) {
    original(self, isCurrent);
    if (dotsAreThemed()) {
        if (ImageRef image = ChromeImages::pageDots(isCurrent)) {
            return image;
        }
        static_cast<void>(self._searchIndicatorImage(true));
    }
    return original(self, isCurrent);
}

ImageRef SBIconListPageControlHooks::_searchIndicatorImage(
    const OriginalImplementation<IndicatorImage>& original, platform::SBIconListPageControl& self,
    bool isCurrent) {
    original(self, isCurrent);
    if (settings().enableLogging) {
        NSLog("Velmoranth search Ind %@", original(self, isCurrent));
    }
    if (dotsAreThemed()) {
        if (ImageRef image = ChromeImages::spotlightPageDot()) {
            return image;
        }
    }
    return original(self, isCurrent);
}

}  // namespace velmoranth::hooks
