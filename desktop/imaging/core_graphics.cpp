#include "desktop/imaging/core_graphics.h"

#include "desktop/imaging/bitmap_image.h"
#include "desktop/imaging/gradient.h"
#include "desktop/imaging/graphics_context.h"
#include "desktop/imaging/masking.h"

namespace velmoranth::desktop {

namespace {

using platform::ColorSpace;

// The combinations of a bitmap context that are supported.
struct ContextKind {
    ColorSpace space;
    std::size_t bitsPerComponent;
    std::uint32_t bitmapInfo;
    DesktopGraphicsContext::Content content;
};

constexpr ContextKind kContextKinds[] = {
    {ColorSpace::deviceGray, 8, 0, DesktopGraphicsContext::Content::gray},
    {ColorSpace::deviceRGB, 8, 8194, DesktopGraphicsContext::Content::premultiplied},
};

}  // namespace

platform::BitmapImageRef DesktopCoreGraphics::imageMaskCreate(
    std::size_t width, std::size_t height, std::size_t bitsPerComponent, std::size_t bitsPerPixel,
    std::size_t bytesPerRow, const platform::DataProviderRef& provider, bool shouldInterpolate) {
    const platform::BitmapLayout layout{.width = width,
                                        .height = height,
                                        .bitsPerComponent = bitsPerComponent,
                                        .bitsPerPixel = bitsPerPixel,
                                        .bytesPerRow = bytesPerRow};
    return DesktopBitmapImage::createMask(
        layout, provider, shouldInterpolate ? Interpolation::smooth : Interpolation::none);
}

platform::BitmapImageRef DesktopCoreGraphics::imageCreateWithMask(
    const platform::BitmapImageRef& image, const platform::BitmapImageRef& mask) {
    const auto picture = DesktopBitmapImage::of(image);
    const auto through = DesktopBitmapImage::of(mask);
    if (picture == nullptr || through == nullptr || picture->isMask() || !canMask(*through)) {
        return nullptr;
    }
    return maskImage(*picture, *through);
}

platform::GraphicsContextRef DesktopCoreGraphics::bitmapContextCreate(
    std::int64_t width, std::int64_t height, std::size_t bitsPerComponent, std::size_t bytesPerRow,
    ColorSpace space, std::uint32_t bitmapInfo) {
    if (width <= 0 || height <= 0) {
        return nullptr;
    }
    for (const ContextKind& kind : kContextKinds) {
        if (kind.space == space && kind.bitsPerComponent == bitsPerComponent &&
            kind.bitmapInfo == bitmapInfo) {
            return DesktopGraphicsContext::create(
                {.size = {static_cast<std::size_t>(width), static_cast<std::size_t>(height)},
                 .scale = 1,
                 .origin = DesktopGraphicsContext::Origin::bottomLeft,
                 .content = kind.content,
                 .bytesPerRow = bytesPerRow});
        }
    }
    return nullptr;
}

platform::GradientRef DesktopCoreGraphics::gradientCreateWithColorComponents(
    ColorSpace space, const std::vector<double>& components,
    const std::optional<std::vector<double>>& locations) {
    return DesktopGradient::create(space, components, locations);
}

}  // namespace velmoranth::desktop
