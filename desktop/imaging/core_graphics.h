// CoreGraphics on Linux: image masks, masking, bitmap contexts and gradients.
#pragma once

#include "platform/core_graphics.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

namespace velmoranth::desktop {

class DesktopCoreGraphics final : public platform::CoreGraphics {
  public:
    [[nodiscard]] platform::BitmapImageRef imageMaskCreate(
        std::size_t width, std::size_t height, std::size_t bitsPerComponent,
        std::size_t bitsPerPixel, std::size_t bytesPerRow,
        const platform::DataProviderRef& provider, bool shouldInterpolate) override;

    // The result is premultiplied B, G, R, A. A mask of another size is stretched: nearest sample
    // when its interpolation is off, else bilinear.
    [[nodiscard]] platform::BitmapImageRef imageCreateWithMask(
        const platform::BitmapImageRef& image, const platform::BitmapImageRef& mask) override;

    [[nodiscard]] platform::GraphicsContextRef bitmapContextCreate(
        std::int64_t width, std::int64_t height, std::size_t bitsPerComponent,
        std::size_t bytesPerRow, platform::ColorSpace space, std::uint32_t bitmapInfo) override;

    [[nodiscard]] platform::GradientRef gradientCreateWithColorComponents(
        platform::ColorSpace space, const std::vector<double>& components,
        const std::optional<std::vector<double>>& locations) override;
};

}  // namespace velmoranth::desktop
