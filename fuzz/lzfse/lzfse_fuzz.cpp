// Any bytes as an LZFSE stream, into as much room as it asks for, a byte less, and what more there
// is. What is decoded must be what the stream's blocks promise, whatever the room.
#include "desktop/catalog/lzfse.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <span>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    using velmoranth::catalog::decodeLzfse;
    using velmoranth::catalog::lzfseSize;
    constexpr std::size_t kMost = std::size_t{1} << 20U;
    const std::span<const std::uint8_t> input(bytes, size);
    const auto promised = lzfseSize(input);
    std::vector<std::uint8_t> exact(std::min(promised.value_or(1000), kMost));
    const auto written = decodeLzfse(input, exact);
    if (written && written != promised) {
        std::abort();
    }
    if (!written || exact.empty()) {
        return 0;
    }
    std::vector<std::uint8_t> wide(exact.size() + 1000);
    if (decodeLzfse(input, wide) != written ||
        !std::equal(exact.begin(), exact.end(), wide.begin())) {
        std::abort();
    }
    std::vector<std::uint8_t> tight(exact.size() - 1);
    if (decodeLzfse(input, tight)) {
        std::abort();
    }
    return 0;
}
