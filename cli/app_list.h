// The apps that a preview's home screen shows in place of a fresh device's: those that themes have
// icons for, or a list of the user's own.
#pragma once

#include "desktop/files/device_root.h"
#include "desktop/result/result.h"
#include "simulator/device.h"
#include "simulator/home_screen/installed_apps.h"

#include <string>
#include <vector>

namespace velmoranth::cli {

// More than any theme has icons.
inline constexpr std::size_t kMostApps = 10000;

// A file with an identifier a line and, behind a blank, what the home screen calls the app; "#"
// begins a comment, and lines may be empty. "-" is standard input. A problem when a line is
// neither, an app stands there twice, or there are none or too many.
[[nodiscard]] desktop::Result<std::vector<simulator::NamedApp>> readAppList(
    const std::string& path);

// Every app that an active theme of the device has a file IconBundles/IDENTIFIER-large.png for:
// those of a fresh device in its order, then the others by identifier. What can be no identifier
// does not count; nor does the clock's file where the system draws that app's icon itself, and the
// theme's face counts. A problem when there is none, or too many.
[[nodiscard]] desktop::Result<std::vector<simulator::NamedApp>> themedApps(
    const desktop::DeviceRoot& root, const simulator::SystemVersion& system);

}  // namespace velmoranth::cli
