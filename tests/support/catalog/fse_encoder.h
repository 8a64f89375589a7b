// The entropy coder of LZFSE blocks, writing.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace velmoranth::tests {

// Bits that are read from the end of their bytes towards the start: what is put last is read first.
class BackwardBits {
  public:
    void put(std::uint64_t value, std::uint32_t count);

    // Whole bytes; fills up with zeros.
    [[nodiscard]] std::vector<std::uint8_t> bytes() const { return bytes_; }

    // Minus the number of bits that were filled up: -7 to 0.
    [[nodiscard]] std::int32_t filled() const;

  private:
    std::vector<std::uint8_t> bytes_;
    std::size_t bits_ = 0;
};

// How often each symbol comes, scaled so that used symbols have at least 1 and the sum is `total`;
// all zero when nothing comes.
[[nodiscard]] std::vector<std::uint16_t> scaledFrequencies(std::span<const std::size_t> counts,
                                                           std::uint32_t total);

class FseEncoder {
  public:
    FseEncoder(std::span<const std::uint16_t> frequencies, std::uint32_t states);

    // Symbols are put in the reverse of the order in which they are read. The state is the one that
    // the reader has after the symbol, and becomes the one that it has before.
    void put(BackwardBits& bits, std::size_t symbol, std::uint16_t& state) const;

  private:
    std::vector<std::uint16_t> frequencies_;
    std::vector<std::uint32_t> firstStates_;
    std::uint32_t states_;
};

// Numbers that are a symbol and some bits more.
class ValueCode {
  public:
    explicit ValueCode(std::vector<std::uint32_t> extraBits);

    struct Coded {
        std::size_t symbol = 0;
        std::uint32_t extra = 0;
        std::uint32_t extraBits = 0;
    };

    [[nodiscard]] Coded code(std::uint32_t value) const;

    [[nodiscard]] std::size_t symbols() const { return extraBits_.size(); }

    static const ValueCode& literals();
    static const ValueCode& matches();
    static const ValueCode& distances();

  private:
    std::vector<std::uint32_t> extraBits_;
    std::vector<std::uint32_t> bases_;
};

}  // namespace velmoranth::tests
