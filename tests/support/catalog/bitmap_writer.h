// Writes the data of bitmaps in every way in which asset catalogs store them, so that tests make
// what they read. The writer sees to being right, not to size or speed.
//
//     const auto data = tests::rle({.width = 8, .rows = 8, .bytesPerPixel = 4, .bytes = pixels},
//     4); const auto payload = tests::bitmapPayload(Compression::rle, data);
#pragma once

#include "desktop/catalog/catalog.h"
#include "tests/support/catalog/byte_writer.h"

namespace velmoranth::tests {

// Pixels as a bitmap stores them, in tight rows.
struct StoredPixels {
    std::size_t width = 0;
    std::size_t rows = 0;
    std::size_t bytesPerPixel = 4;
    ByteVector bytes = {};

    [[nodiscard]] std::span<const std::uint8_t> pixel(std::size_t x, std::size_t y) const {
        return std::span(bytes).subspan((y * width + x) * bytesPerPixel, bytesPerPixel);
    }

    // So many rows from that one on.
    [[nodiscard]] StoredPixels band(std::size_t firstRow, std::size_t count) const;
    [[nodiscard]] StoredPixels part(std::size_t x, std::size_t y, std::size_t partWidth,
                                    std::size_t partRows) const;
};

// A picture's pixels, stored as it has them.
[[nodiscard]] StoredPixels storedPixels(const catalog::Picture& picture);

// The rows so many bytes apart, with junk between them.
[[nodiscard]] ByteVector paddedRows(const StoredPixels& stored, std::size_t stride);

// The data of a band of run lengths. Rows that are equal are stored once.
[[nodiscard]] ByteVector rle(const StoredPixels& stored, std::size_t pixelCode);

enum class DeflateWrapping { none, zlib, gzip };

[[nodiscard]] ByteVector deflated(const ByteVector& bytes, DeflateWrapping wrapping);

// A band of indexes into a palette, not compressed. `stored` has blue, green, red and alpha and at
// most 4096 colours; the palette has so many entries more than that, which no pixel uses.
[[nodiscard]] ByteVector paletteImage(const StoredPixels& stored, std::size_t unusedColors = 0);

enum class DeepmapVersion { first, second };

enum class SegmentCompression { lzfse, lzvn, alternating };

struct DeepmapOptions {
    DeepmapVersion version = DeepmapVersion::second;
    std::size_t method = 2;
    // Not 0: differences of colour are stored halved, which is exact for colours that are multiples
    // of four.
    std::size_t chromaScale = 1;
    std::size_t pixelCode = 4;
    std::size_t segmentRows = 64;                            // of the second version
    std::vector<std::uint8_t> predictors = {0, 1, 2, 3, 4};  // of the rows of a segment, in turn
    std::size_t paletteType = 4;  // of the second version: 3 or 4; the first has none but 0
    SegmentCompression compression = SegmentCompression::alternating;
};

// The data of a band in either version of the deepmap codec.
[[nodiscard]] ByteVector deepmap(const StoredPixels& stored, const DeepmapOptions& options);

}  // namespace velmoranth::tests
