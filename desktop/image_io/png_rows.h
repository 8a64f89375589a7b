// The filters of PNG rows (the PNG standard, ISO 15948, section 9): each byte is stored as its
// difference to a prediction from its neighbours.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace velmoranth::desktop::image_io {

enum class PngFilter : std::uint8_t { none, sub, up, average, paeth };
inline constexpr std::size_t kPngFilterCount = 5;

// Undoes the filters of all rows of a pass, in place. A row is its filter and then `bytesPerRow`
// bytes; `pixelBytes` is how far left the neighbour lies (at least 1). False for an unknown filter.
[[nodiscard]] bool removeFilters(std::span<std::uint8_t> rows, std::size_t bytesPerRow,
                                 std::size_t pixelBytes);

// Writes `row` filtered to `target`, which has its size. `above` is the row above it, zeroes for
// the first.
void applyFilter(PngFilter filter, std::span<const std::uint8_t> row,
                 std::span<const std::uint8_t> above, std::size_t pixelBytes,
                 std::span<std::uint8_t> target);

}  // namespace velmoranth::desktop::image_io
