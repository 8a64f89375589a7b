#include "desktop/catalog/byte_reader.h"
#include "desktop/catalog/fse_table.h"
#include "desktop/catalog/lzfse_block.h"

namespace velmoranth::catalog {

namespace {

constexpr std::uint32_t kPlainHeaderSize = 772;
constexpr std::uint32_t kPackedHeaderSize = 32;  // without tables
constexpr std::uint32_t kMaxTableBytes = 720;
constexpr std::uint32_t kMostLiterals = 40000;
constexpr std::uint32_t kMaxTriples = 10000;
constexpr std::size_t kPlainTables = 50;  // where they begin

bool isSound(const LzfseHeader& header, std::size_t room) {
    const auto sound = [](const BackwardPayload& payload) {
        return payload.bits >= -7 && payload.bits <= 0 && (payload.size > 0 || payload.bits == 0);
    };
    if (header.literals > kMostLiterals || header.triples > kMaxTriples ||
        !sound(header.literalPayload) || !sound(header.triplePayload)) {
        return false;
    }
    for (const std::uint16_t state : header.literalStates) {
        if (state >= kLiteralStates) {
            return false;
        }
    }
    return header.runState < kLengthStates && header.matchState < kLengthStates &&
           header.distanceState < kDistanceStates && header.blockSize() <= room;
}

// Bits from the lowest of the first byte on; zeros behind the last.
class ForwardBits {
  public:
    explicit ForwardBits(std::span<const std::uint8_t> bytes) : bytes_(bytes) {}

    // The next 14 bits and more, which stay.
    [[nodiscard]] std::uint32_t peek() {
        while (held_ < 14) {
            if (next_ < bytes_.size()) {
                bits_ |= std::uint32_t{bytes_[next_]} << held_;
            }
            ++next_;
            held_ += 8;
        }
        return bits_;
    }

    void skip(std::uint32_t count) {
        bits_ >>= count;
        held_ -= count;
        used_ += count;
    }

    // Whether what was used ends within the last byte.
    [[nodiscard]] bool isAtEnd() const { return (used_ + 7) / 8 == bytes_.size(); }

  private:
    std::span<const std::uint8_t> bytes_;
    std::uint32_t bits_ = 0;
    std::uint32_t held_ = 0;
    std::size_t next_ = 0;
    std::size_t used_ = 0;  // bits
};

std::uint16_t readFrequency(ForwardBits& bits) {
    // By the low bits: a number, and how many bits said so. Longer ones go on behind those.
    struct Code {
        std::uint8_t size = 0;
        std::uint8_t extraBits = 0;
        std::uint8_t base = 0;
    };

    static constexpr Code kShort = {.size = 2, .extraBits = 0, .base = 0};
    static constexpr std::array<Code, 16> kCodes = [] {
        std::array<Code, 16> codes = {};
        for (std::size_t low = 0; low < codes.size(); ++low) {
            if ((low & 1U) == 0) {
                codes[low] = kShort;
                codes[low].base = static_cast<std::uint8_t>(low >> 1U & 1U);
            } else if ((low & 2U) == 0) {
                codes[low] = {.size = 3,
                              .extraBits = 0,
                              .base = static_cast<std::uint8_t>(2 + (low >> 2U & 1U))};
            } else if ((low & 4U) == 0) {
                codes[low] = {.size = 3, .extraBits = 2, .base = 4};
            } else if ((low & 8U) == 0) {
                codes[low] = {.size = 4, .extraBits = 4, .base = 8};
            } else {
                codes[low] = {.size = 4, .extraBits = 10, .base = 24};
            }
        }
        return codes;
    }();
    const std::uint32_t word = bits.peek();
    const Code& code = kCodes[word & 15U];
    bits.skip(std::uint32_t{code.size} + code.extraBits);
    return static_cast<std::uint16_t>(code.base +
                                      (word >> code.size & ((1U << code.extraBits) - 1U)));
}

}  // namespace

std::optional<LzfseHeader> readPlainHeader(std::span<const std::uint8_t> input) {
    ByteReader reader(input);
    reader.skip(4);
    LzfseHeader header;
    header.headerSize = kPlainHeaderSize;
    header.rawBytes = reader.u32();
    const std::uint32_t payloadBytes = reader.u32();
    header.literals = reader.u32();
    header.triples = reader.u32();
    header.literalPayload.size = reader.u32();
    header.triplePayload.size = reader.u32();
    header.literalPayload.bits = reader.i32();
    for (std::uint16_t& state : header.literalStates) {
        state = reader.u16();
    }
    header.triplePayload.bits = reader.i32();
    header.runState = reader.u16();
    header.matchState = reader.u16();
    header.distanceState = reader.u16();
    if (!reader.ok() || !isSound(header, input.size()) ||
        payloadBytes != header.literalPayload.size + header.triplePayload.size) {
        return std::nullopt;
    }
    return header;
}

std::optional<LzfseHeader> readPackedHeader(std::span<const std::uint8_t> input) {
    ByteReader reader(input);
    reader.skip(4);
    LzfseHeader header;
    header.rawBytes = reader.u32();
    const std::array<std::uint64_t, 3> words = {reader.u64(), reader.u64(), reader.u64()};
    const auto field = [&words](std::size_t word, std::uint32_t first, std::uint32_t count) {
        return static_cast<std::uint32_t>(words[word] >> first & ((std::uint64_t{1} << count) - 1));
    };
    const auto state = [&field](std::size_t word, std::uint32_t first) {
        return static_cast<std::uint16_t>(field(word, first, 10));
    };
    header.literals = field(0, 0, 20);
    header.literalPayload = {.size = field(0, 20, 20),
                             .bits = static_cast<std::int32_t>(field(0, 60, 3)) - 7};
    header.triples = field(0, 40, 20);
    header.literalStates = {state(1, 0), state(1, 10), state(1, 20), state(1, 30)};
    header.triplePayload = {.size = field(1, 40, 20),
                            .bits = static_cast<std::int32_t>(field(1, 60, 3)) - 7};
    header.headerSize = field(2, 0, 32);
    header.runState = state(2, 32);
    header.matchState = state(2, 42);
    header.distanceState = state(2, 52);
    if (!reader.ok() || header.headerSize < kPackedHeaderSize ||
        header.headerSize > kPackedHeaderSize + kMaxTableBytes || !isSound(header, input.size())) {
        return std::nullopt;
    }
    return header;
}

std::optional<LzfseFrequencies> readFrequencies(std::span<const std::uint8_t> block,
                                                const LzfseHeader& header) {
    LzfseFrequencies frequencies = {};
    if (header.headerSize == kPlainHeaderSize) {
        ByteReader reader(block);
        reader.skip(kPlainTables);
        for (std::uint16_t& frequency : frequencies) {
            frequency = reader.u16();
        }
        return frequencies;
    }
    if (header.headerSize == kPackedHeaderSize) {
        return frequencies;
    }
    ForwardBits bits(block.subspan(kPackedHeaderSize, header.headerSize - kPackedHeaderSize));
    for (std::uint16_t& frequency : frequencies) {
        frequency = readFrequency(bits);
    }
    if (!bits.isAtEnd()) {
        return std::nullopt;
    }
    return frequencies;
}

}  // namespace velmoranth::catalog
