// What a change of themes does to what a running process shows, found out by changing them.
#pragma once

#include "cli/explanation.h"
#include "simulator/process/launcher.h"

namespace velmoranth::cli {

// Whether the process goes on showing the theme's file when another theme with a file of that name,
// and with the same effects, takes the place of all. Views that a screen keeps are asked in a home
// screen where that one shows the file, unless a summary is enough; `process` has answered the
// question.
[[nodiscard]] bool needsRespring(const Investigation& investigation, const Explanation& explanation,
                                 simulator::RunningScreen& process, Depth depth);

}  // namespace velmoranth::cli
