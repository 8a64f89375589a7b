// Pictures for tests of the codecs, premultiplied as catalogs have them.
#pragma once

#include "desktop/catalog/bitmap.h"
#include "tests/support/catalog/bitmap_writer.h"
#include "tests/support/catalog/car_payloads.h"

#include <string>

namespace velmoranth::tests {

using Format = catalog::Picture::Format;

// Noise, the same for the same seed.
[[nodiscard]] catalog::Picture noise(std::uint32_t width, std::uint32_t height, Format format,
                                     std::uint32_t seed = 1);

// What artwork is like: flat areas, edges and gradients. All values are multiples of four.
[[nodiscard]] catalog::Picture artwork(std::uint32_t width, std::uint32_t height, Format format);

// Noise of so many colours, all of which occur if there are as many pixels.
[[nodiscard]] catalog::Picture ofColors(std::uint32_t width, std::uint32_t height,
                                        std::uint32_t colors);

// The same picture with every alpha 255.
[[nodiscard]] catalog::Picture opaque(catalog::Picture picture);

// The shape of a bitmap that stores the picture's own pixels, `rowBytes` apart; 0 for tight.
[[nodiscard]] catalog::BitmapShape shapeOf(const catalog::Picture& picture,
                                           std::uint32_t rowBytes = 0);

// What decoding gave, the pixels or the problem, as one comparable value: "" when it gave
// `expected`.
[[nodiscard]] std::string differenceFrom(const catalog::Picture& expected,
                                         const catalog::Result<catalog::Picture>& decoded);

// Decodes bands of `rows` rows each, which `encode` makes from a part of the picture.
template <class Encode>
[[nodiscard]] catalog::Result<catalog::Picture> inBands(const catalog::Picture& picture,
                                                        catalog::Compression compression,
                                                        std::size_t rows, const Encode& encode,
                                                        std::uint32_t rowBytes = 0);

// The problem's words; "" for a picture.
[[nodiscard]] std::string problemOf(const catalog::Result<catalog::Picture>& decoded);

template <class Encode>
catalog::Result<catalog::Picture> inBands(const catalog::Picture& picture,
                                          catalog::Compression compression, std::size_t rows,
                                          const Encode& encode, std::uint32_t rowBytes) {
    const StoredPixels stored = storedPixels(picture);
    std::vector<CarBand> bands;
    for (std::size_t y = 0; y < stored.rows; y += rows) {
        const std::size_t count = std::min(rows, stored.rows - y);
        bands.push_back(
            {.rows = static_cast<std::uint32_t>(count), .data = encode(stored.band(y, count))});
    }
    return catalog::decodeBitmap(bandedPayload(compression, bands), shapeOf(picture, rowBytes), {});
}

}  // namespace velmoranth::tests
