#include "tests/support/catalog/lzfse_writer.h"

#include "tests/support/catalog/fse_encoder.h"
#include "tests/support/catalog/lzvn_payload.h"
#include "tests/support/catalog/matches.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace velmoranth::tests {

namespace {

using Bytes = std::vector<std::uint8_t>;

constexpr std::size_t kMaxLiterals = 40000;  // of a block
constexpr std::size_t kMaxTriples = 10000;   // of a block
constexpr std::size_t kMaxLiteralRun = 315;
constexpr std::size_t kMaxMatch = 2359;
constexpr std::size_t kMaxDistance = 262139;

constexpr std::uint32_t kLengthStates = 64;  // of literal runs and of matches
constexpr std::uint32_t kDistanceStates = 256;
constexpr std::uint32_t kLiteralStates = 1024;

void putText(Bytes& bytes, std::string_view text) {
    bytes.insert(bytes.end(), text.begin(), text.end());
}

void putNumber(Bytes& bytes, std::uint64_t number, std::size_t count) {
    for (std::size_t i = 0; i < count; ++i) {
        bytes.push_back(static_cast<std::uint8_t>(number >> 8 * i));
    }
}

void putBytes(Bytes& bytes, std::span<const std::uint8_t> more) {
    bytes.insert(bytes.end(), more.begin(), more.end());
}

// Forwards, each byte from its lowest bit.
Bytes packedFrequencies(std::span<const std::uint16_t> frequencies) {
    BackwardBits bits;
    for (const std::uint16_t value : frequencies) {
        if (value < 2) {
            bits.put(value == 0 ? 0b00 : 0b10, 2);
        } else if (value < 4) {
            bits.put(value == 2 ? 0b001 : 0b101, 3);
        } else if (value < 8) {
            bits.put(0b011U | (value - 4U) << 3U, 5);
        } else if (value < 24) {
            bits.put(0b0111U | (value - 8U) << 4U, 8);
        } else {
            bits.put(0b1111U | (value - 24U) << 4U, 14);
        }
    }
    return bits.bytes();
}

// One kind of number of the triples.
class Numbers {
  public:
    Numbers(const ValueCode& code, std::uint32_t states, std::span<const LzfseTriple> triples,
            std::uint32_t LzfseTriple::* member, std::uint32_t unusedStates)
        : code_(code),
          member_(member),
          frequencies_(count(triples, states - unusedStates)),
          encoder_(frequencies_, states) {}

    void put(BackwardBits& bits, const LzfseTriple& triple) {
        const ValueCode::Coded coded = code_.code(triple.*member_);
        bits.put(coded.extra, coded.extraBits);
        encoder_.put(bits, coded.symbol, state_);
    }

    [[nodiscard]] std::uint16_t state() const { return state_; }

    [[nodiscard]] const std::vector<std::uint16_t>& frequencies() const { return frequencies_; }

  private:
    [[nodiscard]] std::vector<std::uint16_t> count(std::span<const LzfseTriple> triples,
                                                   std::uint32_t total) const {
        std::vector<std::size_t> counts(code_.symbols(), 0);
        for (const LzfseTriple& triple : triples) {
            ++counts[code_.code(triple.*member_).symbol];
        }
        return scaledFrequencies(counts, total);
    }

