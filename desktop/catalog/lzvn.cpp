#include "desktop/catalog/lzvn.h"

#include "desktop/catalog/lzfse.h"
#include "desktop/catalog/wide_copy.h"

#include <array>
#include <cstring>

namespace velmoranth::catalog {

namespace {

enum class OpcodeKind : std::uint8_t {
    ordinary,     // literals and a match, as the fields say
    longLiteral,  // the next byte is their number, less 16
    longMatch,    // the next byte is its length, less 16
    end,
    none,  // no operation
    undefined,
};

// How to read an opcode, so that all ordinary ones are read by the same steps. A word is the opcode
// and the three bytes behind it.
struct Opcode {
    OpcodeKind kind = OpcodeKind::undefined;
    std::uint8_t size = 1;       // bytes, without literals
    std::uint8_t literals = 0;   // at most 15
    std::uint8_t match = 0;      // at most 34, with all bits of `matchMask`
    std::uint8_t matchMask = 0;  // of the word's second byte: what the match is longer by
    // The distance is (word >> distanceShift & distanceMask) | distanceHigh, or the one before.
    std::uint8_t distanceShift = 0;
    std::uint16_t distanceMask = 0;
    std::uint16_t distanceHigh = 0;
    std::uint32_t keepMask = 0;  // all ones where the distance is the one before
};

constexpr std::uint32_t kKeep = 0xFFFFFFFF;

// Opcodes of literals, a match and how its distance is said: the low three bits.
constexpr Opcode distanceOpcode(std::uint32_t opcode) {
    Opcode row;
    row.literals = static_cast<std::uint8_t>(opcode >> 6U);
    row.match = static_cast<std::uint8_t>((opcode >> 3U & 7U) + 3);
    row.kind = OpcodeKind::ordinary;
    const std::uint32_t low = opcode & 7U;
    if (low < 6) {
        row.size = 2;
        row.distanceShift = 8;
        row.distanceMask = 0xFF;
        row.distanceHigh = static_cast<std::uint16_t>(low << 8U);
    } else if (low == 7) {
        row.size = 3;
        row.distanceShift = 8;
        row.distanceMask = 0xFFFF;
    } else if (row.literals > 0) {
        row.keepMask = kKeep;
    } else if (opcode == 0x06) {
        row.kind = OpcodeKind::end;
        row.size = 8;
    } else {
        row.kind = opcode == 0x0E || opcode == 0x16 ? OpcodeKind::none : OpcodeKind::undefined;
    }
    return row;
}

constexpr Opcode opcodeRow(std::uint32_t opcode) {
    Opcode row;
    if (opcode < 0x70 || (opcode >= 0x80 && opcode < 0xA0) || (opcode >= 0xC0 && opcode < 0xD0)) {
        return distanceOpcode(opcode);
    }
    if (opcode < 0x80 || (opcode >= 0xD0 && opcode < 0xE0)) {
        return row;
    }
    row.kind = OpcodeKind::ordinary;
    if (opcode < 0xC0) {
        row.size = 3;
        row.literals = static_cast<std::uint8_t>(opcode >> 3U & 3U);
        row.match = static_cast<std::uint8_t>(((opcode & 7U) << 2U) + 3);
        row.matchMask = 3;
        row.distanceShift = 10;
        row.distanceMask = 0x3FFF;
        return row;
    }
    row.keepMask = kKeep;
    const std::uint32_t low = opcode & 15U;
    if (low == 0) {
        row.kind = opcode == 0xE0 ? OpcodeKind::longLiteral : OpcodeKind::longMatch;
        row.size = 2;
    } else if (opcode < 0xF0) {
        row.literals = static_cast<std::uint8_t>(low);
    } else {
        row.match = static_cast<std::uint8_t>(low);
    }
    return row;
}

constexpr auto kOpcodes = [] {
    std::array<Opcode, 256> rows = {};
    for (std::uint32_t i = 0; i < rows.size(); ++i) {
        rows[i] = opcodeRow(i);
    }
    return rows;
}();

// What an ordinary opcode may read: itself and 16 bytes behind its largest head.
constexpr std::size_t kReadAhead = 24;
// What it may write: literals, a match, and what copies write beyond.
constexpr std::size_t kWriteAhead = 16 + 34 + kCopySlack;

class LzvnDecoder {
  public:
    LzvnDecoder(std::span<const std::uint8_t> payload, std::span<std::uint8_t> output,
                std::size_t written)
        : payload_(payload), output_(output), written_(written) {}

