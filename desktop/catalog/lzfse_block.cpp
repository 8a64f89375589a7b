#include "desktop/catalog/lzfse_block.h"

#include "desktop/catalog/fse_table.h"
#include "desktop/catalog/wide_copy.h"

namespace velmoranth::catalog {

namespace {

constexpr std::size_t kMaxLiterals = 40000;

// Reads bits from the end of a payload towards its start. There are 8 bytes to load before the
// payload: a block's header is longer.
class BackwardBits {
  public:
    // Empty where bits that do not count are set.
    static std::optional<BackwardBits> open(const std::uint8_t* begin,
                                            const BackwardPayload& payload) {
        const auto filled = static_cast<std::uint32_t>(-payload.bits);
        if (filled > 0 && begin[payload.size - 1] >> (8U - filled) != 0) {
            return std::nullopt;
        }
        return BackwardBits(begin, std::int64_t{payload.size} * 8 + payload.bits);
    }

    // False when more bits were taken than there are: what was taken is worth nothing then, and
    // nothing more may be loaded.
    [[nodiscard]] bool load() {
        if (left_ < 0) {
            return false;
        }
        const std::int64_t bytes = (left_ + 7) >> 3;
        word_ = load64(begin_ + bytes - 8) << (static_cast<std::uint64_t>(-left_) & 7U);
        return true;
    }

    // The next bits. At most 57 in all after each load.
    std::uint32_t take(std::uint32_t count) {
        const std::uint64_t taken = word_ >> 1U >> (63U - count);
        word_ <<= count;
        left_ -= count;
        return static_cast<std::uint32_t>(taken);
    }

    [[nodiscard]] bool isSound() const { return left_ >= 0; }

  private:
    BackwardBits(const std::uint8_t* begin, std::int64_t left) : begin_(begin), left_(left) {}

    const std::uint8_t* begin_;
    std::int64_t left_;       // bits
    std::uint64_t word_ = 0;  // the next bits, from the highest on
};

class BlockDecoder {
  public:
    [[nodiscard]] bool decodeLiterals(const std::uint8_t* payload, const LzfseHeader& header,
                                      const LzfseFrequencies& frequencies) {
        if (header.literals == 0) {
            return true;
        }
        const std::size_t known =
            fillTable(std::span(frequencies).last<kLiteralSymbols>(), literalTable_);
        std::optional<BackwardBits> opened = BackwardBits::open(payload, header.literalPayload);
        if (!opened) {
            return false;
        }
        BackwardBits bits = *opened;
        std::size_t state0 = header.literalStates[0];
        std::size_t state1 = header.literalStates[1];
        std::size_t state2 = header.literalStates[2];
        std::size_t state3 = header.literalStates[3];
        const auto next = [this, &bits](std::size_t& state) {
            const LiteralEntry entry = literalTable_[state];
            state = entry.base + bits.take(entry.bits);
            return entry.symbol;
        };
        for (std::size_t i = 0; i < header.literals; i += 4) {
            if (!bits.load()) {
                return false;
            }
            literals_[i] = next(state0);
            literals_[i + 1] = next(state1);
            literals_[i + 2] = next(state2);
            literals_[i + 3] = next(state3);
        }
        return bits.isSound() && state0 < known && state1 < known && state2 < known &&
               state3 < known;
    }

    [[nodiscard]] bool decodeTriples(const std::uint8_t* payload, const LzfseHeader& header,
                                     const LzfseFrequencies& frequencies,
                                     std::span<std::uint8_t> output, std::size_t written) {
        const std::span all(frequencies);
        const std::size_t knownRuns =
            fillTable(all.subspan<0, kLengthSymbols>(), kLiteralRunCodes, runTable_);
        const std::size_t knownMatches =
            fillTable(all.subspan<kLengthSymbols, kLengthSymbols>(), kMatchCodes, matchTable_);
        const std::size_t knownDistances = fillTable(
            all.subspan<2 * kLengthSymbols, kDistanceSymbols>(), kDistanceCodes, distanceTable_);
        std::optional<BackwardBits> opened = BackwardBits::open(payload, header.triplePayload);
        if (!opened) {
            return false;
        }
        BackwardBits bits = *opened;
        std::size_t runState = header.runState;
        std::size_t matchState = header.matchState;
        std::size_t distanceState = header.distanceState;
        const auto next = [&bits](const auto& table, std::size_t& state) {
            const ValueEntry entry = table[state];
            const std::uint32_t taken = bits.take(entry.bits);
            state = entry.base + (taken >> entry.extraBits);
            return entry.value + (taken & ((1U << entry.extraBits) - 1U));
        };

        std::uint8_t* const start = output.data();
        std::uint8_t* out = start + written;
        const std::uint8_t* const outEnd = start + output.size();
        const std::uint8_t* const blockEnd = out + header.rawBytes;
        const std::uint8_t* literal = literals_.data();
        const std::uint8_t* const literalEnd = literal + header.literals;
        std::size_t distance = 0;
        for (std::uint32_t i = 0; i < header.triples; ++i) {
            if (!bits.load()) {
                return false;
            }
            const std::size_t run = next(runTable_, runState);
            const std::size_t match = next(matchTable_, matchState);
            const std::size_t newDistance = next(distanceTable_, distanceState);
            distance = newDistance != 0 ? newDistance : distance;
            if (run > static_cast<std::size_t>(literalEnd - literal) ||
                run + match > static_cast<std::size_t>(blockEnd - out)) {
                return false;
            }
            const std::size_t room = static_cast<std::size_t>(outEnd - out);
            if (run + match + kCopySlack > room) {
                std::memcpy(out, literal, run);
            } else {
                copyWide(out, literal, run);
            }
            literal += run;
            out += run;
            if (match == 0) {
                continue;
            }
            if (distance - 1 >= static_cast<std::size_t>(out - start)) {
                return false;
            }
            if (run + match + kCopySlack > room) {
                copyMatchNarrow(out, distance, match);
            } else {
                copyMatchWide(out, distance, match);
            }
            out += match;
        }
        return bits.isSound() && out == blockEnd &&
               (header.triples == 0 || (runState < knownRuns && matchState < knownMatches &&
                                        distanceState < knownDistances));
    }

  private:
    LiteralTable literalTable_;
    LengthTable runTable_;
    LengthTable matchTable_;
    DistanceTable distanceTable_;
    std::array<std::uint8_t, kMaxLiterals + kCopySlack> literals_;
};

}  // namespace

bool decodeLzfseBlock(std::span<const std::uint8_t> block, const LzfseHeader& header,
                      std::span<std::uint8_t> output, std::size_t written) {
    if (header.rawBytes > output.size() - written) {
        return false;
    }
    const std::optional<LzfseFrequencies> frequencies = readFrequencies(block, header);
    if (!frequencies) {
        return false;
    }
    const std::uint8_t* const literals = block.data() + header.headerSize;
    const std::uint8_t* const triples = literals + header.literalPayload.size;
    BlockDecoder decoder;
    return decoder.decodeLiterals(literals, header, *frequencies) &&
           decoder.decodeTriples(triples, header, *frequencies, output, written);
}

}  // namespace velmoranth::catalog
