#include "desktop/files/create_device_root.h"

#include "desktop/files/file_tree.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <string_view>
#include <utility>
#include <vector>

namespace velmoranth::desktop {
namespace {

constexpr unsigned kFolderMode = 0755;
constexpr unsigned kFileMode = 0644;

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
    std::vector<std::string> names;
    return namesIn(folder, names) == 0 && names.empty();
}

// What was laid out in a folder of this machine; taken back when this goes unless it is kept. Best
// effort: why it is taken back is what counts.
struct LaidOut {
    const std::string& hostFolder;
    bool isNew;
    Descriptor folder = {};
    std::vector<std::string> names = {};  // made at the top of it
    bool isKept = false;

    ~LaidOut() {
        if (isKept) {
            return;
        }
        for (const std::string& name : names) {
            static_cast<void>(removeTree(folder.get(), name));
        }
        if (isNew) {
            ::rmdir(hostFolder.c_str());
        }
    }
};

Result<void> makeFolders(LaidOut& device) {
    const auto failed = [&](const char* name) {
        return tl::unexpected(problemOfErrno(errno, device.hostFolder + "/" + name));
    };
    const int folder = device.folder.get();
    for (const char* const name : kFolders) {
        if (::mkdirat(folder, name, kFolderMode) != 0) {
            return failed(name);
        }
        if (std::string_view(name).find('/') == std::string_view::npos) {
            device.names.emplace_back(name);
        }
        // No link can be there: it has just been made.
        if (::fchmodat(folder, name, kFolderMode, 0) != 0) {
            return failed(name);
        }
    }
    for (const Link& link : kLinks) {
        if (::symlinkat(link.target, folder, link.name) != 0) {
            return failed(link.name);
        }
        device.names.emplace_back(link.name);
    }
    return {};
}

Result<platform::Data> readHostFile(const std::string& path) {
    // Not waiting for the writer of a pipe.
    const Descriptor file(::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
    struct stat status{};
    if (!file.isOpen() || ::fstat(file.get(), &status) != 0) {
        return tl::unexpected(problemOfErrno(errno, path));
    }
    if (!S_ISREG(status.st_mode)) {
        return tl::unexpected(Problem{"this is no file", path});
    }
    if (status.st_size > static_cast<off_t>(kMaxInstalledFileBytes)) {
        return tl::unexpected(Problem{"the file is larger than " +
                                          std::to_string(kMaxInstalledFileBytes / (1024 * 1024)) +
                                          " MiB",
                                      path});
    }
    platform::Data bytes(static_cast<std::size_t>(status.st_size));
    std::size_t filled = 0;
    while (filled < bytes.size()) {
        const ssize_t got = ::read(file.get(), bytes.data() + filled, bytes.size() - filled);
        if (got == 0) {
            return tl::unexpected(Problem{"the file changes while it is read", path});
        }
        if (got > 0) {
            filled += static_cast<std::size_t>(got);
        } else if (errno != EINTR) {
            return tl::unexpected(problemOfErrno(errno, path));
        }
    }
    return bytes;
}

Result<void> writeNewFile(const DeviceRoot& root, const std::string& devicePath,
                          const platform::Data& bytes, const FileCalls& calls) {
    const FolderEntry entry = root.openParentToChange(devicePath);
    const Descriptor file(entry.folder.isOpen()
                              ? calls.openat(entry.folder.get(), entry.name.c_str(),
                                             O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC,
                                             kFileMode)
                              : -1);
    int error = file.isOpen() ? writeWhole(calls, file.get(), bytes.data(), bytes.size()) : errno;
    if (error == 0 && ::fchmod(file.get(), kFileMode) != 0) {
        error = errno;
    }
    if (error != 0) {
        return tl::unexpected(problemOfErrno(error, root.hostFolder() + devicePath));
    }
    return {};
}

}  // namespace

Result<std::shared_ptr<DeviceRoot>> createDeviceRoot(const std::string& hostFolder,
                                                     std::span<const InstalledFile> files,
                                                     const FileCalls& calls) {
    // Before anything is made.
    std::vector<platform::Data> contents;
    contents.reserve(files.size());
    for (const InstalledFile& file : files) {
        auto bytes = readHostFile(file.hostPath);
        if (!bytes) {
            return tl::unexpected(std::move(bytes.error()));
        }
        contents.push_back(std::move(*bytes));
    }
    const bool isNew = ::mkdir(hostFolder.c_str(), kFolderMode) == 0;
    if (!isNew && errno != EEXIST) {
        return tl::unexpected(problemOfErrno(errno, hostFolder));
    }
    LaidOut device{hostFolder, isNew};
    device.folder = Descriptor(::open(hostFolder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (!device.folder.isOpen()) {
        return tl::unexpected(problemOfErrno(errno, hostFolder));
    }
    if (!isEmpty(device.folder.get())) {
        return tl::unexpected(
            Problem{"the folder is not empty; a new device needs an empty one", hostFolder});
    }
    if (auto made = makeFolders(device); !made) {
        return tl::unexpected(std::move(made.error()));
    }
    auto root = DeviceRoot::open(hostFolder);
    if (!root) {
        return root;
    }
    for (std::size_t i = 0; i < files.size(); ++i) {
        if (auto written = writeNewFile(**root, files[i].devicePath, contents[i], calls);
            !written) {
            return tl::unexpected(std::move(written.error()));
        }
    }
    device.isKept = true;
    return root;
}

Result<void> importFolder(const DeviceRoot& root, const std::string& hostFolder,
                          const std::string& devicePath, const FileCalls& calls) {
    // Opened first, so that the link that it may be is followed; "." of it is then what is copied.
    const Descriptor from(::open(hostFolder.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
    if (!from.isOpen()) {
        return tl::unexpected(problemOfErrno(errno, hostFolder));
    }
    const FolderEntry to = root.openParentToChange(devicePath);
    const int error =
        to.folder.isOpen() ? copyTree(calls, from.get(), ".", to.folder.get(), to.name) : errno;
    if (error != 0) {
        return tl::unexpected(problemOfErrno(error, devicePath));
    }
    return {};
}

}  // namespace velmoranth::desktop
