// The device root: a folder of this machine that stands for the device's file system. Every path of
// the device is resolved inside it as in a changed root, so neither absolute symbolic links nor
// ".." leave it. Other folders of this machine can be grafted into it, as a mounted volume is: they
// can be read and not written to, and links in them mean what they mean on the device.
#pragma once

#include "desktop/files/descriptor.h"
#include "desktop/files/path_walk.h"
#include "desktop/result/result.h"
#include "platform/foundation.h"

#include <cstddef>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace velmoranth::desktop {

// A folder of this machine that is the device's folder `place`.
struct Graft {
    std::string place;   // absolute; the folder that it stands in is there, and so is a folder of
                         // that name when lists of it are to have it
    std::string folder;  // of this machine; the link that it may be is followed

    friend bool operator==(const Graft&, const Graft&) = default;
};

// What a device's file system is made of: enough for another process to open it.
struct DeviceFiles {
    DeviceFiles() = default;

    // NOLINTNEXTLINE(google-explicit-constructor): a folder alone is most of them.
    DeviceFiles(std::string hostFolder, std::vector<Graft> grafted = {})
        : folder(std::move(hostFolder)), grafts(std::move(grafted)) {}

    std::string folder;
    std::vector<Graft> grafts;

    friend bool operator==(const DeviceFiles&, const DeviceFiles&) = default;
};

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
    // Opens existing folders. Fails when one is missing or no folder.
    [[nodiscard]] static Result<std::shared_ptr<DeviceRoot>> open(
        const DeviceFiles& files, PathResolution resolution = PathResolution::automatic);

    ~DeviceRoot();
    DeviceRoot(const DeviceRoot&) = delete;
    DeviceRoot& operator=(const DeviceRoot&) = delete;

    // The folder on this machine, as given. What is grafted is not in it.
    [[nodiscard]] const std::string& hostFolder() const { return files_.folder; }

    // The same device for another process: the folder and its grafts.
    [[nodiscard]] const DeviceFiles& files() const { return files_; }

    // Whether the kernel resolves paths.
    [[nodiscard]] bool resolvesInKernel() const { return inKernel_; }

    // Opens a device path inside the root with open(2)'s flags and mode, O_CLOEXEC added: a
    // descriptor that the caller closes, or -1 with errno set. A path longer than PATH_MAX fails
    // with ENAMETOOLONG, one with a NUL with EINVAL. Never follows a link out of the root. What
    // would write to a graft fails with EROFS.
    [[nodiscard]] int openFile(const std::string& devicePath, int flags, unsigned mode = 0) const;

    // The whole file, read once; fails when missing, no regular file, or larger than `maxBytes`.
    // The problem's path is the device path.
    [[nodiscard]] Result<platform::Data> readFile(const std::string& devicePath,
                                                  std::size_t maxBytes) const;

    // Opens the folder that holds the path's last component (trailing slashes do not count); with
    // errno set when that fails. The last component need not exist and is not looked at. For
    // looking alone: the folder may be of a graft, and the component the place of one.
    [[nodiscard]] FolderEntry openParent(const std::string& devicePath) const;

    // The same for making, renaming or removing the last component. Fails with EROFS in a graft,
    // and with EBUSY where the component is a graft's place or a folder that leads to it.
    [[nodiscard]] FolderEntry openParentToChange(const std::string& devicePath) const;

    // mkdir(2) and chmod(2) on a device path; chmod follows links inside the root. 0, or the errno.
    [[nodiscard]] int makeFolder(const std::string& devicePath, unsigned mode) const;
    [[nodiscard]] int changeMode(const std::string& devicePath, unsigned mode) const;

  private:
    DeviceRoot(DeviceFiles files, Descriptor descriptor, bool inKernel);

    [[nodiscard]] Result<OpenGraft> openGraft(const Graft& graft) const;
    [[nodiscard]] Walked walk(const std::string& devicePath, int flags, unsigned mode = 0) const;

    DeviceFiles files_;
    Descriptor descriptor_;
    bool inKernel_;
    std::vector<OpenGraft> grafts_;
};

}  // namespace velmoranth::desktop
