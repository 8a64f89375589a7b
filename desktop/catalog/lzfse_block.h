// The entropy-coded blocks of an LZFSE stream: their two headers, and what follows them.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

namespace velmoranth::catalog {

// A payload is read from its end towards its start.
struct BackwardPayload {
    std::uint32_t size = 0;  // bytes
    std::int32_t bits = 0;   // minus the number of bits at the end that do not count: -7 to 0
};

struct LzfseHeader {
    std::uint32_t rawBytes = 0;    // decoded
    std::uint32_t headerSize = 0;  // bytes
    std::uint32_t literals = 0;
    std::uint32_t triples = 0;
    BackwardPayload literalPayload;  // behind the header
    BackwardPayload triplePayload;   // behind the literals'
    std::array<std::uint16_t, 4> literalStates = {};
    std::uint16_t runState = 0;
    std::uint16_t matchState = 0;
    std::uint16_t distanceState = 0;

    [[nodiscard]] std::uint64_t blockSize() const {
        return std::uint64_t{headerSize} + literalPayload.size + triplePayload.size;
    }
};

// The header that the bytes begin with, "bvx1" or "bvx2"; nothing when a field is out of its range
// or the block is longer than the bytes.
[[nodiscard]] std::optional<LzfseHeader> readPlainHeader(std::span<const std::uint8_t> input);
[[nodiscard]] std::optional<LzfseHeader> readPackedHeader(std::span<const std::uint8_t> input);

// How many states each symbol has: of literal runs, matches, distances and literals.
using LzfseFrequencies = std::array<std::uint16_t, 360>;

[[nodiscard]] std::optional<LzfseFrequencies> readFrequencies(std::span<const std::uint8_t> block,
                                                              const LzfseHeader& header);

// Decodes the block that the bytes are, behind the first `written` bytes of the output, which
// matches may reach into. False when it is damaged or more than there is room for.
[[nodiscard]] bool decodeLzfseBlock(std::span<const std::uint8_t> block, const LzfseHeader& header,
                                    std::span<std::uint8_t> output, std::size_t written);

}  // namespace velmoranth::catalog
