#include "desktop/imaging/compositing.h"

#include <algorithm>
#include <bit>
#include <cstring>

namespace velmoranth::desktop {

namespace {

// A pixel read as one number has its alpha in the top byte.
static_assert(std::endian::native == std::endian::little);

// Four pixels, and the same with room for products: vectors as g++ and clang both know them, so
// that the factors of a pixel are spread over its components without a way through memory.
using Bytes = std::uint8_t __attribute__((vector_size(16)));
using Words = std::uint16_t __attribute__((vector_size(16)));
using Numbers = std::uint32_t __attribute__((vector_size(16)));
constexpr std::size_t kLanePixels = 4;

struct Wide {
    Words low;   // two pixels
    Words high;  // two pixels
};

// Rows are worked on in pieces, most of which are opaque or clear as a whole.
constexpr std::size_t kPiece = 64;

Bytes load(const std::uint8_t* from, std::size_t bytes) {
    Bytes result{};
    std::memcpy(&result, from, bytes);
    return result;
}

Wide widen(Bytes bytes) {
    const Bytes zero{};
    return {(Words)__builtin_shufflevector(bytes, zero, 0, 16, 1, 17, 2, 18, 3, 19, 4, 20, 5, 21, 6,
                                           22, 7, 23),
            (Words)__builtin_shufflevector(bytes, zero, 8, 24, 9, 25, 10, 26, 11, 27, 12, 28, 13,
                                           29, 14, 30, 15, 31)};
}

// Of values up to 255.
Bytes narrow(const Wide& wide) {
    return __builtin_shufflevector((Bytes)wide.low, (Bytes)wide.high, 0, 2, 4, 6, 8, 10, 12, 14, 16,
                                   18, 20, 22, 24, 26, 28, 30);
}

Words product(Words a, Words b) {
    const Words sum = a * b + 128;
    return (sum + (sum >> 8)) >> 8;
}

Wide product(const Wide& a, const Wide& b) {
    return {product(a.low, b.low), product(a.high, b.high)};
}

// A byte a pixel, written for each of its components.
Wide spread(const std::uint8_t* factors, std::size_t pixels) {
    std::uint32_t four = 0;
    std::memcpy(&four, factors, pixels);
    const auto each = (Bytes)Numbers{four, 0, 0, 0};
    const auto twice = (Words)__builtin_shufflevector(each, each, 0, 16, 1, 17, 2, 18, 3, 19, 4, 20,
                                                      5, 21, 6, 22, 7, 23);
    return widen((Bytes)__builtin_shufflevector(twice, twice, 0, 8, 1, 9, 2, 10, 3, 11));
}

Wide same(std::uint8_t factor) {
    const Words all = Words{} + factor;
    return {all, all};
}

Wide inverse(const Wide& factors) {
    return {255 - factors.low, 255 - factors.high};
}

Wide alphas(const Wide& pixels) {
    return {__builtin_shufflevector(pixels.low, pixels.low, 3, 3, 3, 3, 7, 7, 7, 7),
            __builtin_shufflevector(pixels.high, pixels.high, 3, 3, 3, 3, 7, 7, 7, 7)};
}

// Colour above alpha, which no picture of ours has but a file may, saturates.
Words saturated(Words sums) {
    return (sums | (0 - (sums >> 8))) & 255;
}

Bytes over(Bytes destination, const Wide& source) {
    const Wide behind = product(widen(destination), inverse(alphas(source)));
    return narrow({saturated(source.low + behind.low), saturated(source.high + behind.high)});
}

// Calls work(first pixel, pixels) for four pixels at a time, the last ones may be fewer.
template <class Work>
void inLanes(std::size_t pixels, const Work& work) {
    std::size_t first = 0;
    for (; first + kLanePixels <= pixels; first += kLanePixels) {
        work(first, kLanePixels);
    }
    if (first < pixels) {
        work(first, pixels - first);
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

// sourceOf(first pixel, pixels) gives what is drawn over.
template <class SourceOf>
void compositeLanes(std::uint8_t* destination, std::size_t pixels, const SourceOf& sourceOf) {
    inLanes(pixels, [&](std::size_t first, std::size_t count) {
        std::uint8_t* const at = destination + first * 4;
        const Bytes result = over(load(at, count * 4), sourceOf(first, count));
        std::memcpy(at, &result, count * 4);
    });
}

// factorsOf(first pixel, pixels) gives the factors of the components.
template <class FactorsOf>
void multiplyLanes(std::uint8_t* destination, const std::uint8_t* source, std::size_t pixels,
                   const FactorsOf& factorsOf) {
    inLanes(pixels, [&](std::size_t first, std::size_t count) {
        const Bytes result =
            narrow(product(widen(load(source + first * 4, count * 4)), factorsOf(first, count)));
        std::memcpy(destination + first * 4, &result, count * 4);
    });
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
            compositeLanes(to, count, [from](std::size_t at, std::size_t some) {
                return widen(load(from + at * 4, some * 4));
            });
        }
    });
}

void compositeRow(std::uint8_t* destination, const std::uint8_t* source, std::size_t pixels,
                  std::uint8_t opacity, const std::uint8_t* coverage) {
    const Wide whole = same(opacity);
    inPieces(pixels, [&](std::size_t first, std::size_t count) {
        std::uint8_t* const to = destination + first * 4;
        const std::uint8_t* const from = source + first * 4;
        const std::uint8_t* const shares = coverage == nullptr ? nullptr : coverage + first;
        const Kind kind = shares == nullptr ? Kind::opaque : kindOfCoverage(shares, count);
        if (kind == Kind::opaque && opacity == 255) {
            compositeRow(to, from, count);
        } else if (kind == Kind::opaque) {
            compositeLanes(to, count, [&](std::size_t at, std::size_t some) {
                return product(widen(load(from + at * 4, some * 4)), whole);
            });
        } else if (kind == Kind::mixed) {
            compositeLanes(to, count, [&](std::size_t at, std::size_t some) {
                return product(widen(load(from + at * 4, some * 4)),
                               product(spread(shares + at, some), whole));
            });
        }
    });
}

void compositeColorRow(std::uint8_t* destination, const std::uint8_t (&color)[4],
                       std::size_t pixels, const std::uint8_t* coverage) {
    Bytes pattern{};
    for (std::size_t i = 0; i < sizeof(pattern); ++i) {
        pattern[i] = color[i % 4];
    }
    const Wide source = widen(pattern);
    inPieces(pixels, [&](std::size_t first, std::size_t count) {
        std::uint8_t* const to = destination + first * 4;
        const std::uint8_t* const shares = coverage == nullptr ? nullptr : coverage + first;
        const Kind kind = shares == nullptr ? Kind::opaque : kindOfCoverage(shares, count);
        if (kind == Kind::opaque) {
            compositeLanes(to, count,
                           [&](std::size_t /*at*/, std::size_t /*some*/) { return source; });
        } else if (kind == Kind::mixed) {
            compositeLanes(to, count, [&](std::size_t at, std::size_t some) {
                return product(source, spread(shares + at, some));
            });
        }
    });
}

void multiplyRow(std::uint8_t* destination, const std::uint8_t* source, std::size_t pixels,
                 const std::uint8_t* coverage) {
    multiplyLanes(destination, source, pixels, [coverage](std::size_t first, std::size_t count) {
        return spread(coverage + first, count);
    });
}

void hideRow(std::uint8_t* destination, const std::uint8_t* source, std::size_t pixels,
             const std::uint8_t* samples, std::size_t stride) {
    multiplyLanes(destination, source, pixels, [=](std::size_t first, std::size_t count) {
        if (stride == 1) {
            return inverse(spread(samples + first, count));
        }
        std::uint8_t each[kLanePixels] = {};
        for (std::size_t i = 0; i < count; ++i) {
            each[i] = samples[(first + i) * stride];
        }
        return inverse(spread(each, count));
    });
}

void multiplyCoverage(std::uint8_t* a, const std::uint8_t* b, std::size_t count) {
    for (std::size_t i = 0; i < count; ++i) {
        a[i] = multiply255(a[i], b[i]);
    }
}

}  // namespace velmoranth::desktop
