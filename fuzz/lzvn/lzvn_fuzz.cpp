// Any bytes as an LZVN payload, into much room, as much as it takes, and a byte less: the bytes are
// the same whether copies have room around them or not.
#include "desktop/catalog/lzfse.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <span>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    using velmoranth::catalog::decodeLzvn;
    const std::span<const std::uint8_t> input(bytes, size);
    std::vector<std::uint8_t> wide(std::size_t{1} << 16U);
    const auto written = decodeLzvn(input, wide);
    if (!written) {
        return 0;
    }
    std::vector<std::uint8_t> exact(*written);
    if (decodeLzvn(input, exact) != written ||
        !std::equal(exact.begin(), exact.end(), wide.begin())) {
        std::abort();
    }
    if (!exact.empty()) {
        std::vector<std::uint8_t> tight(exact.size() - 1);
        if (decodeLzvn(input, tight)) {
            std::abort();
        }
    }
    return 0;
}
