// Bands of run-length packets (compression 1).
#pragma once

#include "desktop/catalog/catalog.h"

namespace velmoranth::catalog {

struct RowsShape {
    std::uint32_t width = 0;  // pixels
    std::uint32_t rows = 0;
    std::uint32_t bytesPerPixel = 0;  // as stored: 1, 2, 4 or 8
};

// Fills `output`, which has room for exactly the shape's tight rows.
[[nodiscard]] Result<void> decodeRle(Bytes data, const RowsShape& shape,
                                     std::span<std::uint8_t> output);

}  // namespace velmoranth::catalog
