// Questions that one process can answer one after another, each as if it were the first.
#pragma once

#include "simulator/screens/question_rows.h"

#include <cstddef>
#include <span>
#include <vector>

namespace velmoranth::cli {

// In one batch.
inline constexpr std::size_t kMostQuestionsTogether = 250;

// Their places, in batches: of one kind of process each, and no two images of one name, since what
// is found for one is kept under its name alone, whatever the bundle.
[[nodiscard]] std::vector<std::vector<std::size_t>> batchesOf(
    std::span<const simulator::Question> questions);

}  // namespace velmoranth::cli
