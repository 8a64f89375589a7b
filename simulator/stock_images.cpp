#include "simulator/stock_images.h"

#include "desktop/imaging/bitmap_image.h"
#include "simulator/artwork/artwork.h"

#include <cmath>
#include <memory>
#include <utility>
#include <vector>

namespace velmoranth::simulator {

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

int StockImages::requests(const std::string& bundleIdentifier) const {
    const std::scoped_lock lock(mutex_);
    const auto found = requests_.find(bundleIdentifier);
    return found == requests_.end() ? 0 : found->second;
}

}  // namespace velmoranth::simulator
