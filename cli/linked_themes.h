// Themes of a device that lie elsewhere on this machine: its Library/Themes has a link to the
// maker's folder.
#pragma once

#include "desktop/files/device_root.h"
#include "desktop/result/result.h"

#include <memory>
#include <string>

namespace velmoranth::cli {

inline constexpr const char* kInstalledThemes = "/Library/Themes";

// Opens the device with these folders grafted. Such a link has an absolute path that is a folder of
// this machine and nothing on the device; every other link is one of the device's own. Fails as
// opening the device does.
[[nodiscard]] desktop::Result<std::shared_ptr<desktop::DeviceRoot>> openWithLinkedThemes(
    const std::string& folder);

}  // namespace velmoranth::cli
