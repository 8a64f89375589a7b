// What a process that keeps a picture goes on to show it for.
#pragma once

#include "cli/explanation.h"
#include "simulator/process/launcher.h"
#include "simulator/screens/question_rows.h"

#include <vector>

namespace velmoranth::cli {

// The other requests that a process would open the file for and that `process`, which keeps the
// explanation's picture, answers without: those for the same argument, and those without one.
// Asks both processes for all of them.
[[nodiscard]] std::vector<simulator::Question> laterRequests(const Investigation& investigation,
                                                             const Explanation& explanation,
                                                             simulator::RunningScreen& process);

}  // namespace velmoranth::cli
