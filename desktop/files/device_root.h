// The device root: a folder of this machine that stands for the device's file system. Every path of
// the device is resolved inside it as in a changed root, so neither absolute symbolic links nor
// ".." leave it.
#pragma once

#include "desktop/files/descriptor.h"
#include "desktop/result/result.h"
#include "platform/foundation.h"

#include <cstddef>
#include <memory>
#include <string>

namespace velmoranth::desktop {

// Who resolves paths: the kernel where it can (openat2), else our own walk, component by component.
// Both give the same results.
enum class PathResolution { automatic, walk };

// The folder that a path's last component stands in, and that component. Operations on `name` in
// `folder` that do not follow a final link (mkdirat, unlinkat, renameat, …) cannot leave the root.
struct FolderEntry {
    Descriptor folder;  // not open when the look-up failed
    std::string name;   // never "..", never empty; "." when the path has no last name of its own
};

class DeviceRoot {
  public:
    // Opens an existing folder. Fails when it is missing or no folder.
    [[nodiscard]] static Result<std::shared_ptr<DeviceRoot>> open(
        const std::string& hostFolder, PathResolution resolution = PathResolution::automatic);

    ~DeviceRoot();
    DeviceRoot(const DeviceRoot&) = delete;
    DeviceRoot& operator=(const DeviceRoot&) = delete;

    // The folder on this machine, as given.
    [[nodiscard]] const std::string& hostFolder() const { return hostFolder_; }

    // Whether the kernel resolves paths.
    [[nodiscard]] bool resolvesInKernel() const { return inKernel_; }

    // Opens a device path inside the root with open(2)'s flags and mode, O_CLOEXEC added: a
    // descriptor that the caller closes, or -1 with errno set. A path longer than PATH_MAX fails
    // with ENAMETOOLONG, one with a NUL with EINVAL. Never follows a link out of the root.
    [[nodiscard]] int openFile(const std::string& devicePath, int flags, unsigned mode = 0) const;

    // The whole file, read once; fails when missing, no regular file, or larger than `maxBytes`.
    // The problem's path is the device path.
    [[nodiscard]] Result<platform::Data> readFile(const std::string& devicePath,
                                                  std::size_t maxBytes) const;

    // Opens the folder that holds the path's last component (trailing slashes do not count); with
    // errno set when that fails. The last component need not exist and is not looked at.
    [[nodiscard]] FolderEntry openParent(const std::string& devicePath) const;

  private:
    DeviceRoot(std::string hostFolder, Descriptor descriptor, bool inKernel);

    std::string hostFolder_;
    Descriptor descriptor_;
    bool inKernel_;
};

}  // namespace velmoranth::desktop
