// Writes LZFSE streams and LZVN payloads, so that tests make the streams that they read. The writer
// looks for size no further than tests need: it takes the first match that it finds.
//
//     const auto stream = tests::lzfse(pixels);
//
// A stream of several blocks, of triples of one's own, or a damaged one is made with LzfseWriter.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace velmoranth::tests {

enum class LzfseBlock {
    stored,        // bvx-
    lzvn,          // bvxn
    plainTables,   // bvx1
    packedTables,  // bvx2
};

// So many literals, then so many bytes from so far behind. A distance of 0 keeps the one before.
struct LzfseTriple {
    std::uint32_t literals = 0;  // at most 315
    std::uint32_t match = 0;     // at most 2359
    std::uint32_t distance = 0;  // at most 262139
};

// A whole stream, in as many blocks of one kind as it takes, with its end mark.
[[nodiscard]] std::vector<std::uint8_t> lzfse(std::span<const std::uint8_t> bytes,
                                              LzfseBlock kind = LzfseBlock::packedTables);

// A bare LZVN payload with its end mark.
[[nodiscard]] std::vector<std::uint8_t> lzvn(std::span<const std::uint8_t> bytes);

class LzfseWriter {
  public:
    // As many blocks of that kind as the bytes take. Matches reach into the blocks before.
    void append(std::span<const std::uint8_t> bytes, LzfseBlock kind);

    // One block of that kind (plain or packed tables), whose tables leave so many states of each
    // to no symbol. The literals are as many as the triples take, at most 40000; the triples at
    // most 10000. What they mean is the caller's: a distance may be wrong.
    void appendTriples(std::span<const std::uint8_t> literals, std::span<const LzfseTriple> triples,
                       std::uint32_t rawBytes, LzfseBlock kind, std::uint32_t unusedStates = 0);

    // The stream so far, and its end mark.
    [[nodiscard]] std::vector<std::uint8_t> finish() const;

  private:
    std::vector<std::uint8_t> stream_;
    std::vector<std::uint8_t> written_;  // what the stream decodes to
};

}  // namespace velmoranth::tests
