// Loads, and copies that move 8 or 16 bytes at a time, for decoders that write where there is room
// for more than they mean to write.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace velmoranth::catalog {

static_assert(std::endian::native == std::endian::little, "the formats' numbers are little-endian");

inline std::uint32_t load32(const std::uint8_t* from) {
    std::uint32_t value = 0;
    std::memcpy(&value, from, sizeof value);
    return value;
}

inline std::uint64_t load64(const std::uint8_t* from) {
    std::uint64_t value = 0;
    std::memcpy(&value, from, sizeof value);
    return value;
}

inline void store64(std::uint8_t* to, std::uint64_t value) {
    std::memcpy(to, &value, sizeof value);
}

inline void copy16(std::uint8_t* to, const std::uint8_t* from) {
    std::memcpy(to, from, 16);
}

// How far beyond their end copies of any length may read and write.
inline constexpr std::size_t kCopySlack = 32;  // bytes

// Copies `count` bytes, 16 at least, between places that do not overlap.
inline void copyWide(std::uint8_t* to, const std::uint8_t* from, std::size_t count) {
    const std::uint8_t* const end = to + count;
    do {
        copy16(to, from);
        to += 16;
        from += 16;
    } while (to < end);
}

// Repeats the bytes from 1 to 15 behind. A pattern is made once and stored again and again: to load
// what was just stored would wait for the store each time.
inline void repeatPattern(std::uint8_t* to, std::size_t distance, std::size_t count) {
    // By distance: a number that repeats so many low bytes, and how much of 8 bytes are whole
    // repetitions.
    static constexpr std::uint64_t kRepeats[8] = {
        0,           0x0101010101010101, 0x0001000100010001, 0x0001000001000001,
        0x100000001, 0x0000010000000001, 0x0001000000000001, 0x0100000000000001};
    static constexpr std::uint8_t kWhole[8] = {0, 8, 8, 6, 8, 5, 6, 7};
    const std::uint8_t* const end = to + count;
    const std::uint8_t* const from = to - distance;
    if (distance >= 8) {
        const std::uint64_t low = load64(from);
        const std::uint64_t high = load64(from + 8);
        do {
            store64(to, low);
            store64(to + 8, high);
            to += distance;
        } while (to < end);
        return;
    }
    const std::uint64_t once = load64(from) & ((std::uint64_t{1} << 8 * distance) - 1);
    const std::uint64_t pattern = once * kRepeats[distance];
    const std::size_t whole = kWhole[distance];
    do {
        store64(to, pattern);
        store64(to + whole, pattern);
        to += 2 * whole;
    } while (to < end);
}

// Copies `count` bytes from `distance` behind, as if byte by byte in rising order. There is room
// for kCopySlack bytes beyond. Most matches are of 16 bytes or less from 8 or more behind, and take
// no branch that depends on more than that. Always inlined, so that it is compiled as its caller
// is.
[[gnu::always_inline]] inline void copyMatchWide(std::uint8_t* to, std::size_t distance,
                                                 std::size_t count) {
    if (distance < 8) {
        repeatPattern(to, distance, count);
        return;
    }
    const std::uint8_t* const from = to - distance;
    store64(to, load64(from));
    store64(to + 8, load64(from + 8));
    if (count <= 16) {
        return;
    }
    if (distance >= 16) {
        copyWide(to + 16, from + 16, count - 16);
    } else {
        repeatPattern(to, distance, count);
    }
}

// The same where there is no room.
inline void copyMatchNarrow(std::uint8_t* to, std::size_t distance, std::size_t count) {
    const std::uint8_t* const from = to - distance;
    for (std::size_t i = 0; i < count; ++i) {
        to[i] = from[i];  // NOLINT(*-pointer-arithmetic)
    }
}

}  // namespace velmoranth::catalog
