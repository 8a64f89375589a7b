#include "simulator/screens/home_overlay.h"

#include "simulator/artwork/artwork.h"

#include <utility>

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
    const desktop::PixelSize size = pixelSizeOf(context().device.screen);
    auto pixels = drawWallpaper(static_cast<int>(size.width), static_cast<int>(size.height));
    return pixels.empty() ? nullptr
                          : desktop::DesktopBitmapImage::createPremultiplied(
                                std::make_shared<const platform::Data>(std::move(pixels)), size,
                                size.width * 4, true);
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
