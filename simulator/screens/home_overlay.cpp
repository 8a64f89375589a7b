#include "simulator/screens/home_overlay.h"

#include "simulator/home_screen/wallpaper.h"

namespace velmoranth::simulator {

HomeOverlay::HomeOverlay(const ScreenContext& context, Behind behind)
    : AppScreen(context),
      home_(context),
      behind_(behind),
      picture_(std::make_shared<desktop::DesktopImageView>(context.bounds())) {
    window().addSubview(picture_);
}

void HomeOverlay::layoutViews() {
    home_.layoutViews();
    AppScreen::layoutViews();
}

std::shared_ptr<desktop::DesktopBitmapImage> HomeOverlay::drawBehind() const {
    if (behind_ == Behind::homeScreen) {
        return home_.draw();
    }
    return wallpaperOf(context());
}

std::shared_ptr<desktop::DesktopBitmapImage> HomeOverlay::draw() const {
    const auto picture = drawBehind();
    if (picture == nullptr) {
        return nullptr;
    }
    const double scale = context().scale();
    picture_->setImage(context().images.makeImage(picture, scale));
    for (const Material& material : materials_) {
        material.view->setImage(context().images.makeImage(
            makeBackdrop(picture->pixels(), material.view->frame(), scale, material.style), scale));
    }
    return AppScreen::draw();
}

void HomeOverlay::addMaterial(const platform::Rect& frame, const BackdropStyle& style) {
    materials_.push_back({std::make_shared<desktop::DesktopImageView>(frame), style});
    window().addSubview(materials_.back().view);
}

}  // namespace velmoranth::simulator
