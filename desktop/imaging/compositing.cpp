#include "desktop/imaging/compositing.h"

#include "desktop/imaging/lanes.h"

#include <algorithm>
#include <bit>
#include <cstring>

namespace velmoranth::desktop {

namespace {

// A pixel read as one number has its alpha in the top byte.
static_assert(std::endian::native == std::endian::little);

using Numbers = std::uint32_t __attribute__((vector_size(16)));

// Rows are worked on in pieces, most of which are opaque or clear as a whole.
constexpr std::size_t kPiece = 64;

LaneWords product(LaneWords a, LaneWords b) {
    const LaneWords sum = a * b + 128;
    return (sum + (sum >> 8)) >> 8;
}

WideLane product(const WideLane& a, const WideLane& b) {
    return {product(a.low, b.low), product(a.high, b.high)};
}

// A byte a pixel, written for each of its components.
WideLane spread(const std::uint8_t* factors, std::size_t pixels) {
    std::uint32_t four = 0;
    std::memcpy(&four, factors, pixels);
    const auto each = (LaneBytes)Numbers{four, 0, 0, 0};
    const auto twice = (LaneWords)__builtin_shufflevector(each, each, 0, 16, 1, 17, 2, 18, 3, 19, 4,
                                                          20, 5, 21, 6, 22, 7, 23);
    return widen((LaneBytes)__builtin_shufflevector(twice, twice, 0, 8, 1, 9, 2, 10, 3, 11));
}

WideLane same(std::uint8_t factor) {
    const LaneWords all = LaneWords{} + factor;
    return {all, all};
}

WideLane inverse(const WideLane& factors) {
    return {255 - factors.low, 255 - factors.high};
}

WideLane alphas(const WideLane& pixels) {
    return {__builtin_shufflevector(pixels.low, pixels.low, 3, 3, 3, 3, 7, 7, 7, 7),
            __builtin_shufflevector(pixels.high, pixels.high, 3, 3, 3, 3, 7, 7, 7, 7)};
}

// Colour above alpha, which no picture of ours has but a file may, saturates.
LaneWords saturated(LaneWords sums) {
    return (sums | (0 - (sums >> 8))) & 255;
}

LaneBytes over(LaneBytes destination, const WideLane& source) {
    const WideLane behind = product(widen(destination), inverse(alphas(source)));
    return narrow({saturated(source.low + behind.low), saturated(source.high + behind.high)});
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
        const LaneBytes result = over(loadLane(at, count * 4), sourceOf(first, count));
        std::memcpy(at, &result, count * 4);
    });
}

// factorsOf(first pixel, pixels) gives the factors of the components.
template <class FactorsOf>
void multiplyLanes(std::uint8_t* destination, const std::uint8_t* source, std::size_t pixels,
                   const FactorsOf& factorsOf) {
    inLanes(pixels, [&](std::size_t first, std::size_t count) {
        const LaneBytes result = narrow(
            product(widen(loadLane(source + first * 4, count * 4)), factorsOf(first, count)));
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
                return widen(loadLane(from + at * 4, some * 4));
            });
        }
    });
}

void compositeRow(std::uint8_t* destination, const std::uint8_t* source, std::size_t pixels,
                  std::uint8_t opacity, const std::uint8_t* coverage) {
    const WideLane whole = same(opacity);
    inPieces(pixels, [&](std::size_t first, std::size_t count) {
        std::uint8_t* const to = destination + first * 4;
        const std::uint8_t* const from = source + first * 4;
        const std::uint8_t* const shares = coverage == nullptr ? nullptr : coverage + first;
        const Kind kind = shares == nullptr ? Kind::opaque : kindOfCoverage(shares, count);
        if (kind == Kind::opaque && opacity == 255) {
            compositeRow(to, from, count);
        } else if (kind == Kind::opaque) {
            compositeLanes(to, count, [&](std::size_t at, std::size_t some) {
                return product(widen(loadLane(from + at * 4, some * 4)), whole);
            });
        } else if (kind == Kind::mixed) {
            compositeLanes(to, count, [&](std::size_t at, std::size_t some) {
                return product(widen(loadLane(from + at * 4, some * 4)),
                               product(spread(shares + at, some), whole));
            });
        }
    });
}

void compositeColorRow(std::uint8_t* destination, const std::uint8_t (&color)[4],
                       std::size_t pixels, const std::uint8_t* coverage) {
    LaneBytes pattern{};
    for (std::size_t i = 0; i < sizeof(pattern); ++i) {
        pattern[i] = color[i % 4];
    }
    const WideLane source = widen(pattern);
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
