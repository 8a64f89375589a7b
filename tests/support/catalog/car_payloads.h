// The payloads of renditions, for catalogs that tests make.
#pragma once

#include "desktop/catalog/catalog.h"
#include "tests/support/catalog/byte_writer.h"

#include <array>
#include <cstdint>
#include <span>
#include <vector>

namespace velmoranth::tests {

// Pixels as tests write them: premultiplied R, G, B, A, tight, top row first.
struct CarPixels {
    std::uint32_t width = 0;
    std::uint32_t height = 0;
    ByteVector rgba = {};

    static CarPixels filled(std::uint32_t width, std::uint32_t height,
                            std::array<std::uint8_t, 4> rgba);
    // Each pixel of up to 128 × 128 differs from all others; alpha is 255.
    static CarPixels pattern(std::uint32_t width, std::uint32_t height);
};

// The rows as an uncompressed bitmap has them: B, G, R, A for ARGB, gray and alpha for GA8 (gray
// from the red). Rows of `rowBytes` are filled up with 0xEE; 0 for tight ones.
[[nodiscard]] ByteVector storedRows(const CarPixels& pixels, std::uint32_t pixelFormat,
                                    std::uint32_t rowBytes = 0);

// A bitmap without bands: `data` as the compression has it.
[[nodiscard]] ByteVector bitmapPayload(catalog::Compression compression,
                                       std::span<const std::uint8_t> data, bool opaque = false);

struct CarBand {
    std::uint32_t rows = 0;
    ByteVector data = {};
};

[[nodiscard]] ByteVector bandedPayload(catalog::Compression compression,
                                       const std::vector<CarBand>& bands, bool opaque = false);

// Version 0 is the file as it is, 1 an LZFSE stream of it.
[[nodiscard]] ByteVector filePayload(std::span<const std::uint8_t> bytes,
                                     std::uint32_t version = 0);
[[nodiscard]] ByteVector colorPayload(std::uint32_t colorSpace,
                                      const std::vector<double>& components);
[[nodiscard]] ByteVector iconSizesPayload(const std::vector<catalog::IconSize>& sizes);

}  // namespace velmoranth::tests
