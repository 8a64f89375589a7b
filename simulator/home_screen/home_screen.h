// The home screen of a simulated device: its view tree, laid out by messages as the platform does,
// and drawn as the screen shows it.
#pragma once

#include "desktop/imaging/bitmap_image.h"
#include "desktop/imaging/images.h"
#include "desktop/result/result.h"
#include "desktop/runtime/runtime.h"
#include "desktop/views/views.h"
#include "platform/uikit.h"
#include "simulator/device.h"
#include "simulator/home_screen/backdrop.h"
#include "simulator/home_screen/dock_views.h"
#include "simulator/home_screen/home_screen_layout.h"
#include "simulator/home_screen/icon_controller.h"
#include "simulator/home_screen/icon_views.h"
#include "simulator/home_screen/open_folder.h"
#include "simulator/home_screen/page_control.h"
#include "simulator/picture.h"
#include "simulator/screen.h"
#include "simulator/screen_context.h"
#include "simulator/toolkit/stock_images.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace velmoranth::simulator {

class HomeScreen final : public Screen {
  public:
    // The platform classes are known to the runtime.
    explicit HomeScreen(const ScreenContext& context);
    ~HomeScreen() override;

    // Pages count from 1; a number beyond either end shows the nearest. Another page than the one
    // that is shown closes an open folder at once.
    void showPage(int page) override;

    [[nodiscard]] int page() const override { return page_; }

    [[nodiscard]] int pageCount() const override { return static_cast<int>(layout_.pages.size()); }

    // Sends layoutSubviews to every view, superviews first; icon image views ask for their images
    // then. The dock itself is sent it when it needs it alone, as on the platform: at first, and
    // after setDockNeedsLayout. What a replacement adds to it at every layout stays for good.
    void layoutViews() override;

    void setDockNeedsLayout() { dockNeedsLayout_ = true; }

    // What has changed may concern the dock.
    void notificationsWereDelivered() override { setDockNeedsLayout(); }

    // Opens the folder of that identifier, on the page where it lies; "" is the first folder of the
    // page that is shown. A folder that is open already is closed at once. Fails when there is
    // none.
    [[nodiscard]] desktop::Result<void> openFolder(const std::string& identifier,
                                                   Animated animated);

    // The folder that is open or on its way; nil when there is none.
    [[nodiscard]] std::shared_ptr<OpenFolder> folder() const;

    // Puts a finger on the icon of that identifier, on the page where it lies or in the dock; "" is
    // an app in the middle of the page that is shown. The finger leaves the icon before. Fails when
    // there is none.
    [[nodiscard]] desktop::Result<void> pressIcon(const std::string& identifier);

    // A tap there, points. The home screen itself does nothing about it, an open folder may.
    void tap(const platform::Point& point) override;

    // What is animated moves on; negative and NaN count as 0.
    void advance(double seconds) override;

    // What is animated moves to its end.
    void settle();

    // The screen as it was laid out last. Nil when it is too large to draw.
    [[nodiscard]] std::shared_ptr<desktop::DesktopBitmapImage> draw() const override;

    [[nodiscard]] const platform::ViewRef& view() const override { return window_; }

    // The icons in the picture, the page's row by row, then the dock's.
    [[nodiscard]] std::vector<ShownIcon> shownIcons() const override;

    // The folder that is open; none when none is.
    [[nodiscard]] std::optional<ShownFolder> shownFolder() const override;

    // The icon view of that identifier on the page or in the dock; nil when it is not shown.
    [[nodiscard]] std::shared_ptr<IconView> iconView(const std::string& identifier) const;

    [[nodiscard]] const ScreenContext& context() const { return context_; }

  private:
    void addPhoneDock();
    void addFloatingDock();
    [[nodiscard]] platform::ImageRef material(const platform::Rect& frame,
                                              const BackdropStyle& style) const;
    // `origin` is the superview's on the screen.
    [[nodiscard]] std::shared_ptr<IconView> addIcon(IconListView& list, const IconSlot& slot,
                                                    const platform::Point& origin, bool withLabel);
    // The page that has the icon of that identifier; the one that is shown when none has.
    [[nodiscard]] int pageWith(const std::string& identifier) const;
    void closeFolder(const platform::ObjectRef& folderController, Animated animated,
                     const FolderCompletion& completion);

    struct Placed {
        IconSlot slot;
        bool hasLabel;
        std::shared_ptr<IconView> view;
    };

    [[nodiscard]] const Placed* firstFolder() const;
    [[nodiscard]] const Placed* middleApp() const;
    [[nodiscard]] const Placed* placed(const std::string& identifier) const;

    const ScreenContext& context_;
    HomeScreenLayout layout_;
    int page_ = 0;
    std::shared_ptr<desktop::DesktopBitmapImage> wallpaper_;
    platform::ViewRef window_;
    platform::ViewRef dock_;
    bool dockNeedsLayout_ = true;
    std::shared_ptr<IconListView> pageList_;
    std::shared_ptr<PageControl> pageControl_;
    std::vector<Placed> pageIcons_;
    std::vector<Placed> dockIcons_;
    std::vector<platform::ViewRef> front_;  // in front of an open folder
    std::shared_ptr<OpenFolder> folder_;
    std::shared_ptr<IconView> pressed_;
};

}  // namespace velmoranth::simulator
