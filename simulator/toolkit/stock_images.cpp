#include "simulator/toolkit/stock_images.h"

#include "desktop/imaging/bitmap_image.h"
#include "simulator/artwork/toolkit_artwork.h"

#include <cmath>
#include <memory>
#include <utility>
#include <vector>

namespace velmoranth::simulator {

platform::BitmapImageRef bitmapOf(FurniturePicture picture) {
    if (picture.bgra.empty()) {
        return nullptr;
    }
    const desktop::PixelSize size{static_cast<std::size_t>(picture.widthPixels),
                                  static_cast<std::size_t>(picture.heightPixels)};
    return desktop::DesktopBitmapImage::createPremultiplied(
        std::make_shared<const platform::Data>(std::move(picture.bgra)), size, size.width * 4);
}

platform::ImageRef StockImages::icon(const std::string& bundleIdentifier, double side, double scale,
                                     IconMasking masking) {
    return kept(
        bundleIdentifier, bundleIdentifier, stockIconLook(bundleIdentifier), side, scale, masking,
        [&](int pixels) {
            return bundleIdentifier == kClockIdentifier
                       ? drawClockFace(pixels, 1, time_.hour, time_.minute, time_.second).bgra
                       : drawStockIcon(bundleIdentifier, pixels);
        });
}

platform::ImageRef StockImages::calendarBase(double side, double scale) {
    // No app's identifier has a space.
    const std::string name = "calendar base";
    return kept(std::string(kCalendarIdentifier), name, name, side, scale, IconMasking::masked,
                [](int pixels) { return drawCalendarBase(pixels, 1).bgra; });
}

platform::ImageRef StockImages::kept(
    const std::string& bundleIdentifier, const std::string& name, const std::string& look,
    double side, double scale, IconMasking masking,
    const std::function<std::vector<std::uint8_t>(int pixels)>& draw) {
    const double wanted = std::round(side * scale);
    const bool drawable = wanted >= 1 && wanted <= kMaximumIconPixels;  // false for a NaN
    const std::scoped_lock lock(mutex_);
    ++requests_[bundleIdentifier];
    if (!drawable) {
        return nullptr;
    }
    const int pixels = static_cast<int>(wanted);
    platform::ImageRef& icon = icons_[{name, pixels, scale, masking}];
    if (icon == nullptr) {
        auto& shared = looks_[{look, pixels, scale, masking}];
        if (shared == nullptr) {
            std::vector<std::uint8_t> drawn = draw(pixels);
            if (masking == IconMasking::masked) {
                applyIconShape(drawn, pixels);
            }
            shared = std::make_shared<const platform::Data>(std::move(drawn));
        }
        const auto length = static_cast<std::size_t>(pixels);
        icon = images_.makeImage(
            desktop::DesktopBitmapImage::createPremultiplied(shared, {length, length}, length * 4,
                                                             masking == IconMasking::unmasked),
            scale);
    }
    return icon;
}

platform::ImageRef StockImages::picture(FurniturePicture picture, double scale) const {
    const platform::BitmapImageRef bitmap = bitmapOf(std::move(picture));
    return bitmap == nullptr ? nullptr : images_.makeImage(bitmap, scale);
}

void StockImages::noteRequest(const std::string& bundleIdentifier) {
    const std::scoped_lock lock(mutex_);
    ++requests_[bundleIdentifier];
}

int StockImages::requests(const std::string& bundleIdentifier) const {
    const std::scoped_lock lock(mutex_);
    const auto found = requests_.find(bundleIdentifier);
    return found == requests_.end() ? 0 : found->second;
}

}  // namespace velmoranth::simulator
