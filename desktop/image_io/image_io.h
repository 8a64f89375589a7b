// Reading and writing image files, told apart by content. Reading keeps the samples as they stand
// in the file (gray, gray with alpha, RGB, RGBA with straight alpha, palette expanded as the
// platform delivers it), because an image mask is made from the stored samples.
#pragma once

#include "desktop/result/result.h"
#include "platform/core_graphics.h"
#include "platform/foundation.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

namespace velmoranth::desktop {

// A colour of an indexed image, opaque.
struct PaletteEntry {
    std::uint8_t red = 0;
    std::uint8_t green = 0;
    std::uint8_t blue = 0;

    friend bool operator==(const PaletteEntry&, const PaletteEntry&) = default;
};

// The bytes behind an image; shared, never changed.
using Samples = std::shared_ptr<const platform::Data>;

// A decoded image. `samples` holds height × bytesPerRow bytes, top row first, laid out as `layout`
// says.
struct DecodedImage {
    platform::BitmapLayout layout;
    Samples samples;
    std::vector<PaletteEntry> palette;  // for ColorSpace::indexed, at most 256
};

struct DecodeLimits {
    // Refused before anything of that size is allocated.
    std::size_t maxWidth = 16384;              // pixels
    std::size_t maxHeight = 16384;             // pixels
    std::size_t maxBytes = 256 * 1024 * 1024;  // of decoded samples
};

// The first image of the file, in one of these layouts (8 bits a component, order `standard`,
// unless said otherwise; 16-bit components have the most significant byte first):
//   PNG   gray of 1, 2, 4 (packed), 8 or 16 bits; gray with alpha, RGB and RGBA of 8 or 16; alpha
//   is
//         `last`. Palettes are indexed, of 1, 2, 4 (packed) or 8 bits. With a transparent colour or
//         palette alpha, gray comes with alpha, RGB and palettes as RGBA.
//   The phone's own PNG variant: premultiplied B, G, R, A (`premultipliedFirst`, `little32`).
//   JPEG  gray or RGB.
//   GIF   the first frame on the file's canvas: indexed when it is opaque and fills the canvas,
//   else
//         RGBA, alpha `last`.
//   TIFF  gray or RGB, with alpha `last` or `premultipliedLast` as stored; all other kinds as
//         premultiplied R, G, B, A (`premultipliedLast`).
// Colour profiles, gamma and notes on orientation are not applied. Bytes after the image do not
// matter; a file that is cut off, a wrong checksum in a chunk of consequence, or too little image
// data is a failure, with a clause that says what is wrong. Never throws. Besides the samples it
// takes no more than about three times their memory while it works.
[[nodiscard]] Result<DecodedImage> decodeImage(std::span<const std::uint8_t> file,
                                               const DecodeLimits& limits = {});

// What can be said of an image without showing it.
struct ImageFacts {
    std::size_t width = 0;   // pixels
    std::size_t height = 0;  // pixels
    bool isClear = false;    // there are pixels, and all are wholly transparent

    friend bool operator==(const ImageFacts&, const ImageFacts&) = default;
};

// For a file that decodeImage() takes, and a failure with the same clause for one that it does not.
// The usual kinds of PNG cost about a third of decoding them.
[[nodiscard]] Result<ImageFacts> examineImage(std::span<const std::uint8_t> file,
                                              const DecodeLimits& limits = {});

// Samples as the drawing code wants them: premultiplied B, G, R, A, 8 bits each, `width * 4` bytes
// a row, top row first. Colours are rounded to nearest and never above their alpha. An index beyond
// the palette is opaque black. Takes every layout above and, with 8 or 16 bits a component, gray
// and RGB with any kind of alpha; empty for other layouts and for an image with too few samples.
[[nodiscard]] std::vector<std::uint8_t> toPremultipliedBgra(const DecodedImage& image);

// How hard to try to make a PNG file small: `fast` deflates at level 1, `balanced` at level 6 and
// the best filter for each row, which on an app's catalog takes 2.2 times as long for files of
// 0.87 times the size (benchmarks/catalog_extract_benchmark.cpp).
enum class PngEffort { fast, balanced };

// A PNG file (8-bit RGBA, or RGB when every pixel is opaque; sRGB) of premultiplied B, G, R, A
// pixels; the last row may end with its last pixel. Straight colours are rounded to nearest, so
// what is read back and premultiplied is what was given. Empty when there is no pixel or there are
// fewer bytes than the sizes say.
[[nodiscard]] platform::Data encodePng(std::span<const std::uint8_t> premultipliedBgra,
                                       std::size_t width, std::size_t height,
                                       std::size_t bytesPerRow, PngEffort effort = PngEffort::fast);

// A PNG file of 8-bit gray samples without alpha, tight rows. Empty when there is no pixel or there
// are fewer samples than the sizes say.
[[nodiscard]] platform::Data encodeGrayPng(std::span<const std::uint8_t> samples, std::size_t width,
                                           std::size_t height);

}  // namespace velmoranth::desktop
