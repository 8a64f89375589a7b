// "Did you mean": the candidate that a mistyped word is closest to.
#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace velmoranth::cli {

// The candidate with the fewest letters inserted, removed, exchanged or swapped with their
// neighbour, upper and lower case alike; nothing when none is near (more than a third of the word
// differs).
[[nodiscard]] std::optional<std::string_view> nearest(std::string_view word,
                                                      std::span<const std::string_view> candidates);

// "; did you mean CANDIDATE?", or `otherwise` when none is near. The candidates are any range of
// texts.
template <class Candidates>
[[nodiscard]] std::string suggestion(std::string_view word, const Candidates& candidates,
                                     std::string_view otherwise = "") {
    const std::vector<std::string_view> texts(candidates.begin(), candidates.end());
    const auto found = nearest(word, texts);
    return found ? "; did you mean " + std::string(*found) + "?" : std::string(otherwise);
}

}  // namespace velmoranth::cli
