// The command `velmoranth`: picks the command that the first words name, and runs it. Two programs
// do so: a small one, which answers what the tables of the commands alone can (help, the version,
// words that no table allows), and the one with all that draws and reads, which it becomes for the
// rest.
#pragma once

#include "cli/arguments.h"

#include <span>
#include <string>
#include <vector>

namespace velmoranth::cli {

struct Program {
    std::span<const Command> commands;  // in the order of the help text
    ExitCode (*showLibraries)();
};

// Runs the command that `words` (without the program's name) ask for; the value is main's.
int runCommandLine(const Program& program, const std::vector<std::string>& words);

}  // namespace velmoranth::cli
