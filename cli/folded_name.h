// Names without regard to capital and small letters, as file systems that do not tell these apart
// compare them.
#pragma once

#include <string>
#include <string_view>

namespace velmoranth::cli {

// The name with small letters for capital ones: Latin with its accents, Greek, Cyrillic, Armenian.
// All else, and what is no UTF-8, stays as it is.
[[nodiscard]] std::string folded(std::string_view name);

}  // namespace velmoranth::cli
