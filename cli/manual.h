// Manual pages, made from the tables.
#pragma once

#include "cli/arguments.h"

#include <span>
#include <string>

namespace velmoranth::cli {

// Of the program, as troff's man macros have it.
[[nodiscard]] std::string programManual(std::span<const Command> commands);
// Of one command: "velmoranth-device-init" is the page of "device init".
[[nodiscard]] std::string commandManual(const Command& command);

}  // namespace velmoranth::cli
