// The payload of an LZVN block.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace velmoranth::tests {

// The bytes from `start` on, whose matches may reach into those before it.
[[nodiscard]] std::vector<std::uint8_t> lzvnPayload(std::span<const std::uint8_t> bytes,
                                                    std::size_t start);

}  // namespace velmoranth::tests
