// The LZVN payload. Takes the shortest opcode that a repetition allows.
#include "tests/support/catalog/lzfse_writer.h"
#include "tests/support/catalog/lzvn_payload.h"
#include "tests/support/catalog/matches.h"

#include <algorithm>
#include <array>

namespace velmoranth::tests {

namespace {

constexpr std::size_t kMaxLzvnDistance = 0xFFFF;
constexpr std::size_t kSmallDistance = 0x5FF;
constexpr std::size_t kMediumDistance = 0x3FFF;
constexpr std::size_t kLongest = 271;  // of literals, or of a match, by an opcode of their own
// The longest match beside so many literals: the opcodes above mean something else.
constexpr std::array<std::size_t, 4> kMatchBesideLiterals = {10, 8, 6, 4};
constexpr std::size_t kMediumMatch = 34;

class Payload {
  public:
    explicit Payload(std::span<const std::uint8_t> bytes, std::size_t start)
        : bytes_(bytes), place_(start) {}

    void put(const Repetition& repetition) {
        std::size_t literals = repetition.literals;
        // Up to three go with the match.
        while (literals > 3 || (repetition.match == 0 && literals > 0)) {
            const std::size_t count = std::min(literals, kLongest);
            if (count > 15) {
                putByte(0xE0);
                putByte(count - 16);
            } else {
                putByte(0xE0 | count);
            }
            putLiterals(count);
            literals -= count;
        }
        if (repetition.match > 0) {
            putMatch(literals, repetition.match, repetition.distance);
        }
    }

    std::vector<std::uint8_t> finish() {
        payload_.insert(payload_.end(), {0x06, 0, 0, 0, 0, 0, 0, 0});
        return std::move(payload_);
    }

  private:
    void putMatch(std::size_t literals, std::size_t match, std::size_t distance) {
        std::size_t rest = match;
        if (distance != previous_ || literals > 0) {
            rest -= putWithLiterals(literals, match, distance);
        }
        previous_ = distance;
        while (rest > 0) {
            const std::size_t count = std::min(rest, kLongest);
            if (count > 15) {
                putByte(0xF0);
                putByte(count - 16);
            } else {
                putByte(0xF0 | count);
            }
            rest -= count;
        }
        place_ += match;
    }

    // How much of the match its first opcode covers.
    std::size_t putWithLiterals(std::size_t literals, std::size_t match, std::size_t distance) {
        const std::size_t few = std::min(match, kMatchBesideLiterals[literals]);
        const std::size_t opcode = literals << 6U | (few - 3) << 3U;
        if (distance == previous_) {
            putByte(opcode | 6U);
        } else if (distance <= kSmallDistance && few == match) {
            putByte(opcode | distance >> 8U);
            putByte(distance);
        } else if (distance <= kMediumDistance) {
            const std::size_t more = std::min(match, kMediumMatch);
            const std::size_t word = distance << 2U | ((more - 3) & 3U);
            putByte(0xA0U | literals << 3U | (more - 3) >> 2U);
            putByte(word);
            putByte(word >> 8U);
            putLiterals(literals);
            return more;
        } else {
            putByte(opcode | 7U);
            putByte(distance);
            putByte(distance >> 8U);
        }
        putLiterals(literals);
        return few;
    }

    void putByte(std::size_t byte) { payload_.push_back(static_cast<std::uint8_t>(byte)); }

    void putLiterals(std::size_t count) {
        const auto taken = bytes_.subspan(place_, count);
        payload_.insert(payload_.end(), taken.begin(), taken.end());
        place_ += count;
    }

    std::span<const std::uint8_t> bytes_;
    std::size_t place_;
    std::size_t previous_ = 0;
    std::vector<std::uint8_t> payload_;
};

}  // namespace

std::vector<std::uint8_t> lzvnPayload(std::span<const std::uint8_t> bytes, std::size_t start) {
    Payload payload(bytes, start);
    for (const Repetition& repetition : findRepetitions(bytes, start, kMaxLzvnDistance)) {
        payload.put(repetition);
    }
    return payload.finish();
}

std::vector<std::uint8_t> lzvn(std::span<const std::uint8_t> bytes) {
    return lzvnPayload(bytes, 0);
}

}  // namespace velmoranth::tests
