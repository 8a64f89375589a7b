#include "desktop/imaging/compositing.h"

#include <algorithm>
#include <bit>
#include <cstring>

namespace velmoranth::desktop {

namespace {

// A pixel read as one number has its alpha in the top byte.
static_assert(std::endian::native == std::endian::little);

// Rows are worked on in pieces whose factors fit in registers and the nearest cache. A factor of a
// pixel is first written four times, so that the arithmetic runs over plain bytes.
constexpr std::size_t kPiece = 64;
constexpr std::size_t kPieceBytes = kPiece * 4;

std::uint16_t product(std::uint16_t a, std::uint16_t b) {
    const auto sum = static_cast<std::uint16_t>(a * b + 128);
    return static_cast<std::uint16_t>(static_cast<std::uint16_t>(sum + (sum >> 8)) >> 8);
}

void spreadTransparency(std::uint8_t* factors, const std::uint8_t* source, std::size_t pixels) {
    for (std::size_t i = 0; i < pixels; ++i) {
        std::uint32_t pixel = 0;
        std::memcpy(&pixel, source + i * 4, 4);
        std::uint32_t factor = 255 - (pixel >> 24);
        factor |= factor << 8;
        factor |= factor << 16;
        std::memcpy(factors + i * 4, &factor, 4);
    }
}

void spreadCoverage(std::uint8_t* factors, const std::uint8_t* coverage, std::size_t pixels) {
    for (std::size_t i = 0; i < pixels; ++i) {
        std::uint32_t factor = coverage[i];
        factor |= factor << 8;
        factor |= factor << 16;
        std::memcpy(factors + i * 4, &factor, 4);
    }
}

void spreadHiddenBytes(std::uint8_t* factors, const std::uint8_t* samples, std::size_t pixels,
                       std::size_t stride) {
    for (std::size_t i = 0; i < pixels; ++i) {
        std::uint32_t factor = 255U - samples[i * stride];
        factor |= factor << 8;
        factor |= factor << 16;
        std::memcpy(factors + i * 4, &factor, 4);
    }
}

void spreadHiddenPixels(std::uint8_t* factors, const std::uint8_t* samples, std::size_t pixels) {
    for (std::size_t i = 0; i < pixels; ++i) {
        std::uint32_t factor = 0;
        std::memcpy(&factor, samples + i * 4, 4);
        factor = 255 - (factor & 255);
        factor |= factor << 8;
        factor |= factor << 16;
        std::memcpy(factors + i * 4, &factor, 4);
    }
}

void multiplyBytes(std::uint8_t* destination, const std::uint8_t* a, const std::uint8_t* b,
                   std::size_t count) {
    for (std::size_t i = 0; i < count; ++i) {
        destination[i] = static_cast<std::uint8_t>(product(a[i], b[i]));
    }
}

// Colour above alpha, which no picture of ours has but a file may, saturates.
void addBehind(std::uint8_t* destination, const std::uint8_t* source,
               const std::uint8_t* transparency, std::size_t count) {
    for (std::size_t i = 0; i < count; ++i) {
        const auto sum =
            static_cast<std::uint16_t>(source[i] + product(destination[i], transparency[i]));
        destination[i] = static_cast<std::uint8_t>(std::min(sum, static_cast<std::uint16_t>(255)));
    }
}

// Calls work(first pixel, pixels) piece by piece.
template <class Work>
void inPieces(std::size_t pixels, const Work& work) {
    std::size_t first = 0;
    for (; first + kPiece <= pixels; first += kPiece) {
        work(first, kPiece);
    }
    if (first < pixels) {
        work(first, pixels - first);
    }
}

}  // namespace

void compositeRow(std::uint8_t* destination, const std::uint8_t* source, std::size_t pixels) {
    inPieces(pixels, [&](std::size_t first, std::size_t count) {
        std::uint8_t transparency[kPieceBytes];
        spreadTransparency(transparency, source + first * 4, count);
        addBehind(destination + first * 4, source + first * 4, transparency, count * 4);
    });
}

void compositeRow(std::uint8_t* destination, const std::uint8_t* source, std::size_t pixels,
                  std::uint8_t opacity, const std::uint8_t* coverage) {
    if (coverage == nullptr && opacity == 255) {
        compositeRow(destination, source, pixels);
        return;
    }
    inPieces(pixels, [&](std::size_t first, std::size_t count) {
        std::uint8_t factors[kPieceBytes];
        std::uint8_t scaled[kPieceBytes];
        if (coverage != nullptr) {
            std::uint8_t combined[kPiece];
            for (std::size_t i = 0; i < count; ++i) {
                combined[i] = static_cast<std::uint8_t>(product(coverage[first + i], opacity));
            }
            spreadCoverage(factors, combined, count);
        } else {
            std::memset(factors, opacity, count * 4);
        }
        multiplyBytes(scaled, source + first * 4, factors, count * 4);
        spreadTransparency(factors, scaled, count);
        addBehind(destination + first * 4, scaled, factors, count * 4);
    });
}

void compositeColorRow(std::uint8_t* destination, const std::uint8_t (&color)[4],
                       std::size_t pixels, const std::uint8_t* coverage) {
    std::uint8_t source[kPieceBytes];
    for (std::size_t i = 0; i < kPiece; ++i) {
        std::memcpy(source + i * 4, color, 4);
    }
    inPieces(pixels, [&](std::size_t first, std::size_t count) {
        compositeRow(destination + first * 4, source, count, 255,
                     coverage == nullptr ? nullptr : coverage + first);
    });
}

void multiplyRow(std::uint8_t* destination, const std::uint8_t* source, std::size_t pixels,
                 const std::uint8_t* coverage) {
    inPieces(pixels, [&](std::size_t first, std::size_t count) {
        std::uint8_t factors[kPieceBytes];
        spreadCoverage(factors, coverage + first, count);
        multiplyBytes(destination + first * 4, source + first * 4, factors, count * 4);
    });
}

void hideRow(std::uint8_t* destination, const std::uint8_t* source, std::size_t pixels,
             const std::uint8_t* samples, std::size_t stride) {
    inPieces(pixels, [&](std::size_t first, std::size_t count) {
        std::uint8_t factors[kPieceBytes];
        if (stride == 4) {
            spreadHiddenPixels(factors, samples + first * 4, count);
        } else if (stride == 1) {
            spreadHiddenBytes(factors, samples + first, count, 1);
        } else {
            spreadHiddenBytes(factors, samples + first * stride, count, stride);
        }
        multiplyBytes(destination + first * 4, source + first * 4, factors, count * 4);
    });
}

void multiplyCoverage(std::uint8_t* a, const std::uint8_t* b, std::size_t count) {
    multiplyBytes(a, a, b, count);
}

}  // namespace velmoranth::desktop
