// The device root: a folder of this machine that stands for the device's file system. Every path of
// the device is resolved inside it as in a changed root, so neither absolute symbolic links nor
// ".." leave it.
#pragma once

#include "desktop/result/result.h"
#include "platform/foundation.h"

#include <cstddef>
#include <memory>
#include <string>

namespace velmoranth::desktop {

class DeviceRoot {
  public:
    // Opens an existing folder. Fails when it is missing or no folder.
    [[nodiscard]] static Result<std::shared_ptr<DeviceRoot>> open(const std::string& hostFolder);

    ~DeviceRoot();
    DeviceRoot(const DeviceRoot&) = delete;
    DeviceRoot& operator=(const DeviceRoot&) = delete;

    // The folder on this machine, as given.
    [[nodiscard]] const std::string& hostFolder() const { return hostFolder_; }

    // Opens a device path inside the root with open(2)'s flags and mode, O_CLOEXEC added: a
    // descriptor that the caller closes, or -1 with errno set. A path longer than PATH_MAX fails
    // with ENAMETOOLONG, one with a NUL with EINVAL. Never follows a link out of the root.
    [[nodiscard]] int openFile(const std::string& devicePath, int flags, unsigned mode = 0) const;

    // The whole file, read once; fails when missing, no regular file, or larger than `maxBytes`.
    // The problem's path is the device path.
    [[nodiscard]] Result<platform::Data> readFile(const std::string& devicePath,
                                                  std::size_t maxBytes) const;

  private:
    DeviceRoot(std::string hostFolder, int descriptor);

    std::string hostFolder_;
    int descriptor_;
};

}  // namespace velmoranth::desktop
