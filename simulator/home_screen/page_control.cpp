#include "simulator/home_screen/page_control.h"

#include <algorithm>
#include <cmath>

namespace velmoranth::simulator {

using platform::ImageRef;

namespace {

std::size_t dotsThatFit(const ScreenContext& context) {
    const HomeScreenMetrics& metrics = context.metrics;
    // A dot's pitch stays free on either side.
    const double dots = std::floor(context.device.screen.width / metrics.pageDotPitch) - 2;
    return static_cast<std::size_t>(std::max(1.0, dots));
}

}  // namespace

PageControl::PageControl(const ScreenContext& context, const platform::Point& center, int pageCount,
                         bool hasSearch)
    : context_(context),
      searchDots_(hasSearch ? 1 : 0),
      count_(static_cast<std::size_t>(pageCount) + searchDots_),
      shown_(std::min(count_, dotsThatFit(context))) {
    const HomeScreenMetrics& metrics = context.metrics;
    const double width =
        (static_cast<double>(shown_) - 1) * metrics.pageDotPitch + metrics.pageDotSide;
    setFrame({{snapToPixels(center.x - width / 2, context.scale()),
               snapToPixels(center.y - metrics.pageDotSide / 2, context.scale())},
              {width, metrics.pageDotSide}});
}

ImageRef PageControl::_searchIndicatorImage(bool isCurrent) {
    return context_.runtime.send<ImageRef, bool>(*this, "_searchIndicatorImage:", isCurrent);
}

void PageControl::placeSubviews() {
    while (dots_.size() < shown_) {
        dots_.push_back(std::make_shared<desktop::DesktopImageView>());
        addSubview(dots_.back());
    }
    const HomeScreenMetrics& metrics = context_.metrics;
    const std::size_t current = static_cast<std::size_t>(currentPage_) - 1 + searchDots_;
    const std::size_t first = std::min(current - std::min(current, shown_ / 2), count_ - shown_);
    for (std::size_t i = 0; i < shown_; ++i) {
        const bool isSearch = first + i < searchDots_;
        const bool isCurrent = first + i == current;
        const ImageRef image = isSearch ? _searchIndicatorImage(false)
                                        : context_.runtime.send<ImageRef, bool>(
                                              *this, "_iconListIndicatorImage:", isCurrent);
        // At the image's own size, centred where the dot belongs.
        const platform::Size size = platform::sizeOf(image);
        const double x = static_cast<double>(i) * metrics.pageDotPitch + metrics.pageDotSide / 2;
        dots_[i]->setImage(image);
        dots_[i]->setFrame(
            {{snapToPixels(x - size.width / 2, context_.scale()),
              snapToPixels((metrics.pageDotSide - size.height) / 2, context_.scale())},
             size});
    }
}

}  // namespace velmoranth::simulator
