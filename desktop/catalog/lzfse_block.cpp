#include "desktop/catalog/lzfse_block.h"

#include "desktop/catalog/fse_table.h"
#include "desktop/catalog/wide_copy.h"

#include <algorithm>
#include <cstring>

namespace velmoranth::catalog {

namespace {

constexpr std::size_t kMaxLiterals = 40000;

// Reads bits from the end of a payload towards its start. What is loaded ahead of use may lie
// before the payload: a block's header, of 32 bytes and more, is there.
class BackwardBits {
  public:
    // Empty where bits that do not count are set.
    static std::optional<BackwardBits> open(const std::uint8_t* begin,
                                            const BackwardPayload& payload) {
        const auto filled = static_cast<std::uint32_t>(-payload.bits);
        if (filled > 0 && begin[payload.size - 1] >> (8U - filled) != 0) {
            return std::nullopt;
        }
        BackwardBits bits(begin, payload.size);
        if (filled > 0) {
            static_cast<void>(bits.load());
            bits.skip(filled);
        }
        return bits;
    }

    // At least 56 bits to peek at. False when so many more bits were skipped than there are that
    // nothing more may be loaded.
    [[nodiscard]] bool load() {
        if (next_ < -8) {
            return false;
        }
        // The place of the next load is known one round early, which keeps loads out of the chain
        // from one state to the next. Bits that are here already are or-ed with themselves.
        word_ |= load64(begin_ + next_ - 8) >> held_;
        next_ -= (63 - held_) >> 3;
        held_ |= 56;
        return true;
    }

    // The first so many bits, lowest in a number whose other bits mean nothing.
    [[nodiscard]] std::uint64_t first(std::uint32_t count) const {
        return (word_ >> 1U) >> (63U - count);
    }

    // At most 56 in all after each load.
    void skip(std::uint32_t count) {
        word_ <<= count;
        held_ -= static_cast<int>(count);
    }

    // Whether no more bits were skipped than there are.
    [[nodiscard]] bool isSound() const { return next_ * 8 + held_ >= 0; }

  private:
    BackwardBits(const std::uint8_t* begin, std::uint32_t size) : begin_(begin), next_(size) {}

    const std::uint8_t* begin_;
    std::int64_t next_;       // bytes of the payload that are not loaded yet
    std::uint64_t word_ = 0;  // the next bits, from the highest on
    int held_ = 0;            // how many of them count
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
        const auto next = [&bits](const LiteralEntry& entry, std::uint32_t end) {
            return entry.base + (bits.first(end) & entry.mask);
        };
        for (std::size_t i = 0; i < header.literals; i += 4) {
            if (!bits.load()) {
                return false;
            }
            const LiteralEntry& entry0 = literalTable_[state0];
            const LiteralEntry& entry1 = literalTable_[state1];
            const LiteralEntry& entry2 = literalTable_[state2];
            const LiteralEntry& entry3 = literalTable_[state3];
            const std::uint32_t end0 = entry0.bits;
            const std::uint32_t end1 = end0 + entry1.bits;
            const std::uint32_t end2 = end1 + entry2.bits;
            const std::uint32_t end3 = end2 + entry3.bits;
            state0 = next(entry0, end0);
            state1 = next(entry1, end1);
            state2 = next(entry2, end2);
            state3 = next(entry3, end3);
            bits.skip(end3);
            literals_[i] = entry0.symbol;
            literals_[i + 1] = entry1.symbol;
            literals_[i + 2] = entry2.symbol;
            literals_[i + 3] = entry3.symbol;
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
        TripleStates states = {
            .run = header.runState, .match = header.matchState, .distance = header.distanceState};
        Place place = {.out = output.data() + written,
                       .blockEnd = output.data() + written + header.rawBytes,
                       .literal = literals_.data(),
                       .literalEnd = literals_.data() + header.literals};
        std::size_t distance = 0;
        std::array<Triple, kBatch> batch;
        for (std::size_t left = header.triples; left > 0;) {
            const std::span<Triple> triples = std::span(batch).first(std::min(left, kBatch));
            left -= triples.size();
            if (!readTriples(bits, states, triples)) {
                return false;
            }
            for (Triple& triple : triples) {
                distance = triple.distance != 0 ? triple.distance : distance;
                triple.distance = static_cast<std::uint32_t>(distance);
            }
            if (!copyTriples(triples, output, place)) {
                return false;
            }
        }
        return bits.isSound() && place.out == place.blockEnd &&
               (header.triples == 0 || (states.run < knownRuns && states.match < knownMatches &&
                                        states.distance < knownDistances));
    }

