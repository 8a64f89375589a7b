// A fresh device: the folders and links that the phone has and the system works in.
#pragma once

#include "desktop/files/device_root.h"
#include "desktop/result/result.h"

#include <memory>
#include <string>

namespace velmoranth::desktop {

// Lays a device tree out in `hostFolder`, which is made when it is missing (its parent must exist)
// and must be empty otherwise: user folders with the preferences folder, the themes folder, and the
// phone's links (/var to private/var, /User to /var/mobile; written as relative links, so that
// they mean the same to other programs of this machine). Fails with the folder unchanged when it
// is not empty.
[[nodiscard]] Result<std::shared_ptr<DeviceRoot>> createDeviceRoot(const std::string& hostFolder);

// Copies a folder of this machine (the link that it may be is followed, links in it are not) to
// `devicePath`, which must not exist while its parent does: how a theme gets onto the device.
[[nodiscard]] Result<void> importFolder(const DeviceRoot& root, const std::string& hostFolder,
                                        const std::string& devicePath);

}  // namespace velmoranth::desktop
