// Operations on rows of premultiplied B, G, R, A pixels, 8 bits each: straight loops that the
// compiler turns into vector code, of 32 bytes where the processor has them. A product of two
// values in 0..255 is their exact product over 255, rounded to nearest.
#pragma once

#include <cstddef>
#include <cstdint>

namespace velmoranth::desktop {

// round(a × b / 255), exact.
[[nodiscard]] constexpr std::uint8_t multiply255(std::uint8_t a, std::uint8_t b) {
    const auto product = static_cast<std::uint32_t>(a) * b + 128;
    return static_cast<std::uint8_t>((product + (product >> 8)) >> 8);
}

// destination = source + destination × (1 - source alpha). The rows do not overlap, unless they are
// the same.
void compositeRow(std::uint8_t* destination, const std::uint8_t* source, std::size_t pixels);

// The same with the source times `opacity` and, when not null, times a coverage byte a pixel.
void compositeRow(std::uint8_t* destination, const std::uint8_t* source, std::size_t pixels,
                  std::uint8_t opacity, const std::uint8_t* coverage);

// One pixel's colour over a row.
void compositeColorRow(std::uint8_t* destination, const std::uint8_t (&color)[4],
                       std::size_t pixels, const std::uint8_t* coverage);

// destination = source × coverage, a coverage byte a pixel.
void multiplyRow(std::uint8_t* destination, const std::uint8_t* source, std::size_t pixels,
                 const std::uint8_t* coverage);

// destination = source × (255 - sample), where a pixel's sample is the first byte of each group of
// `stride` bytes. Strides 1 and 4 are the fast ones.
void hideRow(std::uint8_t* destination, const std::uint8_t* source, std::size_t pixels,
             const std::uint8_t* samples, std::size_t stride);

// a = a × b for bytes.
void multiplyCoverage(std::uint8_t* a, const std::uint8_t* b, std::size_t count);

}  // namespace velmoranth::desktop
