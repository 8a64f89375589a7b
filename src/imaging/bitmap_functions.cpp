#include "imaging/bitmap_functions.h"

#include "platform/platform.h"

#include <optional>

namespace velmoranth::imaging {
namespace {

// 32-bit little-endian byte order with premultiplied alpha first.
constexpr std::uint32_t kPremultipliedBgra = 8194;
constexpr std::uint32_t kNoAlpha = 0;
constexpr std::size_t kBitsPerComponent = 8;
constexpr std::size_t kBytesPerRowChosenByPlatform = 0;

}  // namespace

platform::BitmapImageRef CreateGradientImage(std::int32_t pixelsWide, std::int32_t pixelsHigh) {
    platform::CoreGraphics& coreGraphics = platform::platform().coreGraphics;
    const platform::GraphicsContextRef context = coreGraphics.bitmapContextCreate(
        pixelsWide, pixelsHigh, kBitsPerComponent, kBytesPerRowChosenByPlatform,
        platform::ColorSpace::deviceGray, kNoAlpha);
    // Two stops of gray and alpha: black, then white.
    const platform::GradientRef gradient = coreGraphics.gradientCreateWithColorComponents(
        platform::ColorSpace::deviceGray, {0.0, 1.0, 1.0, 1.0}, std::nullopt);
    if (context == nullptr) {
        return nullptr;
    }
    context->drawLinearGradient(gradient, {0, 0}, {0, static_cast<double>(pixelsHigh)},
                                platform::kGradientDrawsAfterEndLocation);
    return context->createImage();
}

platform::GraphicsContextRef MyCreateBitmapContext(std::int32_t pixelsWide,
                                                   std::int32_t pixelsHigh) {
    return platform::platform().coreGraphics.bitmapContextCreate(
        pixelsWide, pixelsHigh, kBitsPerComponent, kBytesPerRowChosenByPlatform,
        platform::ColorSpace::deviceRGB, kPremultipliedBgra);
}

}  // namespace velmoranth::imaging
