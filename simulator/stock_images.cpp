#include "simulator/stock_images.h"

#include "desktop/imaging/bitmap_image.h"
#include "desktop/imaging/graphics_context.h"
#include "simulator/artwork/artwork.h"

#include <algorithm>
#include <cmath>
#include <memory>
#include <utility>
#include <vector>

namespace velmoranth::simulator {
namespace {

constexpr platform::Color kBadgeColor{1, 59.0 / 255, 48.0 / 255, 1};
constexpr double kInactiveDotAlpha = 0.4;

}  // namespace

platform::ImageRef StockImages::icon(const std::string& bundleIdentifier, double side, double scale,
                                     IconMasking masking) {
    const double wanted = std::round(side * scale);
    const bool drawable = wanted >= 1 && wanted <= kMaximumIconPixels;  // false for a NaN
    const std::scoped_lock lock(mutex_);
    ++requests_[bundleIdentifier];
    if (!drawable) {
        return nullptr;
    }
    const int pixels = static_cast<int>(wanted);
    platform::ImageRef& icon = icons_[{bundleIdentifier, pixels, scale, masking}];
    if (icon == nullptr) {
        std::vector<std::uint8_t> drawn = drawStockIcon(bundleIdentifier, pixels);
        if (masking == IconMasking::masked) {
            applyIconShape(drawn, pixels);
        }
        const auto length = static_cast<std::size_t>(pixels);
        icon =
            images_.makeImage(desktop::DesktopBitmapImage::createPremultiplied(
                                  std::make_shared<const platform::Data>(std::move(drawn)),
                                  {length, length}, length * 4, masking == IconMasking::unmasked),
                              scale);
    }
    return icon;
}

platform::ImageRef StockImages::badgeBackground(platform::Size size, double scale) {
    return filled(size, scale, kBadgeColor, std::min(size.width, size.height) / 2);
}

platform::ImageRef StockImages::pageDot(double side, double scale, bool isCurrent) {
    return filled({side, side}, scale, {1, 1, 1, isCurrent ? 1 : kInactiveDotAlpha}, side / 2);
}

platform::ImageRef StockImages::searchDot(double side, double scale, bool isCurrent) {
    return filled({side, side}, scale, {1, 1, 1, isCurrent ? 1 : kInactiveDotAlpha}, side / 2);
}

platform::ImageRef StockImages::darkeningOverlay(double side, double scale) {
    return filled({side, side}, scale, platform::kBlackColor, side * kIconCornerRadiusShare);
}

platform::ImageRef StockImages::filled(platform::Size size, double scale,
                                       const platform::Color& color, double radius) const {
    const auto context = desktop::DesktopGraphicsContext::create(
        {.size =
             {static_cast<std::size_t>(std::lround(std::clamp(size.width * scale, 0.0, 4096.0))),
              static_cast<std::size_t>(std::lround(std::clamp(size.height * scale, 0.0, 4096.0)))},
         .scale = scale});
    if (context == nullptr) {
        return nullptr;
    }
    context->fillRect({{0, 0}, size}, color, radius);
    return images_.makeImage(
        std::dynamic_pointer_cast<desktop::DesktopBitmapImage>(context->createImage()), scale);
}

int StockImages::requests(const std::string& bundleIdentifier) const {
    const std::scoped_lock lock(mutex_);
    const auto found = requests_.find(bundleIdentifier);
    return found == requests_.end() ? 0 : found->second;
}

}  // namespace velmoranth::simulator
