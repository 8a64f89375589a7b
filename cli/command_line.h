// The command `velmoranth`: picks the command that the first words name, and runs it.
#pragma once

#include "cli/arguments.h"

#include <span>
#include <string>
#include <vector>

namespace velmoranth::cli {

// Every command, in the order of the help text.
[[nodiscard]] std::span<const Command> commands();

// Runs the command that `words` (without the program's name) ask for; the value is main's.
int runCommandLine(const std::vector<std::string>& words);

}  // namespace velmoranth::cli
