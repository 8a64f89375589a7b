// A file of a theme that was asked for, in every JSON that has such files: docs/themes/explain.md
// has the form.
#pragma once

#include "cli/explanation.h"

#include <nlohmann/json_fwd.hpp>

namespace velmoranth::cli {

[[nodiscard]] nlohmann::ordered_json jsonOf(const AskedFile& file);

}  // namespace velmoranth::cli
