// From the words behind a command's name to its Arguments.
#pragma once

#include "cli/arguments.h"
#include "desktop/result/result.h"

#include <string>
#include <vector>

namespace velmoranth::cli {

// The problem of words that the command's table does not allow says which, and the nearest option.
[[nodiscard]] desktop::Result<Arguments> parseArguments(const Command& command,
                                                        std::vector<std::string> words);

// The option that every command has.
inline constexpr Option kHelpOption{"--help", "-h", "", "show this text"};

}  // namespace velmoranth::cli
