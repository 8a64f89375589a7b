#include "desktop/catalog/lzfse_block.h"

#include "desktop/catalog/bit_loop.h"
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

    // The bits to come, from the highest on; at least 56 after each load.
    [[nodiscard]] std::uint64_t word() const { return word_; }

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

// The first so many bits of a word, at most 63, as a number. Two shifts, since none may be by 64.
std::uint64_t firstBits(std::uint64_t word, std::uint32_t count) {
    return (word >> 1U) >> (~count & 63U);
}

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
        LiteralStates states;
        std::copy(header.literalStates.begin(), header.literalStates.end(), states.begin());
        const std::span<std::uint8_t> literals = std::span(literals_).first(header.literals);
        return callBitLoop<readLiterals>(literalTable_, *opened, states, literals) &&
               opened->isSound() &&
               std::ranges::all_of(states, [&](std::size_t state) { return state < known; });
    }

    [[nodiscard]] bool decodeTriples(const std::uint8_t* payload, const LzfseHeader& header,
                                     const LzfseFrequencies& frequencies,
                                     std::span<std::uint8_t> output, std::size_t written) {
        const std::span all(frequencies);
        const std::size_t knownRuns =
            fillTable(all.subspan<0, kLengthSymbols>(), kLiteralRunCodes, tables_.runs);
        const std::size_t knownMatches =
            fillTable(all.subspan<kLengthSymbols, kLengthSymbols>(), kMatchCodes, tables_.matches);
        const std::size_t knownDistances = fillTable(
            all.subspan<2 * kLengthSymbols, kDistanceSymbols>(), kDistanceCodes, tables_.distances);
        std::optional<BackwardBits> opened = BackwardBits::open(payload, header.triplePayload);
        if (!opened) {
            return false;
        }
        TripleStates states = {
            .run = header.runState, .match = header.matchState, .distance = header.distanceState};
        Place place = {.out = output.data() + written,
                       .blockEnd = output.data() + written + header.rawBytes,
                       .literal = literals_.data(),
                       .literalEnd = literals_.data() + header.literals,
                       .distance = 0};
        std::array<Triple, kBatch> batch;
        for (std::size_t left = header.triples; left > 0;) {
            const std::span<Triple> triples = std::span(batch).first(std::min(left, kBatch));
            left -= triples.size();
            if (!callBitLoop<readTriples>(tables_, *opened, states, triples) ||
                !callBitLoop<copyTriples>(triples, output, place)) {
                return false;
            }
        }
        return opened->isSound() && place.out == place.blockEnd &&
               (header.triples == 0 || (states.run < knownRuns && states.match < knownMatches &&
                                        states.distance < knownDistances));
    }

  private:
    using LiteralStates = std::array<std::size_t, 4>;

    struct TripleTables {
        LengthTable runs;
        LengthTable matches;
        DistanceTable distances;
    };

    struct TripleStates {
        std::size_t run = 0;
        std::size_t match = 0;
        std::size_t distance = 0;
    };

    struct Triple {
        std::uint32_t run;
        std::uint32_t match;
        std::uint32_t distance;  // 0 where it is the one before
    };

    struct Place {
        std::uint8_t* out = nullptr;
        const std::uint8_t* blockEnd = nullptr;
        const std::uint8_t* literal = nullptr;
        const std::uint8_t* literalEnd = nullptr;
        std::size_t distance = 0;  // of the latest match
    };

    // Triples are read so many at a time and then copied: nothing of reading is guessed wrong, and
    // what is guessed wrong of the copies does not hold up the reading.
    static constexpr std::size_t kBatch = 256;

    // As many literals as there is room for. False when the bits are used up.
    [[gnu::always_inline]] static bool readLiterals(const LiteralTable& table, BackwardBits& source,
                                                    LiteralStates& states,
                                                    std::span<std::uint8_t> literals) {
        BackwardBits bits = source;
        auto [state0, state1, state2, state3] = states;
        for (std::size_t i = 0; i < literals.size(); i += 4) {
            if (!bits.load()) {
                return false;
            }
            const LiteralEntry& entry0 = table[state0];
            const LiteralEntry& entry1 = table[state1];
            const LiteralEntry& entry2 = table[state2];
            const LiteralEntry& entry3 = table[state3];
            const std::uint32_t end0 = entry0.bits;
            const std::uint32_t end1 = end0 + entry1.bits;
            const std::uint32_t end2 = end1 + entry2.bits;
            const std::uint32_t end3 = end2 + entry3.bits;
            const std::uint64_t word = bits.word();
            state0 = entry0.base + (firstBits(word, end0) & entry0.mask);
            state1 = entry1.base + (firstBits(word, end1) & entry1.mask);
            state2 = entry2.base + (firstBits(word, end2) & entry2.mask);
            state3 = entry3.base + (firstBits(word, end3) & entry3.mask);
            bits.skip(end3);
            literals[i] = entry0.symbol;
            literals[i + 1] = entry1.symbol;
            literals[i + 2] = entry2.symbol;
            literals[i + 3] = entry3.symbol;
        }
        source = bits;
        states = {state0, state1, state2, state3};
        return true;
    }

    // The next value of one kind, out of the bits that are loaded.
    static std::uint32_t readValue(const ValueEntry& entry, BackwardBits& bits,
                                   std::size_t& state) {
        const std::uint64_t word = bits.word();
        const std::uint32_t stateBits = entry.stateBits;
        state = entry.base + firstBits(word, stateBits);
        const std::uint64_t extra = firstBits(word << stateBits, entry.extraBits);
        bits.skip(entry.bits);
        return entry.value + static_cast<std::uint32_t>(extra);
    }

    // False when the bits are used up.
    [[gnu::always_inline]] static bool readTriples(const TripleTables& tables, BackwardBits& source,
                                                   TripleStates& states,
                                                   std::span<Triple> triples) {
        BackwardBits bits = source;
        auto [run, match, distance] = states;
        for (Triple& triple : triples) {
            if (!bits.load()) {
                return false;
            }
            triple.run = readValue(tables.runs[run], bits, run);
            triple.match = readValue(tables.matches[match], bits, match);
            triple.distance = readValue(tables.distances[distance], bits, distance);
        }
        source = bits;
        states = {.run = run, .match = match, .distance = distance};
        return true;
    }

    // Where there is room around them, which is nearly everywhere, copies write more than they
    // mean to. False when a triple reaches beyond what there is.
    [[gnu::always_inline]] [[nodiscard]] static bool copyTriples(std::span<const Triple> triples,
                                                                 std::span<std::uint8_t> output,
                                                                 Place& place) {
        std::uint8_t* const start = output.data();
        // From here on copies lack the room: from the start where the output is that small.
        const std::size_t blockEnd = static_cast<std::size_t>(place.blockEnd - start);
        const std::size_t wideEnd =
            std::min(blockEnd, output.size() - std::min(output.size(), kCopySlack));
        const std::uint8_t* const end = start + wideEnd;
        Place at = place;
        for (const Triple& triple : triples) {
            const std::size_t run = triple.run;
            const std::size_t match = triple.match;
            at.distance = triple.distance != 0 ? triple.distance : at.distance;
            if (run > static_cast<std::size_t>(at.literalEnd - at.literal)) {
                return false;
            }
            if (static_cast<std::ptrdiff_t>(run + match) >= end - at.out) {
                // A copy of its own: what is not pointed to is kept in registers.
                Place narrow = at;
                if (!copyNarrow(triple, start, narrow)) {
                    return false;
                }
                at = narrow;
                continue;
            }
            // Few bytes as a rule. What is stored beyond them is soon stored over, and a load from
            // there would wait for both.
            store64(at.out, load64(at.literal));
            if (run > 8) {
                copyWide(at.out, at.literal, run);
            }
            at.literal += run;
            at.out += run;
            if (at.distance - 1 >= static_cast<std::size_t>(at.out - start)) {
                if (match > 0) {
                    return false;
                }
                continue;
            }
            copyMatchWide(at.out, at.distance, match);
            at.out += match;
        }
        place = at;
        return true;
    }

    // To the byte. The run's literals are there. Seldom needed, so its code stays out of the loop,
    // which has the more registers for it.
    [[gnu::noinline]] [[nodiscard]] static bool copyNarrow(const Triple& triple,
                                                           const std::uint8_t* start, Place& at) {
        const std::size_t run = triple.run;
        const std::size_t match = triple.match;
        if (run + match > static_cast<std::size_t>(at.blockEnd - at.out)) {
            return false;
        }
        if (run > 0) {  // an empty output may be nowhere
            std::memcpy(at.out, at.literal, run);
        }
        at.literal += run;
        at.out += run;
        if (match > 0) {
            if (at.distance - 1 >= static_cast<std::size_t>(at.out - start)) {
                return false;
            }
            copyMatchNarrow(at.out, at.distance, match);
            at.out += match;
        }
        return true;
    }

    LiteralTable literalTable_;
    TripleTables tables_;
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
