// Which setting is behind what shows: the request is sent again to devices that have one of them
// the other way.
#pragma once

#include "cli/explanation.h"

#include <optional>
#include <string_view>
#include <vector>

namespace velmoranth::cli {

// The switches that are on, or off, in the order of the table of settings. Those that change
// nothing are left out, and theming as a whole: while it is off it is the only one that is.
[[nodiscard]] std::vector<std::string_view> switchesThatAre(const Investigation& investigation,
                                                            bool on);
[[nodiscard]] bool isSwitchOn(const Investigation& investigation, std::string_view key);

// The investigation's settings with these switches the other way.
[[nodiscard]] platform::Dictionary settingsWith(const Investigation& investigation,
                                                const std::vector<std::string_view>& turned);

// Of a request that shows no file of a theme, an icon without a mask, or nothing. Changes the
// device's preferences meanwhile.
[[nodiscard]] std::optional<SwitchReason> switchReasonOf(const Investigation& investigation,
                                                         const Explanation& explanation);

}  // namespace velmoranth::cli
