// Four pixels at a time, as vectors that g++ and clang both know and every processor has. Whatever
// takes single components out of one is some ten times as slow as what works on all of them, and so
// is a shuffle that is no single instruction.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

namespace velmoranth::desktop {

using LaneBytes = std::uint8_t __attribute__((vector_size(16)));
using LaneWords = std::uint16_t __attribute__((vector_size(16)));
constexpr std::size_t kLanePixels = 4;

// The same with room for products.
struct WideLane {
    LaneWords low;   // two pixels
    LaneWords high;  // two pixels
};

// What `bytes` leaves of 16 is zero.
inline LaneBytes loadLane(const std::uint8_t* from, std::size_t bytes) {
    LaneBytes result{};
    std::memcpy(&result, from, bytes);
    return result;
}

inline WideLane widen(LaneBytes bytes) {
    const LaneBytes zero{};
    return {(LaneWords)__builtin_shufflevector(bytes, zero, 0, 16, 1, 17, 2, 18, 3, 19, 4, 20, 5,
                                               21, 6, 22, 7, 23),
            (LaneWords)__builtin_shufflevector(bytes, zero, 8, 24, 9, 25, 10, 26, 11, 27, 12, 28,
                                               13, 29, 14, 30, 15, 31)};
}

// Of values up to 255.
inline LaneBytes narrow(const WideLane& wide) {
    return __builtin_shufflevector((LaneBytes)wide.low, (LaneBytes)wide.high, 0, 2, 4, 6, 8, 10, 12,
                                   14, 16, 18, 20, 22, 24, 26, 28, 30);
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

}  // namespace velmoranth::desktop
