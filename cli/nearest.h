// "Did you mean": the candidate that a mistyped word is closest to.
#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace velmoranth::cli {

// The candidate with the fewest letters inserted, removed, exchanged or swapped with their
// neighbour, upper and lower case alike; nothing when none is near (more than a third of the word
// differs).
[[nodiscard]] std::optional<std::string_view> nearest(std::string_view word,
                                                      std::span<const std::string_view> candidates);

// "; did you mean CANDIDATE?", or "" when none is near.
[[nodiscard]] std::string suggestion(std::string_view word,
                                     std::span<const std::string_view> candidates);

}  // namespace velmoranth::cli
