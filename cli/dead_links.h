// Links in themes that lead nowhere on a device, as those do that lead out of a theme to a folder
// of its maker's machine.
#pragma once

#include "desktop/files/device_root.h"

#include <string>
#include <string_view>
#include <vector>

namespace velmoranth::cli {

// What such a file is, and what to do.
inline constexpr std::string_view kIsDeadLink = "is a link that leads nowhere on a device";
inline constexpr std::string_view kMendDeadLink = "put the file itself in its place";

// Whether that is at the path on the device.
[[nodiscard]] bool isDeadLink(const desktop::DeviceRoot& root, const std::string& devicePath);

// Those of a theme of the device, by their names in it, in order, without what archivers leave
// behind; none of a theme that cannot be read.
[[nodiscard]] std::vector<std::string> deadLinksOf(const desktop::DeviceRoot& root,
                                                   const std::string& theme);

// A line about them, by their names with the themes'; "" of none.
[[nodiscard]] std::string aboutDeadLinks(const std::vector<std::string>& names);

}  // namespace velmoranth::cli
