// What is installed on a device, as it comes with this program: the folder `layout` of the sources,
// copied beside the command when it is built.
#pragma once

#include "desktop/files/create_device_root.h"
#include "desktop/result/result.h"

#include <span>
#include <string_view>
#include <vector>

namespace velmoranth::cli {

// The device paths of all of them: the panel's sounds, the factory preferences, the calendar.
[[nodiscard]] std::span<const std::string_view> installedPaths();

// Where each lies on this machine: in share/velmoranth/layout beside the program, else in
// ../share/velmoranth/layout. Fails with the places that were tried when neither is there; whether
// it is complete shows when the files are read.
[[nodiscard]] desktop::Result<std::vector<desktop::InstalledFile>> findInstalledFiles();

}  // namespace velmoranth::cli
