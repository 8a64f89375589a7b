// Help texts, made from the tables.
#pragma once

#include "cli/arguments.h"

#include <span>
#include <string>
#include <utility>
#include <vector>

namespace velmoranth::cli {

// Of the program.
[[nodiscard]] std::string programHelp(std::span<const Command> commands);
// Of the commands whose names begin with the same word.
[[nodiscard]] std::string groupHelp(const std::string& word,
                                    const std::vector<const Command*>& members);
// Of one command.
[[nodiscard]] std::string commandHelp(const Command& command);

// Two columns, indented, the second one wrapped; columns are counted in bytes, so the first one is
// to be ASCII.
[[nodiscard]] std::string twoColumns(const std::vector<std::pair<std::string, std::string>>& rows);

}  // namespace velmoranth::cli
