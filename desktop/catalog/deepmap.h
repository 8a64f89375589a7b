// Bands in the two versions of the "deepmap" codec (compressions 10 and 11).
#pragma once

#include "desktop/catalog/catalog.h"
#include "desktop/catalog/scratch.h"

namespace velmoranth::catalog {

// Both fill `pixels`, which has room for exactly `width` times `rows` pixels of the format.
[[nodiscard]] Result<void> decodeDeepmap(Bytes data, Picture::Format format, std::uint32_t width,
                                         std::uint32_t rows, Scratch& scratch,
                                         std::span<std::uint8_t> pixels);
[[nodiscard]] Result<void> decodeDeepmap2(Bytes data, Picture::Format format, std::uint32_t width,
                                          std::uint32_t rows, Scratch& scratch,
                                          std::span<std::uint8_t> pixels);

}  // namespace velmoranth::catalog
