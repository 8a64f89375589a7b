// What puts themes on a device and takes them off: each is there whole or not at all.
#pragma once

#include "cli/settings_device.h"
#include "desktop/files/device_root.h"
#include "desktop/result/result.h"

#include <string>

namespace velmoranth::cli {

// Opens the device without the folders that its links lead to, since it is the link that is
// replaced or removed. Fails when it is no device, or cannot be written to.
[[nodiscard]] desktop::Result<DeviceRef> openForThemes(const std::string& folder);

// A theme's device path.
[[nodiscard]] std::string themePlace(const std::string& theme);

// The device path where a theme is while it comes or goes: beside its place, under a name that
// nothing looks for. What a run that was killed has left there is removed.
[[nodiscard]] std::string passingPlace(const desktop::DeviceRoot& root, const std::string& theme);

}  // namespace velmoranth::cli
