// Every image that the screens of the device ask for, in pages: as the platform has it, and beside
// it what answers to the message now.
#pragma once

#include "simulator/screens/app_screen.h"
#include "simulator/screens/gallery_items.h"

#include <string>
#include <string_view>
#include <vector>

namespace velmoranth::simulator {

// An item's pictures on the screen.
struct GalleryCell {
    const GalleryItem* item;  // not null; of the screen
    // Points.
    platform::Rect before;
    platform::Rect after;
    // Whole, however long they are.
    std::vector<std::string> name;
    std::vector<std::string> bundle;
};

class GalleryScreen final : public AppScreen {
  public:
    explicit GalleryScreen(const ScreenContext& context);

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

    struct Row {
        std::vector<GalleryCell> cells;
        double height = 0;
    };

    void layOutPages();
    // Of one group, as many in a row as fit; the pictures' places are from the row's top.
    [[nodiscard]] std::vector<Row> rowsOf(std::string_view group) const;
    void addCell(const GalleryCell& cell);

    GalleryItems items_;
    std::vector<Page> pages_;  // at least one
    int page_ = 1;
};

}  // namespace velmoranth::simulator
