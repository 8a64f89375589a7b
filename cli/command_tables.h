// The commands' tables as C++, which the small program is built with: what the list of the commands
// says, texts that are made when asked for included, and nothing of what the commands do.
#pragma once

#include "cli/arguments.h"

#include <span>
#include <string>
#include <string_view>

namespace velmoranth::cli {

// How the build asks the program for them; a file's name follows.
inline constexpr std::string_view kCommandTablesArgument = "--write-command-tables";

// A source that defines commands() of cli/commands.h, each of which is run by becomeDevice() of
// cli/device_program.h.
[[nodiscard]] std::string commandTables(std::span<const Command> commands);

}  // namespace velmoranth::cli
