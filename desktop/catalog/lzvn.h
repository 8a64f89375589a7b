// The LZVN byte code, within a block of a stream or on its own.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

namespace velmoranth::catalog {

struct LzvnEnd {
    std::size_t read = 0;     // bytes of the payload, with its end mark
    std::size_t written = 0;  // bytes of the output, with those that were there before
};

// Decodes behind the first `written` bytes of the output, which matches may reach into. Nothing
// when the payload is damaged or holds more than the output has room for.
[[nodiscard]] std::optional<LzvnEnd> decodeLzvnPayload(std::span<const std::uint8_t> payload,
                                                       std::span<std::uint8_t> output,
                                                       std::size_t written);

}  // namespace velmoranth::catalog
