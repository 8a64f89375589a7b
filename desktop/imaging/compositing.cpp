#include "desktop/imaging/compositing.h"

#include "desktop/imaging/wide_vectors.h"

#include <algorithm>
#include <bit>
#include <cstring>

namespace velmoranth::desktop {

namespace {

// A pixel read as one number has its alpha in the top byte.
static_assert(std::endian::native == std::endian::little);

// Rows are worked on in pieces, most of which are opaque or clear as a whole.
constexpr std::size_t kPiece = 64;

// Two components in the low halves of two words, with room for products.
constexpr std::uint32_t kTwoComponents = 0x00FF00FF;

// round(component * factor / 255) of two components, each in the high half of its word.
[[gnu::always_inline]] inline std::uint32_t productOfTwo(std::uint32_t two, std::uint32_t factor) {
    const std::uint32_t product = two * factor + 0x00800080;
    return product + (product >> 8U & kTwoComponents);
}

[[gnu::always_inline]] inline std::uint32_t times(std::uint32_t pixel, std::uint32_t factor) {
    return (productOfTwo(pixel & kTwoComponents, factor) >> 8U & kTwoComponents) |
           (productOfTwo(pixel >> 8U & kTwoComponents, factor) & ~kTwoComponents);
}

// A sum's ninth bit makes all of the other eight.
[[gnu::always_inline]] inline std::uint32_t saturatedSumOfTwo(std::uint32_t a, std::uint32_t b) {
    const std::uint32_t sum = (a & kTwoComponents) + (b & kTwoComponents);
    return (sum | (0x01000100 - (sum >> 8U & 0x00010001))) & kTwoComponents;
}

// Colour above alpha, which no picture of ours has but a file may, saturates.
[[gnu::always_inline]] inline std::uint32_t over(std::uint32_t source, std::uint32_t destination) {
    const std::uint32_t behind = times(destination, 255 - (source >> 24U));
    return saturatedSumOfTwo(source, behind) | saturatedSumOfTwo(source >> 8U, behind >> 8U) << 8U;
}

[[gnu::always_inline]] inline std::uint32_t pixelAt(const std::uint8_t* row, std::size_t index) {
    std::uint32_t pixel = 0;
    std::memcpy(&pixel, row + index * 4, 4);
    return pixel;
}

// Results are made apart from the rows, so that no loop has to ask first whether those are the
// same.
[[gnu::always_inline]] inline void overPiece(std::uint8_t* destination, const std::uint8_t* source,
                                             std::size_t pixels) {
    for (std::size_t i = 0; i < pixels; ++i) {
        const std::uint32_t result = over(pixelAt(source, i), pixelAt(destination, i));
        std::memcpy(destination + i * 4, &result, 4);
    }
}

// The source times a byte a pixel.
[[gnu::always_inline]] inline void overWithShares(std::uint8_t* destination,
                                                  const std::uint8_t* source,
                                                  const std::uint8_t* shares, std::size_t pixels) {
    for (std::size_t i = 0; i < pixels; ++i) {
        const std::uint32_t result =
            over(times(pixelAt(source, i), shares[i]), pixelAt(destination, i));
        std::memcpy(destination + i * 4, &result, 4);
    }
}

// The same of one colour.
[[gnu::always_inline]] inline void colorOverPiece(std::uint8_t* destination, std::uint32_t color,
                                                  std::size_t pixels) {
    for (std::size_t i = 0; i < pixels; ++i) {
        const std::uint32_t result = over(color, pixelAt(destination, i));
        std::memcpy(destination + i * 4, &result, 4);
    }
}

[[gnu::always_inline]] inline void colorOverWithShares(std::uint8_t* destination,
                                                       std::uint32_t color,
                                                       const std::uint8_t* shares,
                                                       std::size_t pixels) {
    for (std::size_t i = 0; i < pixels; ++i) {
        const std::uint32_t result = over(times(color, shares[i]), pixelAt(destination, i));
        std::memcpy(destination + i * 4, &result, 4);
    }
}

[[gnu::always_inline]] inline void multiplyPiece(std::uint8_t* destination,
                                                 const std::uint8_t* source,
                                                 const std::uint8_t* factors, std::size_t pixels) {
    for (std::size_t i = 0; i < pixels; ++i) {
        const std::uint32_t result = times(pixelAt(source, i), factors[i]);
        std::memcpy(destination + i * 4, &result, 4);
    }
}

// Calls work(first pixel, pixels) piece by piece.
template <class Work>
void inPieces(std::size_t pixels, const Work& work) {
    for (std::size_t first = 0; first < pixels; first += kPiece) {
        work(first, std::min(kPiece, pixels - first));
    }
}

// What all pixels of a piece have in common.
enum class Kind { opaque, clear, mixed };

Kind kindOf(const std::uint8_t* source, std::size_t pixels) {
    std::uint32_t all = ~std::uint32_t{0};
    std::uint32_t any = 0;
    for (std::size_t i = 0; i < pixels; ++i) {
        std::uint32_t pixel = 0;
        std::memcpy(&pixel, source + i * 4, 4);
        all &= pixel;
        any |= pixel;
    }
    if (any == 0) {
        return Kind::clear;
    }
    return all >> 24 == 255 ? Kind::opaque : Kind::mixed;
}

// The same of coverage: all of each pixel, nothing of any.
Kind kindOfCoverage(const std::uint8_t* coverage, std::size_t count) {
    std::uint8_t all = 255;
    std::uint8_t any = 0;
    for (std::size_t i = 0; i < count; ++i) {
        all &= coverage[i];
        any |= coverage[i];
    }
    if (any == 0) {
        return Kind::clear;
    }
    return all == 255 ? Kind::opaque : Kind::mixed;
}

}  // namespace

void compositeRow(std::uint8_t* destination, const std::uint8_t* source, std::size_t pixels) {
    inPieces(pixels, [&](std::size_t first, std::size_t count) {
        std::uint8_t* const to = destination + first * 4;
        const std::uint8_t* const from = source + first * 4;
        const Kind kind = kindOf(from, count);
        if (kind == Kind::opaque) {
            std::memmove(to, from, count * 4);
        } else if (kind == Kind::mixed) {
            callWide<overPiece>(to, from, count);
        }
    });
}

void compositeRow(std::uint8_t* destination, const std::uint8_t* source, std::size_t pixels,
                  std::uint8_t opacity, const std::uint8_t* coverage) {
    std::uint8_t shares[kPiece];
    std::fill_n(shares, kPiece, opacity);
    inPieces(pixels, [&](std::size_t first, std::size_t count) {
        std::uint8_t* const to = destination + first * 4;
        const std::uint8_t* const from = source + first * 4;
        const Kind kind =
            coverage == nullptr ? Kind::opaque : kindOfCoverage(coverage + first, count);
        if (kind == Kind::clear) {
            return;
        }
        if (opacity == 255 && kind == Kind::opaque) {
            compositeRow(to, from, count);
        } else if (kind == Kind::opaque) {
            callWide<overWithShares>(to, from, static_cast<const std::uint8_t*>(shares), count);
        } else if (opacity == 255) {
            callWide<overWithShares>(to, from, coverage + first, count);
        } else {
            std::uint8_t both[kPiece];
            std::copy_n(coverage + first, count, both);
            multiplyCoverage(both, shares, count);
            callWide<overWithShares>(to, from, static_cast<const std::uint8_t*>(both), count);
        }
    });
}

void compositeColorRow(std::uint8_t* destination, const std::uint8_t (&color)[4],
                       std::size_t pixels, const std::uint8_t* coverage) {
    const std::uint32_t whole = pixelAt(color, 0);
    inPieces(pixels, [&](std::size_t first, std::size_t count) {
        std::uint8_t* const to = destination + first * 4;
        const std::uint8_t* const shares = coverage == nullptr ? nullptr : coverage + first;
        const Kind kind = shares == nullptr ? Kind::opaque : kindOfCoverage(shares, count);
        if (kind == Kind::opaque) {
            callWide<colorOverPiece>(to, whole, count);
        } else if (kind == Kind::mixed) {
            callWide<colorOverWithShares>(to, whole, shares, count);
        }
    });
}

void multiplyRow(std::uint8_t* destination, const std::uint8_t* source, std::size_t pixels,
                 const std::uint8_t* coverage) {
    inPieces(pixels, [&](std::size_t first, std::size_t count) {
        callWide<multiplyPiece>(destination + first * 4, source + first * 4, coverage + first,
                                count);
    });
}

void hideRow(std::uint8_t* destination, const std::uint8_t* source, std::size_t pixels,
             const std::uint8_t* samples, std::size_t stride) {
    inPieces(pixels, [&](std::size_t first, std::size_t count) {
        std::uint8_t shown[kPiece];
        const std::uint8_t* const from = samples + first * stride;
        const auto fill = [&](std::size_t step) {
            for (std::size_t i = 0; i < count; ++i) {
                shown[i] = static_cast<std::uint8_t>(255 - from[i * step]);
            }
        };
        // Known to the compiler, it makes vector code.
        stride == 1 ? fill(1) : stride == 4 ? fill(4) : fill(stride);
        callWide<multiplyPiece>(destination + first * 4, source + first * 4,
                                static_cast<const std::uint8_t*>(shown), count);
    });
}

void multiplyCoverage(std::uint8_t* a, const std::uint8_t* b, std::size_t count) {
    for (std::size_t i = 0; i < count; ++i) {
        a[i] = multiply255(a[i], b[i]);
    }
}

}  // namespace velmoranth::desktop
