// What was made of themes, for people and for programs.
#pragma once

#include "makers/conversion/convert.h"

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace velmoranth::cli {

[[nodiscard]] std::string textOf(const std::vector<makers::ConvertedTheme>& themes,
                                 const makers::Conversion& conversion);
[[nodiscard]] std::string jsonOf(const std::vector<makers::ConvertedTheme>& themes,
                                 const makers::Conversion& conversion);

}  // namespace velmoranth::cli