  private:
    struct TripleStates {
        std::size_t run = 0;
        std::size_t match = 0;
        std::size_t distance = 0;
    };

    struct Triple {
        std::uint32_t run;
        std::uint32_t match;
        std::uint32_t distance;
    };

    struct Place {
        std::uint8_t* out = nullptr;
        const std::uint8_t* blockEnd = nullptr;
        const std::uint8_t* literal = nullptr;
        const std::uint8_t* literalEnd = nullptr;
    };

    // Triples are read so many at a time and then copied: nothing of reading is guessed wrong, and
    // what is guessed wrong of the copies does not hold up the reading.
    static constexpr std::size_t kBatch = 256;

    // False when the bits are used up.
    [[nodiscard]] bool readTriples(BackwardBits& source, TripleStates& states,
                                   std::span<Triple> triples) const {
        BackwardBits bits = source;
        std::size_t runState = states.run;
        std::size_t matchState = states.match;
        std::size_t distanceState = states.distance;
        for (Triple& triple : triples) {
            if (!bits.load()) {
                return false;
            }
            const ValueEntry& run = runTable_[runState];
            const ValueEntry& match = matchTable_[matchState];
            const ValueEntry& distance = distanceTable_[distanceState];
            const std::uint32_t runEnd = run.bits;
            const std::uint32_t matchEnd = runEnd + match.bits;
            const std::uint32_t distanceEnd = matchEnd + distance.bits;
            triple = {
                .run = run.value + (low(bits.first(runEnd)) & run.valueMask),
                .match = match.value + (low(bits.first(matchEnd)) & match.valueMask),
                .distance = distance.value + (low(bits.first(distanceEnd)) & distance.valueMask)};
            runState = run.base + (bits.first(run.stateBits) & run.stateMask);
            matchState = match.base + (bits.first(runEnd + match.stateBits) & match.stateMask);
            distanceState =
                distance.base + (bits.first(matchEnd + distance.stateBits) & distance.stateMask);
            bits.skip(distanceEnd);
        }
        source = bits;
        states = {.run = runState, .match = matchState, .distance = distanceState};
        return true;
    }

    static std::uint32_t low(std::uint64_t bits) { return static_cast<std::uint32_t>(bits); }

    // False when one reaches beyond what there is.
    [[nodiscard]] static bool copyTriples(std::span<const Triple> triples,
                                          std::span<std::uint8_t> output, Place& place) {
        std::uint8_t* const start = output.data();
        const std::uint8_t* const end = start + output.size();
        std::uint8_t* out = place.out;
        const std::uint8_t* literal = place.literal;
        for (const Triple& triple : triples) {
            const std::size_t run = triple.run;
            const std::size_t match = triple.match;
            if (run > static_cast<std::size_t>(place.literalEnd - literal) ||
                run + match > static_cast<std::size_t>(place.blockEnd - out)) {
                return false;
            }
            const bool wide = run + match + kCopySlack <= static_cast<std::size_t>(end - out);
            if (wide) {
                // Few bytes as a rule. What is stored beyond them is soon stored over, and a load
                // from there would wait for both.
                store64(out, load64(literal));
                if (run > 8) {
                    copyWide(out, literal, run);
                }
            } else {
                std::memcpy(out, literal, run);
            }
            literal += run;
            out += run;
            if (match == 0) {
                continue;
            }
            const std::size_t distance = triple.distance;
            if (distance - 1 >= static_cast<std::size_t>(out - start)) {
                return false;
            }
            if (wide) {
                copyMatchWide(out, distance, match);
            } else {
                copyMatchNarrow(out, distance, match);
            }
            out += match;
        }
        place.out = out;
        place.literal = literal;
        return true;
    }

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
