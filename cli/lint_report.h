// What the check of themes has found, for people and for programs.
#pragma once

#include "makers/lint/lint.h"

#include <cstddef>
#include <string>
#include <vector>

namespace velmoranth::cli {

struct CheckedTheme {
    std::string input;  // as the user gave it
    std::string name;
    std::size_t files = 0;
    std::vector<makers::Finding> findings;
};

// Of a code that many files have, the first ones; with `all`, every one.
[[nodiscard]] std::string textOf(const std::vector<CheckedTheme>& themes, bool all);
// One object, as docs/themes/lint.md describes it.
[[nodiscard]] std::string jsonOf(const std::vector<CheckedTheme>& themes);

// Whether anything that was found is an error.
[[nodiscard]] bool hasErrors(const std::vector<CheckedTheme>& themes);

// All that is to be said of a code.
[[nodiscard]] std::string explained(const makers::CodeRow& row);

}  // namespace velmoranth::cli
