// Repetitions in bytes, as both of the writers' formats have them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace velmoranth::tests {

// So many bytes as they are, then so many that repeat those from so far behind.
struct Repetition {
    std::size_t literals = 0;
    std::size_t match = 0;  // 0 in the last one only, when literals end the bytes
    std::size_t distance = 0;
};

// What the bytes from `start` on repeat of those before them, no further behind than `maxDistance`.
[[nodiscard]] std::vector<Repetition> findRepetitions(std::span<const std::uint8_t> bytes,
                                                      std::size_t start, std::size_t maxDistance);

}  // namespace velmoranth::tests
