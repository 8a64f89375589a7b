// Decompresses what deflate made.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

namespace velmoranth::catalog {

// A gzip member, a zlib stream or a bare deflate stream, told apart by their beginnings. The number
// of bytes written; nothing when the input is damaged or holds more than the output has room for.
[[nodiscard]] std::optional<std::size_t> inflate(std::span<const std::uint8_t> input,
                                                 std::span<std::uint8_t> output);

}  // namespace velmoranth::catalog
