// Every interface image that the screens of the device ask for, in pages: as the platform has it,
// and beside it what answers to the message now.
#pragma once

#include "desktop/text/text.h"
#include "simulator/screens/app_screen.h"
#include "simulator/toolkit/device_bundles.h"

#include <string>
#include <string_view>
#include <vector>

namespace velmoranth::simulator {

// What a cell shows.
struct GalleryItem {
    std::string_view name;
    std::string_view bundleIdentifier;  // "" for the switch's parts, which have no bundle
    CatalogKind kind;

    friend bool operator==(const GalleryItem&, const GalleryItem&) = default;
};

// An item's pictures on the screen.
struct GalleryCell {
    GalleryItem item;
    platform::Rect before;  // points
    platform::Rect after;
};

// Text that is not wider than that many points, its middle left out where it is too long.
[[nodiscard]] std::string shortenedInTheMiddle(const std::string& text,
                                               const desktop::TextStyle& style, double width);

class GalleryScreen final : public AppScreen {
  public:
    explicit GalleryScreen(const AppContext& context);

    void showPage(int page) override;
    // Asks for the page's images anew, so that a change of theme shows in the next picture.
    void layoutViews() override;

    [[nodiscard]] int page() const override { return page_; }

    [[nodiscard]] int pageCount() const override { return static_cast<int>(pages_.size()); }

    // Of the page that is shown.
    [[nodiscard]] const std::vector<GalleryCell>& cells() const;

  private:
    struct Header {
        std::string title;
        double top = 0;
    };

    struct Page {
        std::vector<Header> headers;
        std::vector<GalleryCell> cells;
    };

    void layOutPages();
    void addBar();
    void addCell(const GalleryCell& cell);
    [[nodiscard]] platform::ImageRef before(const GalleryItem& item) const;
    [[nodiscard]] platform::ImageRef after(const GalleryItem& item) const;

    std::vector<Page> pages_;  // at least one
    int page_ = 1;
};

}  // namespace velmoranth::simulator
