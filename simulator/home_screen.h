// The home screen of a simulated device: its view tree, laid out by messages as the platform does,
// and drawn as the screen shows it.
#pragma once

#include "desktop/imaging/bitmap_image.h"
#include "desktop/imaging/images.h"
#include "desktop/runtime/runtime.h"
#include "desktop/views/views.h"
#include "platform/uikit.h"
#include "simulator/backdrop.h"
#include "simulator/device.h"
#include "simulator/dock_views.h"
#include "simulator/home_screen_layout.h"
#include "simulator/icon_views.h"
#include "simulator/page_control.h"
#include "simulator/picture.h"
#include "simulator/screen_context.h"
#include "simulator/stock_images.h"

#include <memory>
#include <string>
#include <vector>

namespace velmoranth::simulator {

class HomeScreen {
  public:
    // What the screen works with; all of it outlives the screen. The platform classes are known to
    // the runtime.
    struct Services {
        desktop::Runtime& runtime;
        const desktop::DesktopImages& images;
        StockImages& stockImages;
        desktop::DesktopViews& views;
    };

    HomeScreen(DeviceConfiguration device, const Services& services);
    ~HomeScreen() = default;
    // Its views refer to it.
    HomeScreen(const HomeScreen&) = delete;
    HomeScreen& operator=(const HomeScreen&) = delete;

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

    // The icon view of that identifier on the page or in the dock; nil when it is not shown.
    [[nodiscard]] std::shared_ptr<IconView> iconView(const std::string& identifier) const;

    [[nodiscard]] const ScreenContext& context() const { return context_; }

  private:
    void makeWallpaper();
    void addPhoneDock();
    void addFloatingDock();
    [[nodiscard]] platform::ImageRef material(const platform::Rect& frame,
                                              const BackdropStyle& style) const;
    // `origin` is the superview's on the screen.
    [[nodiscard]] std::shared_ptr<IconView> addIcon(IconListView& list, const IconSlot& slot,
                                                    const platform::Point& origin, bool withLabel);
    [[nodiscard]] desktop::PixelSize pixelSize() const;

    struct Placed {
        IconSlot slot;
        bool hasLabel;
        std::shared_ptr<IconView> view;
    };

    DeviceConfiguration device_;
    ScreenContext context_;
    HomeScreenLayout layout_;
    int page_ = 0;
    std::shared_ptr<desktop::DesktopBitmapImage> wallpaper_;
    platform::ViewRef window_;
    std::shared_ptr<IconListView> pageList_;
    std::shared_ptr<PageControl> pageControl_;
    std::vector<Placed> pageIcons_;
    std::vector<Placed> dockIcons_;
};

}  // namespace velmoranth::simulator
