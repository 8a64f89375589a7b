// Samples of 1, 2, 4 or 8 bits, packed from the most significant bit down.
#pragma once

#include <cstddef>
#include <cstdint>

namespace velmoranth::desktop::image_io {

// Sample number `index` of a row; `bits` is 1, 2, 4 or 8.
[[nodiscard]] inline std::uint8_t packedSample(const std::uint8_t* row, std::size_t index,
                                               std::size_t bits) {
    const std::size_t bit = index * bits;
    const unsigned shift = static_cast<unsigned>(8 - bits - bit % 8);
    return static_cast<std::uint8_t>((row[bit / 8] >> shift) & ((1U << bits) - 1));
}

// c * a / 255, rounded to nearest.
[[nodiscard]] constexpr std::uint8_t multiplied(unsigned color, unsigned alpha) {
    return static_cast<std::uint8_t>((color * alpha + 127) / 255);
}

}  // namespace velmoranth::desktop::image_io
