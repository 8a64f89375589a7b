// Which setting is behind what shows: the request is sent again to devices that have one of them
// the other way.
#pragma once

#include "cli/explanation.h"

#include <optional>

namespace velmoranth::cli {

// Of a request that shows no file of a theme, an icon without a mask, or nothing. Changes the
// device's preferences meanwhile.
[[nodiscard]] std::optional<SwitchReason> switchReasonOf(const Investigation& investigation,
                                                         const Explanation& explanation);

}  // namespace velmoranth::cli
