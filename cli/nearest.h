// "Did you mean": the candidate that a mistyped word is closest to.
#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace velmoranth::cli {

// How many letters have to be inserted, removed, exchanged or swapped with their neighbour to make
// one of the other, upper and lower case alike. Time and memory grow with the product of both.
[[nodiscard]] std::size_t editDistance(std::string_view a, std::string_view b);

// The candidate at the least distance; nothing when none is near (more than a third of the word
// differs).
[[nodiscard]] std::optional<std::string_view> nearest(std::string_view word,
                                                      std::span<const std::string_view> candidates);

// The same for names of files, apps and the like, which are long and alike: nothing when more than
// a sixth differs, or two letters of a short one.
[[nodiscard]] std::optional<std::string_view> nearestName(
    std::string_view name, std::span<const std::string_view> candidates);
[[nodiscard]] bool isNearName(std::string_view a, std::string_view b);

// "; did you mean CANDIDATE?", or `otherwise` when none is near. The candidates are any range of
// texts.
template <class Candidates>
[[nodiscard]] std::string suggestion(std::string_view word, const Candidates& candidates,
                                     std::string_view otherwise = "") {
    const std::vector<std::string_view> texts(candidates.begin(), candidates.end());
    const auto found = nearest(word, texts);
    return found ? "; did you mean " + std::string(*found) + "?" : std::string(otherwise);
}

// The same by nearestName(), "" when none is near.
template <class Candidates>
[[nodiscard]] std::string nameSuggestion(std::string_view name, const Candidates& candidates) {
    const std::vector<std::string_view> texts(candidates.begin(), candidates.end());
    const auto found = nearestName(name, texts);
    return found ? "; did you mean " + std::string(*found) + "?" : "";
}

}  // namespace velmoranth::cli
