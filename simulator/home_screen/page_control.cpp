#include "simulator/home_screen/page_control.h"

namespace velmoranth::simulator {

using platform::ImageRef;

PageControl::PageControl(const ScreenContext& context, const platform::Point& center, int pageCount,
                         bool hasSearch)
    : context_(context), pageCount_(pageCount), hasSearch_(hasSearch) {
    const HomeScreenMetrics& metrics = context.metrics;
    const double width =
        (pageCount - 1 + (hasSearch ? 1 : 0)) * metrics.pageDotPitch + metrics.pageDotSide;
    setFrame({{snapToPixels(center.x - width / 2, context.scale()),
               snapToPixels(center.y - metrics.pageDotSide / 2, context.scale())},
              {width, metrics.pageDotSide}});
}

ImageRef PageControl::_searchIndicatorImage(bool isCurrent) {
    return context_.runtime.send<ImageRef, bool>(*this, "_searchIndicatorImage:", isCurrent);
}

void PageControl::placeSubviews() {
    const std::size_t searchDots = hasSearch_ ? 1 : 0;
    const std::size_t count = static_cast<std::size_t>(pageCount_) + searchDots;
    while (dots_.size() < count) {
        dots_.push_back(std::make_shared<desktop::DesktopImageView>());
        addSubview(dots_.back());
    }
    const HomeScreenMetrics& metrics = context_.metrics;
    for (std::size_t i = 0; i < count; ++i) {
        const bool isSearch = i < searchDots;
        const bool isCurrent = i + 1 == static_cast<std::size_t>(currentPage_) + searchDots;
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
