#include "cli/nearest.h"

#include <algorithm>
#include <cstddef>
#include <vector>

namespace velmoranth::cli {
namespace {

// Longer words are nobody's typing mistake, and would cost time.
constexpr std::size_t kLongestWord = 64;

char lower(char letter) {
    return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
}

bool same(char a, char b) {
    return lower(a) == lower(b);
}

}  // namespace

std::size_t editDistance(std::string_view a, std::string_view b) {
    std::vector<std::size_t> beforeLast(b.size() + 1);
    std::vector<std::size_t> last(b.size() + 1);
    std::vector<std::size_t> row(b.size() + 1);
    for (std::size_t j = 0; j <= b.size(); ++j) {
        row[j] = j;
    }
    for (std::size_t i = 1; i <= a.size(); ++i) {
        beforeLast.swap(last);
        last.swap(row);
        row[0] = i;
        for (std::size_t j = 1; j <= b.size(); ++j) {
            const std::size_t exchange = last[j - 1] + (same(a[i - 1], b[j - 1]) ? 0 : 1);
            row[j] = std::min({exchange, last[j] + 1, row[j - 1] + 1});
            if (i > 1 && j > 1 && same(a[i - 1], b[j - 2]) && same(a[i - 2], b[j - 1])) {
                row[j] = std::min(row[j], beforeLast[j - 2] + 1);
            }
        }
    }
    return row[b.size()];
}

namespace {

// The first of the nearest candidates, none that is `steps` away or farther.
std::optional<std::string_view> nearestWithin(std::string_view word, std::size_t steps,
                                              std::span<const std::string_view> candidates) {
    if (word.empty() || word.size() > kLongestWord) {
        return std::nullopt;
    }
    std::optional<std::string_view> best;
    for (const std::string_view candidate : candidates) {
        const std::size_t far = editDistance(word, candidate);
        if (far < steps && far < std::max(word.size(), candidate.size())) {
            best = candidate;
            steps = far;
        }
    }
    return best;
}

std::size_t mostStepsOfName(std::string_view name) {
    return std::max<std::size_t>(2, name.size() / 6);
}

}  // namespace

std::optional<std::string_view> nearest(std::string_view word,
                                        std::span<const std::string_view> candidates) {
    return nearestWithin(word, std::max<std::size_t>(2, word.size() / 3) + 1, candidates);
}

std::optional<std::string_view> nearestName(std::string_view name,
                                            std::span<const std::string_view> candidates) {
    return nearestWithin(name, mostStepsOfName(name) + 1, candidates);
}

bool isNearName(std::string_view a, std::string_view b) {
    return editDistance(a, b) <= mostStepsOfName(a);
}

}  // namespace velmoranth::cli
