// What reports say of the folder that a new one takes the place of.
#pragma once

#include <cstddef>
#include <optional>
#include <string>

namespace velmoranth::cli {

// "  replaced  the folder that was there, with 12 files\n", or "replaces" while nothing is written
// yet; "" when there was none.
[[nodiscard]] std::string replacedText(std::optional<std::size_t> files, bool isWritten);

}  // namespace velmoranth::cli