    [[nodiscard]] std::optional<LzvnEnd> decode() {
        for (;;) {
            if (!runWide()) {
                return std::nullopt;
            }
            switch (step()) {
                case Step::more:
                    break;
                case Step::ended:
                    return LzvnEnd{.read = read_, .written = written_};
                case Step::failed:
                    return std::nullopt;
            }
        }
    }

  private:
    enum class Step { more, ended, failed };

    // Ordinary opcodes while there is room around them. False when one is damaged.
    bool runWide() {
        if (payload_.size() < kReadAhead || output_.size() < kWriteAhead) {
            return true;
        }
        const std::uint8_t* in = payload_.data() + read_;
        const std::uint8_t* const inEnd = payload_.data() + (payload_.size() - kReadAhead);
        std::uint8_t* const start = output_.data();
        std::uint8_t* out = start + written_;
        const std::uint8_t* const outEnd = start + (output_.size() - kWriteAhead);
        std::uint32_t distance = distance_;
        bool sound = true;
        while (in <= inEnd && out <= outEnd) {
            const std::uint32_t word = load32(in);
            const Opcode& opcode = kOpcodes[word & 0xFFU];
            if (opcode.kind != OpcodeKind::ordinary) {
                break;
            }
            distance =
                ((word >> opcode.distanceShift & opcode.distanceMask) | opcode.distanceHigh) +
                (distance & opcode.keepMask);
            const std::uint32_t match = opcode.match + (word >> 8U & opcode.matchMask);
            copy16(out, in + opcode.size);
            in += opcode.size + opcode.literals;
            out += opcode.literals;
            if (match == 0) {
                continue;
            }
            if (distance == 0 || distance > static_cast<std::size_t>(out - start)) {
                sound = false;
                break;
            }
            copyMatchWide(out, distance, match);
            out += match;
        }
        read_ = static_cast<std::size_t>(in - payload_.data());
        written_ = static_cast<std::size_t>(out - start);
        distance_ = distance;
        return sound;
    }

    // Any one opcode, to the byte.
    Step step() {
        // An opcode has at least a byte behind it: the end mark's seven, if no other.
        if (payload_.size() - read_ < 2) {
            return Step::failed;
        }
        const std::uint8_t* const in = payload_.data() + read_;
        const Opcode& opcode = kOpcodes[in[0]];
        if (payload_.size() - read_ < opcode.size) {
            return Step::failed;
        }
        read_ += opcode.size;
        switch (opcode.kind) {
            case OpcodeKind::undefined:
                return Step::failed;
            case OpcodeKind::none:
                return Step::more;
            case OpcodeKind::end:
                return load64(in) == 0x06 ? Step::ended : Step::failed;
            case OpcodeKind::longLiteral:
                return copy(in[1] + std::size_t{16}, 0);
            case OpcodeKind::longMatch:
                return copy(0, in[1] + std::size_t{16});
            case OpcodeKind::ordinary:
                break;
        }
        std::uint32_t word = 0;
        std::memcpy(&word, in, opcode.size);
        distance_ = ((word >> opcode.distanceShift & opcode.distanceMask) | opcode.distanceHigh) +
                    (distance_ & opcode.keepMask);
        return copy(opcode.literals, opcode.match + (word >> 8U & opcode.matchMask));
    }

    Step copy(std::size_t literals, std::size_t match) {
        const std::size_t room = output_.size() - written_;
        if (literals > payload_.size() - read_ || literals + match > room) {
            return Step::failed;
        }
        std::uint8_t* const out = output_.data() + written_;
        if (literals > 0) {
            std::memcpy(out, payload_.data() + read_, literals);
        }
        read_ += literals;
        written_ += literals;
        if (match == 0) {
            return Step::more;
        }
        if (distance_ == 0 || distance_ > written_) {
            return Step::failed;
        }
        if (room - literals - match >= kCopySlack) {
            copyMatchWide(out + literals, distance_, match);
        } else {
            copyMatchNarrow(out + literals, distance_, match);
        }
        written_ += match;
        return Step::more;
    }

    std::span<const std::uint8_t> payload_;
    std::span<std::uint8_t> output_;
    std::size_t read_ = 0;
    std::size_t written_;
    std::uint32_t distance_ = 0;  // of the latest match
};

}  // namespace

std::optional<LzvnEnd> decodeLzvnPayload(std::span<const std::uint8_t> payload,
                                         std::span<std::uint8_t> output, std::size_t written) {
    return LzvnDecoder(payload, output, written).decode();
}

std::optional<std::size_t> decodeLzvn(std::span<const std::uint8_t> input,
                                      std::span<std::uint8_t> output) {
    const std::optional<LzvnEnd> end = decodeLzvnPayload(input, output, 0);
    if (!end) {
        return std::nullopt;
    }
    return end->written;
}

}  // namespace velmoranth::catalog
