// Bands of indexes into a palette (compression 8).
#pragma once

#include "desktop/catalog/pixel_formats.h"
#include "desktop/catalog/scratch.h"

namespace velmoranth::catalog {

// Fills `pixels`, which has room for exactly `width` times `rows` pixels of the format's picture.
[[nodiscard]] Result<void> decodePaletteImage(Bytes data, const PixelFormat& format,
                                              std::uint32_t width, std::uint32_t rows,
                                              Scratch& scratch, std::span<std::uint8_t> pixels);

}  // namespace velmoranth::catalog
