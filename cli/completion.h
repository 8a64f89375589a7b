// What a shell needs to complete the command's words, made from the tables.
#pragma once

#include "cli/arguments.h"

#include <span>
#include <string>
#include <string_view>

namespace velmoranth::cli {

struct Shell {
    std::string_view name;
    std::string (*script)(std::span<const Command> commands);
};

[[nodiscard]] std::span<const Shell> shells();

}  // namespace velmoranth::cli
