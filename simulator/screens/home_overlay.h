// A screen that lies over the home screen: its window is drawn over the home screen's picture.
#pragma once

#include "simulator/home_screen/backdrop.h"
#include "simulator/home_screen/home_screen.h"
#include "simulator/screens/app_screen.h"

#include <memory>
#include <vector>

namespace velmoranth::simulator {

// What of the home screen lies behind: all of it, or its wallpaper alone.
enum class Behind { homeScreen, wallpaper };

class HomeOverlay : public AppScreen {
  public:
    explicit HomeOverlay(const ScreenContext& context, Behind behind = Behind::homeScreen);

    // The home screen's views, then the window's.
    void layoutViews() override;
    [[nodiscard]] std::shared_ptr<desktop::DesktopBitmapImage> draw() const override;

    void notificationsWereDelivered() override { home_.notificationsWereDelivered(); }

  protected:
    [[nodiscard]] const HomeScreen& home() const { return home_; }

    // Adds a view that shows the home screen behind it, in that material. `frame` is in the
    // window's coordinates, where the view lies.
    void addMaterial(const platform::Rect& frame, const BackdropStyle& style);

  private:
    struct Material {
        std::shared_ptr<desktop::DesktopImageView> view;
        BackdropStyle style;
    };

    [[nodiscard]] std::shared_ptr<desktop::DesktopBitmapImage> drawBehind() const;

    HomeScreen home_;
    Behind behind_;
    std::shared_ptr<desktop::DesktopImageView> picture_;  // of the home screen, behind everything
    std::vector<Material> materials_;
};

}  // namespace velmoranth::simulator
