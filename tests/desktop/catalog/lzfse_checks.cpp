#include "lzfse_checks.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>

namespace velmoranth::catalog {

namespace {

constexpr std::size_t kGuard = 64;
constexpr std::uint8_t kGuardByte = 0xA5;

}  // namespace

Octets octets(std::string_view text) {
    return {text.begin(), text.end()};
}

Octets noise(std::size_t count, std::uint32_t seed) {
    Octets bytes(count);
    std::uint32_t state = seed * 2654435761U + 12345U;
    for (std::uint8_t& byte : bytes) {
        state = state * 1664525U + 1013904223U;
        byte = static_cast<std::uint8_t>(state >> 24U);
    }
    return bytes;
}

Octets pictureBytes(std::size_t pixels) {
    const Octets random = noise(pixels);
    Octets bytes;
    bytes.reserve(pixels * 4);
    for (std::size_t i = 0; i < pixels; ++i) {
        const std::size_t x = i % 120;
        const std::size_t y = i / 120;
        const bool flat = x < 40 || (x > 70 && y % 60 > 20);
        const auto level = static_cast<std::uint8_t>(flat ? y / 60 * 40 : x + y + random[i] % 3);
        bytes.insert(bytes.end(), {level, static_cast<std::uint8_t>(level / 2),
                                   static_cast<std::uint8_t>(flat ? 200 : 255 - x), 255});
    }
    return bytes;
}

std::optional<Octets> decodeWith(Decoder decoder, std::span<const std::uint8_t> input,
                                 std::size_t room) {
    // Memory of its own, so that the sanitizers see reads beyond it.
    const auto exact = std::make_unique<std::uint8_t[]>(input.size());
    std::copy(input.begin(), input.end(), exact.get());
    Octets memory(room + 2 * kGuard, kGuardByte);
    const auto written =
        decoder({exact.get(), input.size()}, std::span(memory).subspan(kGuard, room));
    const auto isGuard = [](std::uint8_t byte) { return byte == kGuardByte; };
    EXPECT_TRUE(std::all_of(memory.begin(), memory.begin() + kGuard, isGuard));
    EXPECT_TRUE(std::all_of(memory.end() - kGuard, memory.end(), isGuard));
    if (!written) {
        return std::nullopt;
    }
    EXPECT_LE(*written, room);
    const auto first = memory.begin() + kGuard;
    return Octets(first, first + static_cast<std::ptrdiff_t>(std::min(*written, room)));
}

}  // namespace velmoranth::catalog