    const ValueCode& code_;
    std::uint32_t LzfseTriple::* member_;
    std::vector<std::uint16_t> frequencies_;
    FseEncoder encoder_;
    std::uint16_t state_ = 0;
};

// The fields that both headers have.
struct Block {
    std::uint32_t rawBytes = 0;
    std::size_t literals = 0;
    std::size_t triples = 0;
    BackwardBits literalBits;
    std::array<std::uint16_t, 4> literalStates = {};
    BackwardBits tripleBits;
    std::array<std::uint16_t, 3> tripleStates = {};
    std::vector<std::uint16_t> frequencies;
};

Block encodeBlock(std::span<const std::uint8_t> given, std::span<const LzfseTriple> triples,
                  std::uint32_t unusedStates) {
    Block block;
    Bytes literals(given.begin(), given.end());
    while (literals.size() % 4 != 0) {
        literals.push_back(literals.back());
    }
    block.literals = literals.size();
    block.triples = triples.size();

    std::vector<std::size_t> counts(256, 0);
    for (const std::uint8_t literal : literals) {
        ++counts[literal];
    }
    const auto frequencies = scaledFrequencies(counts, kLiteralStates - unusedStates);
    const FseEncoder encoder(frequencies, kLiteralStates);
    for (std::size_t i = literals.size(); i > 0; --i) {
        encoder.put(block.literalBits, literals[i - 1], block.literalStates[(i - 1) % 4]);
    }

    Numbers runs(ValueCode::literals(), kLengthStates, triples, &LzfseTriple::literals,
                 unusedStates);
    Numbers matches(ValueCode::matches(), kLengthStates, triples, &LzfseTriple::match,
                    unusedStates);
    Numbers distances(ValueCode::distances(), kDistanceStates, triples, &LzfseTriple::distance,
                      unusedStates);
    // At least 8 bytes: some readers start with so many.
    block.tripleBits.put(0, 64);
    for (std::size_t i = triples.size(); i > 0; --i) {
        distances.put(block.tripleBits, triples[i - 1]);
        matches.put(block.tripleBits, triples[i - 1]);
        runs.put(block.tripleBits, triples[i - 1]);
    }
    block.tripleStates = {runs.state(), matches.state(), distances.state()};

    for (const auto* table :
         {&runs.frequencies(), &matches.frequencies(), &distances.frequencies(), &frequencies}) {
        block.frequencies.insert(block.frequencies.end(), table->begin(), table->end());
    }
    return block;
}

void putPlainHeader(Bytes& stream, const Block& block) {
    const std::size_t literalBytes = block.literalBits.bytes().size();
    const std::size_t tripleBytes = block.tripleBits.bytes().size();
    putText(stream, "bvx1");
    putNumber(stream, block.rawBytes, 4);
    putNumber(stream, literalBytes + tripleBytes, 4);
    putNumber(stream, block.literals, 4);
    putNumber(stream, block.triples, 4);
    putNumber(stream, literalBytes, 4);
    putNumber(stream, tripleBytes, 4);
    putNumber(stream, static_cast<std::uint32_t>(block.literalBits.filled()), 4);
    for (const std::uint16_t state : block.literalStates) {
        putNumber(stream, state, 2);
    }
    putNumber(stream, static_cast<std::uint32_t>(block.tripleBits.filled()), 4);
    for (const std::uint16_t state : block.tripleStates) {
        putNumber(stream, state, 2);
    }
    for (const std::uint16_t frequency : block.frequencies) {
        putNumber(stream, frequency, 2);
    }
    putNumber(stream, 0, 2);
}

void putPackedHeader(Bytes& stream, const Block& block) {
    const auto& states = block.literalStates;
    const auto filled = [](const BackwardBits& bits) {
        return static_cast<std::uint64_t>(bits.filled() + 7) << 60U;
    };
    Bytes frequencies;
    if (block.literals > 0 || block.triples > 0) {
        frequencies = packedFrequencies(block.frequencies);
    }
    putText(stream, "bvx2");
    putNumber(stream, block.rawBytes, 4);
    putNumber(stream,
              block.literals | block.literalBits.bytes().size() << 20U | block.triples << 40U |
                  filled(block.literalBits),
              8);
    putNumber(stream,
              states[0] | std::uint64_t{states[1]} << 10U | std::uint64_t{states[2]} << 20U |
                  std::uint64_t{states[3]} << 30U | block.tripleBits.bytes().size() << 40U |
                  filled(block.tripleBits),
              8);
    putNumber(stream,
              (32 + frequencies.size()) | std::uint64_t{block.tripleStates[0]} << 32U |
                  std::uint64_t{block.tripleStates[1]} << 42U |
                  std::uint64_t{block.tripleStates[2]} << 52U,
              8);
    putBytes(stream, frequencies);
}

// Triples of a size that can be coded. Distances are spelled out.
std::vector<LzfseTriple> triplesOf(std::span<const Repetition> repetitions) {
    std::vector<LzfseTriple> triples;
    for (Repetition rest : repetitions) {
        while (rest.literals > 0 || rest.match > 0) {
            const std::size_t literals = std::min(rest.literals, kMaxLiteralRun);
            rest.literals -= literals;
            const std::size_t match = rest.literals > 0 ? 0 : std::min(rest.match, kMaxMatch);
            rest.match -= match;
            triples.push_back({.literals = static_cast<std::uint32_t>(literals),
                               .match = static_cast<std::uint32_t>(match),
                               .distance = static_cast<std::uint32_t>(rest.distance)});
        }
    }
    return triples;
}

}  // namespace

void LzfseWriter::append(std::span<const std::uint8_t> bytes, LzfseBlock kind) {
    const std::size_t start = written_.size();
    putBytes(written_, bytes);
    if (bytes.empty()) {
        return;
    }
    if (kind == LzfseBlock::stored) {
        putText(stream_, "bvx-");
        putNumber(stream_, bytes.size(), 4);
        putBytes(stream_, bytes);
        return;
    }
    if (kind == LzfseBlock::lzvn) {
        const Bytes payload = lzvnPayload(written_, start);
        putText(stream_, "bvxn");
        putNumber(stream_, bytes.size(), 4);
        putNumber(stream_, payload.size(), 4);
        putBytes(stream_, payload);
        return;
    }
    std::vector<LzfseTriple> triples = triplesOf(findRepetitions(written_, start, kMaxDistance));
    std::size_t place = start;
    for (std::size_t first = 0; first < triples.size();) {
        Bytes literals;
        const std::size_t blockStart = place;
        std::uint32_t distance = 0;  // the one before, of this block
        std::size_t last = first;
        for (; last < triples.size() && last - first < kMaxTriples &&
               literals.size() + triples[last].literals <= kMaxLiterals;
             ++last) {
            LzfseTriple& triple = triples[last];
            putBytes(literals, std::span(written_).subspan(place, triple.literals));
            place += triple.literals + triple.match;
            if (triple.match == 0 || triple.distance == distance) {
                triple.distance = 0;
            } else {
                distance = triple.distance;
            }
        }
        appendTriples(literals, std::span(triples).subspan(first, last - first),
                      static_cast<std::uint32_t>(place - blockStart), kind);
        first = last;
    }
}

void LzfseWriter::appendTriples(std::span<const std::uint8_t> literals,
                                std::span<const LzfseTriple> triples, std::uint32_t rawBytes,
                                LzfseBlock kind, std::uint32_t unusedStates) {
    Block block = encodeBlock(literals, triples, unusedStates);
    block.rawBytes = rawBytes;
    if (kind == LzfseBlock::plainTables) {
        putPlainHeader(stream_, block);
    } else {
        putPackedHeader(stream_, block);
    }
    putBytes(stream_, block.literalBits.bytes());
    putBytes(stream_, block.tripleBits.bytes());
}

Bytes LzfseWriter::finish() const {
    Bytes stream = stream_;
    putText(stream, "bvx$");
    return stream;
}

std::vector<std::uint8_t> lzfse(std::span<const std::uint8_t> bytes, LzfseBlock kind) {
    LzfseWriter writer;
    writer.append(bytes, kind);
    return writer.finish();
}

}  // namespace velmoranth::tests
