#include "desktop/files/create_device_root.h"

#include "desktop/files/file_tree.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <string_view>

namespace velmoranth::desktop {
namespace {

constexpr unsigned kFolderMode = 0755;

// Parents first.
constexpr const char* kFolders[] = {
    "Library",
    "Library/Themes",
    "System",
    "System/Library",
    "private",
    "private/var",
    "private/var/mobile",
    "private/var/mobile/Library",
    "private/var/mobile/Library/Preferences",
    "private/var/mobile/Library/SpringBoard",
    "private/var/mobile/Library/VelMoranth",
    "private/var/mobile/Library/VelMoranth/DefaultSettings",
    "private/var/mobile/Library/VelMoranth/Sounds",
    "private/var/mobile/Library/VelMoranth/UserSettings",
    "private/var/root",
    "private/var/run",
    "private/var/run/notifications",
    "private/var/tmp",
};

struct Link {
    const char* name;
    const char* target;
};

constexpr Link kLinks[] = {
    {"var", "private/var"},
    {"User", "var/mobile"},
    {"tmp", "private/var/tmp"},
};

bool isEmpty(int folder) {
    const int own = ::openat(folder, ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (own < 0) {
        return false;
    }
    DIR* const stream = ::fdopendir(own);
    if (stream == nullptr) {
        ::close(own);
        return false;
    }
    bool empty = true;
    while (const dirent* const entry = ::readdir(stream)) {
        const std::string_view name = static_cast<const char*>(entry->d_name);
        empty = empty && (name == "." || name == "..");
    }
    ::closedir(stream);
    return empty;
}

}  // namespace

Result<std::shared_ptr<DeviceRoot>> createDeviceRoot(const std::string& hostFolder) {
    if (::mkdir(hostFolder.c_str(), kFolderMode) != 0 && errno != EEXIST) {
        return tl::unexpected(problemOfErrno(errno, hostFolder));
    }
    const Descriptor folder(::open(hostFolder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (!folder.isOpen()) {
        return tl::unexpected(problemOfErrno(errno, hostFolder));
    }
    if (!isEmpty(folder.get())) {
        return tl::unexpected(
            Problem{"the folder is not empty; a new device needs an empty one", hostFolder});
    }
    for (const char* const name : kFolders) {
        if (::mkdirat(folder.get(), name, kFolderMode) != 0) {
            return tl::unexpected(problemOfErrno(errno, hostFolder + "/" + name));
        }
    }
    for (const Link& link : kLinks) {
        if (::symlinkat(link.target, folder.get(), link.name) != 0) {
            return tl::unexpected(problemOfErrno(errno, hostFolder + "/" + link.name));
        }
    }
    return DeviceRoot::open(hostFolder);
}

Result<void> importFolder(const DeviceRoot& root, const std::string& hostFolder,
                          const std::string& devicePath) {
    // Opened first, so that the link that it may be is followed; "." of it is then what is copied.
    const Descriptor from(::open(hostFolder.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
    if (!from.isOpen()) {
        return tl::unexpected(problemOfErrno(errno, hostFolder));
    }
    const FolderEntry to = root.openParent(devicePath);
    const int error = to.folder.isOpen()
                          ? copyTree(FileCalls(), from.get(), ".", to.folder.get(), to.name)
                          : errno;
    if (error != 0) {
        return tl::unexpected(problemOfErrno(error, devicePath));
    }
    return {};
}

}  // namespace velmoranth::desktop
