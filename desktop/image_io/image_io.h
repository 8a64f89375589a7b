// Reading and writing image files, told apart by content. Reading keeps the samples as they stand
// in the file (gray, gray with alpha, RGB, RGBA with straight alpha, palette expanded as the
// platform delivers it), because an image mask is made from the stored samples.
#pragma once

#include "desktop/result/result.h"
#include "platform/core_graphics.h"
#include "platform/foundation.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace velmoranth::desktop {

// Colours of an indexed image, straight alpha.
struct PaletteEntry {
    std::uint8_t red = 0;
    std::uint8_t green = 0;
    std::uint8_t blue = 0;

    friend bool operator==(const PaletteEntry&, const PaletteEntry&) = default;
};

// A decoded image. `samples` holds height × bytesPerRow bytes, top row first, laid out as `layout`
// says.
struct DecodedImage {
    platform::BitmapLayout layout;
    platform::DataProviderRef samples;
    std::vector<PaletteEntry> palette;  // for ColorSpace::indexed, at most 256
};

struct DecodeLimits {
    // Refused before anything of that size is allocated.
    std::size_t maxWidth = 16384;              // pixels
    std::size_t maxHeight = 16384;             // pixels
    std::size_t maxBytes = 256 * 1024 * 1024;  // of decoded samples
};

// The first image of the file. Fails with a clause that says what is wrong; never throws.
[[nodiscard]] Result<DecodedImage> decodeImage(std::span<const std::uint8_t> file,
                                               const DecodeLimits& limits = {});

// Samples as the drawing code wants them: premultiplied B, G, R, A, 8 bits each, `width * 4` bytes
// a row, top row first.
[[nodiscard]] std::vector<std::uint8_t> toPremultipliedBgra(const DecodedImage& image);

// How hard to try to make a PNG file small.
enum class PngEffort { fast, balanced };

// A PNG file (8-bit RGBA, or RGB when every pixel is opaque) of premultiplied B, G, R, A pixels.
[[nodiscard]] platform::Data encodePng(std::span<const std::uint8_t> premultipliedBgra,
                                       std::size_t width, std::size_t height,
                                       std::size_t bytesPerRow, PngEffort effort = PngEffort::fast);

}  // namespace velmoranth::desktop
