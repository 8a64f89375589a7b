// The bitmap payload ("MLEC") of a rendition: bands, their compression, and the pixels.
#pragma once

#include "desktop/catalog/catalog.h"

namespace velmoranth::catalog {

// The fields before the data.
struct BitmapHeader {
    bool banded = false;
    bool opaque = false;
    Compression compression = Compression::uncompressed;
    std::uint32_t lengthOrBands = 0;  // of bands when `banded`, else bytes of data

    friend bool operator==(const BitmapHeader&, const BitmapHeader&) = default;
};

inline constexpr std::size_t kBitmapHeaderSize = 16;  // bytes

[[nodiscard]] Result<BitmapHeader> readBitmapHeader(Bytes payload);

// What of the record the pixels depend on.
struct BitmapShape {
    std::uint32_t width = 0;        // pixels, at least 1
    std::uint32_t height = 0;       // pixels, at least 1
    std::uint32_t pixelFormat = 0;  // four-character code
    std::uint32_t colorSpace = 0;
    std::uint32_t rowBytes = 0;  // of the stored rows; 0: as many as the pixels take
};

// Whether there is a decoder for it.
[[nodiscard]] bool isDecodable(Compression compression);

// The whole picture: premultiplied, tight, top row first, alpha 255 where the bitmap is opaque.
[[nodiscard]] Result<Picture> decodeBitmap(Bytes payload, const BitmapShape& shape,
                                           const Limits& limits);

}  // namespace velmoranth::catalog
