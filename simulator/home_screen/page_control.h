// SBIconListPageControl: a dot for the search page where there is one, then a dot for each page.
#pragma once

#include "desktop/views/views.h"
#include "platform/springboard.h"
#include "simulator/screen_context.h"
#include "simulator/toolkit/named_views.h"

#include <cstddef>
#include <vector>

namespace velmoranth::simulator {

class PageControl final : public NamedAs<"SBIconListPageControl", platform::SBIconListPageControl> {
  public:
    // `center` in the superview's coordinates. The control is as wide as its dots need, so that
    // they lie centred; where the screen has no room for all, those around the current page show.
    PageControl(const ScreenContext& context, const platform::Point& center, int pageCount,
                bool hasSearch);
    [[nodiscard]] platform::ImageRef _searchIndicatorImage(bool isCurrent) override;

    // From 1.
    void setCurrentPage(int page) { currentPage_ = page; }

    // What the platform's layoutSubviews does: asks itself for the image of each dot.
    void placeSubviews();

  private:
    const ScreenContext& context_;
    std::size_t searchDots_;  // before those of the pages
    std::size_t count_;       // of all dots
    std::size_t shown_;       // of these
    int currentPage_ = 1;
    std::vector<platform::ImageViewRef> dots_;
};

}  // namespace velmoranth::simulator
