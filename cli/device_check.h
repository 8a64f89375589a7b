// What is odd about a device that the user brings, in words: the system itself takes such a device
// as it is, shows the stock screen and says nothing.
#pragma once

#include "desktop/files/device_root.h"
#include "desktop/result/result.h"
#include "platform/foundation.h"

#include <memory>
#include <string>
#include <vector>

namespace velmoranth::cli {

// Opens a device root. Fails when it is no folder or cannot be written to.
[[nodiscard]] desktop::Result<std::shared_ptr<desktop::DeviceRoot>> openDevice(
    const std::string& folder);

// Its preferences; nothing where they cannot be read.
[[nodiscard]] platform::Dictionary preferencesOn(const desktop::DeviceRoot& root);

// What they set for the themes of a device that is made, where a preview's settings do not count.
[[nodiscard]] platform::Dictionary settingsOn(const desktop::DeviceRoot& root);

// The themes that its preferences name, the first asked first; nothing where they name none.
[[nodiscard]] std::vector<std::string> activeThemes(const desktop::DeviceRoot& root);

// Warns of each finding; says nothing when preferences and active themes are as they should be.
void warnOfPreferences(const desktop::DeviceRoot& root);

}  // namespace velmoranth::cli
