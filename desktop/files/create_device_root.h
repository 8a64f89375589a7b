// A fresh device: the folders and links that the phone has and the system works in, and the files
// that are installed on it.
#pragma once

#include "desktop/files/device_root.h"
#include "desktop/files/file_calls.h"
#include "desktop/result/result.h"

#include <cstddef>
#include <memory>
#include <span>
#include <string>

namespace velmoranth::desktop {

// A file of this machine that a device gets: a regular file (the link that it may be is followed).
struct InstalledFile {
    std::string hostPath;
    std::string devicePath;  // absolute; its folder is one of those that every device has
};

// Larger ones are refused.
inline constexpr std::size_t kMaxInstalledFileBytes = std::size_t{4} * 1024 * 1024;

// Lays a device tree out in `hostFolder`, which is made when it is missing (its parent must exist)
// and must be empty otherwise: user folders with the preferences folder, the themes folder, and the
// phone's links (/var to private/var, /User to /var/mobile; written as relative links, so that
// they mean the same to other programs of this machine); then copies the files. Folders have the
// mode 0755 and files 0644, whatever the umask is; `hostFolder` itself follows the umask.
// All or nothing: on failure what was made is removed again, and a folder that was not empty is as
// it was. The problem names the file or folder that could not be read or made.
[[nodiscard]] Result<std::shared_ptr<DeviceRoot>> createDeviceRoot(
    const std::string& hostFolder, std::span<const InstalledFile> files = {},
    const FileCalls& calls = FileCalls());

// Copies a folder of this machine (the link that it may be is followed, links in it are not) to
// `devicePath`, which must not exist while its parent does: how a theme gets onto the device.
[[nodiscard]] Result<void> importFolder(const DeviceRoot& root, const std::string& hostFolder,
                                        const std::string& devicePath,
                                        const FileCalls& calls = FileCalls());

}  // namespace velmoranth::desktop
