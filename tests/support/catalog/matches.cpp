#include "tests/support/catalog/matches.h"

#include <algorithm>
#include <cstring>

namespace velmoranth::tests {

namespace {

constexpr std::size_t kShortest = 4;
constexpr std::size_t kHashBits = 15;
constexpr std::size_t kTries = 16;

// Remembers where each four bytes were seen.
class Places {
  public:
    explicit Places(std::span<const std::uint8_t> bytes)
        : bytes_(bytes), latest_(std::size_t{1} << kHashBits, 0), before_(bytes.size() + 1, 0) {}

    void add(std::size_t place) {
        if (place + kShortest <= bytes_.size()) {
            std::size_t& latest = latest_[hash(place)];
            before_[place + 1] = latest;
            latest = place + 1;
        }
    }

    // The longest repetition among the latest few; match 0 for none.
    [[nodiscard]] Repetition longest(std::size_t place, std::size_t maxDistance) const {
        Repetition best;
        if (place + kShortest > bytes_.size()) {
            return best;
        }
        std::size_t candidate = latest_[hash(place)];
        for (std::size_t i = 0; i < kTries && candidate > 0; ++i, candidate = before_[candidate]) {
            const std::size_t distance = place - (candidate - 1);
            if (distance > maxDistance) {
                break;
            }
            const std::size_t length = commonLength(candidate - 1, place);
            if (length >= kShortest && length > best.match) {
                best = {.literals = 0, .match = length, .distance = distance};
            }
        }
        return best;
    }

  private:
    [[nodiscard]] std::size_t hash(std::size_t place) const {
        std::uint32_t four = 0;
        std::memcpy(&four, bytes_.data() + place, sizeof four);
        return four * 2654435761U >> (32 - kHashBits);
    }

    [[nodiscard]] std::size_t commonLength(std::size_t earlier, std::size_t later) const {
        const auto [end, ignored] =
            std::mismatch(bytes_.begin() + static_cast<std::ptrdiff_t>(later), bytes_.end(),
                          bytes_.begin() + static_cast<std::ptrdiff_t>(earlier));
        return static_cast<std::size_t>(end - bytes_.begin()) - later;
    }

    std::span<const std::uint8_t> bytes_;
    std::vector<std::size_t> latest_;  // by hash; places plus one, 0 for none
    std::vector<std::size_t> before_;  // by place plus one
};

}  // namespace

std::vector<Repetition> findRepetitions(std::span<const std::uint8_t> bytes, std::size_t start,
                                        std::size_t maxDistance) {
    Places places(bytes);
    for (std::size_t place = 0; place < start; ++place) {
        places.add(place);
    }
    std::vector<Repetition> found;
    std::size_t literalStart = start;
    for (std::size_t place = start; place < bytes.size();) {
        Repetition repetition = places.longest(place, maxDistance);
        const std::size_t step = std::max<std::size_t>(repetition.match, 1);
        if (repetition.match > 0) {
            repetition.literals = place - literalStart;
            found.push_back(repetition);
            literalStart = place + repetition.match;
        }
        for (std::size_t i = 0; i < step; ++i) {
            places.add(place + i);
        }
        place += step;
    }
    if (literalStart < bytes.size()) {
        found.push_back({.literals = bytes.size() - literalStart, .match = 0, .distance = 0});
    }
    return found;
}

}  // namespace velmoranth::tests
