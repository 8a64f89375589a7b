// The home screen of a simulated device: its view tree, laid out by messages as the platform does,
// and drawn as the screen shows it.
#pragma once

#include "desktop/imaging/bitmap_image.h"
#include "desktop/imaging/images.h"
#include "desktop/runtime/runtime.h"
#include "platform/uikit.h"
#include "simulator/device.h"
#include "simulator/home_screen_layout.h"
#include "simulator/home_screen_objects.h"
#include "simulator/picture.h"
#include "simulator/stock_images.h"

#include <memory>
#include <vector>

namespace velmoranth::simulator {

class HomeScreen {
  public:
    // What the screen works with; all of it outlives the screen. The platform classes are known to
    // the runtime.
    struct Services {
        desktop::Runtime& runtime;
        const desktop::DesktopImages& images;
        const StockImages& stockImages;
    };

    HomeScreen(DeviceConfiguration device, const Services& services);

    // Pages count from 1; a number beyond either end shows the nearest.
    void showPage(int page);

    [[nodiscard]] int page() const { return page_; }

    [[nodiscard]] int pageCount() const { return static_cast<int>(layout_.pages.size()); }

    // Sends layoutSubviews to every view, superviews first; icon image views ask for their images
    // then.
    void layoutViews();

    // The screen as it was laid out last. Nil when it is too large to draw.
    [[nodiscard]] std::shared_ptr<desktop::DesktopBitmapImage> draw() const;

    // The icons in the picture, the page's row by row, then the dock's.
    [[nodiscard]] std::vector<ShownIcon> shownIcons() const;

  private:
    struct Placed {
        const IconSlot* slot;
        std::shared_ptr<IconView> view;
    };

    void addWallpaperAndDock();
    [[nodiscard]] platform::ViewRef makeDockBackground(const desktop::DesktopBitmapImage& wallpaper,
                                                       const platform::Rect& frame) const;
    [[nodiscard]] platform::ViewRef makePageControl() const;
    [[nodiscard]] Placed makeIcon(const IconSlot& slot, const platform::Point& origin,
                                  bool withLabel) const;
    [[nodiscard]] platform::Rect screenBounds() const;

    DeviceConfiguration device_;
    Services services_;
    const HomeScreenMetrics& metrics_;
    HomeScreenLayout layout_;
    int page_ = 0;
    platform::ViewRef window_;
    platform::ViewRef pageList_;
    platform::ViewRef pageControl_;
    std::vector<Placed> pageIcons_;
    std::vector<Placed> dockIcons_;
};

}  // namespace velmoranth::simulator
