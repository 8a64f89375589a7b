// Property lists that do not parse, put right where one clear change does it.
#pragma once

#include "desktop/result/result.h"
#include "platform/foundation.h"

#include <string>

namespace velmoranth::makers {

struct ReadList {
    platform::PropertyList value;
    // What was put right; "" for a list that needed nothing.
    std::string repair = {};
};

// The problem is the reader's own, with line and column.
[[nodiscard]] desktop::Result<ReadList> readRepaired(const platform::Data& bytes);

}  // namespace velmoranth::makers
