// What reports say of the folder that a new one takes the place of.
#pragma once

#include <nlohmann/json_fwd.hpp>

#include <cstddef>
#include <optional>
#include <string>

namespace velmoranth::cli {

// "  replaced  the folder that was there, with 12 files\n", or "replaces" while nothing is written
// yet; "" when there was none.
[[nodiscard]] std::string replacedText(std::optional<std::size_t> files, bool isWritten);

// How many files it had; null when there was none.
[[nodiscard]] nlohmann::ordered_json jsonOfReplaced(std::optional<std::size_t> files);

}  // namespace velmoranth::cli
