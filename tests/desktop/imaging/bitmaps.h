// Bitmaps for the tests of drawing, and what has been drawn.
#pragma once

#include "desktop/imaging/bitmap_image.h"
#include "desktop/imaging/graphics_context.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

namespace velmoranth::desktop::test_images {

// Premultiplied B, G, R, A.
using Bgra = std::array<std::uint8_t, 4>;

constexpr Bgra kClear{0, 0, 0, 0};
constexpr Bgra kRed{0, 0, 255, 255};
constexpr Bgra kBlue{255, 0, 0, 255};
constexpr Bgra kBlack{0, 0, 0, 255};

inline std::shared_ptr<DesktopBitmapImage> bitmap(std::size_t width, std::size_t height,
                                                  const std::vector<Bgra>& pixels) {
    auto data = std::make_shared<platform::Data>();
    for (const Bgra& pixel : pixels) {
        data->insert(data->end(), pixel.begin(), pixel.end());
    }
    return DesktopBitmapImage::createPremultiplied(data, {width, height}, width * 4);
}

inline std::vector<Bgra> flat(std::size_t count, const Bgra& pixel) {
    return std::vector<Bgra>(count, pixel);
}

// Opaque pixels that all differ.
inline std::vector<Bgra> distinct(std::size_t count) {
    std::vector<Bgra> pixels(count);
    for (std::size_t i = 0; i < count; ++i) {
        pixels[i] = {static_cast<std::uint8_t>(i * 7), static_cast<std::uint8_t>(255 - i),
                     static_cast<std::uint8_t>(i * 31), 255};
    }
    return pixels;
}

inline std::vector<Bgra> pixelsOf(const PixelView& view) {
    std::vector<Bgra> pixels;
    for (std::size_t y = 0; y < view.height; ++y) {
        for (std::size_t x = 0; x < view.width; ++x) {
            const std::uint8_t* at = view.row(y) + x * 4;
            pixels.push_back({at[0], at[1], at[2], at[3]});
        }
    }
    return pixels;
}

inline std::vector<Bgra> pixelsOf(const platform::BitmapImageRef& image) {
    const auto ours = DesktopBitmapImage::of(image);
    return ours ? pixelsOf(ours->pixels()) : std::vector<Bgra>();
}

inline std::shared_ptr<DesktopGraphicsContext> context(
    std::size_t width, std::size_t height, double scale = 1,
    DesktopGraphicsContext::Content content = DesktopGraphicsContext::Content::premultiplied,
    DesktopGraphicsContext::Origin origin = DesktopGraphicsContext::Origin::topLeft) {
    return DesktopGraphicsContext::create(
        {.size = {width, height}, .scale = scale, .origin = origin, .content = content});
}

inline Bgra at(DesktopGraphicsContext& context, std::size_t x, std::size_t y) {
    const std::uint8_t* const pixel = context.pixels().row(y) + x * 4;
    return {pixel[0], pixel[1], pixel[2], pixel[3]};
}

}  // namespace velmoranth::desktop::test_images
