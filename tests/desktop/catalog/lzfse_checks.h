// What the tests of both decoders do with bytes.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

namespace velmoranth::catalog {

using Octets = std::vector<std::uint8_t>;

[[nodiscard]] Octets octets(std::string_view text);

// Bytes without repetitions to speak of, the same each time.
[[nodiscard]] Octets noise(std::size_t count, std::uint32_t seed = 1);

// Rows of pixels of 4 bytes: flat areas, edges, gradients and some noise.
[[nodiscard]] Octets pictureBytes(std::size_t pixels);

using Decoder = std::optional<std::size_t> (*)(std::span<const std::uint8_t>,
                                               std::span<std::uint8_t>);

// What the decoder makes of the input with room for so many bytes. Expects that it leaves the bytes
// around its output alone; the input ends where its memory does.
[[nodiscard]] std::optional<Octets> decodeWith(Decoder decoder, std::span<const std::uint8_t> input,
                                               std::size_t room);

}  // namespace velmoranth::catalog
