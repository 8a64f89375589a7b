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

// Takes back what was laid out unless it is kept. Best effort: why it is taken back is what counts.
class LaidOut {
  public:
    LaidOut(std::string hostFolder, bool isNew)
        : hostFolder_(std::move(hostFolder)), isNew_(isNew) {}

    LaidOut(const LaidOut&) = delete;
    LaidOut& operator=(const LaidOut&) = delete;

    ~LaidOut() {
        if (isKept_) {
            return;
        }
        for (const std::string& name : names_) {
            static_cast<void>(removeTree(folder_.get(), name));
        }
        if (isNew_) {
            ::rmdir(hostFolder_.c_str());
        }
    }

    // The folder that names are in.
    void open(Descriptor folder) { folder_ = std::move(folder); }

    [[nodiscard]] int folder() const { return folder_.get(); }

    // A name at the top has been made here.
    void made(const std::string& name) {
        if (name.find('/') == std::string::npos) {
            names_.push_back(name);
        }
    }

    void keep() { isKept_ = true; }

  private:
    std::string hostFolder_;
    bool isNew_;
    bool isKept_ = false;
    Descriptor folder_;
    std::vector<std::string> names_;
};

Result<void> makeFolders(LaidOut& device, const std::string& hostFolder) {
    for (const char* const name : kFolders) {
        if (::mkdirat(device.folder(), name, kFolderMode) != 0) {
            return tl::unexpected(problemOfErrno(errno, hostFolder + "/" + name));
        }
        device.made(name);
        // No link can be there: it has just been made.
        if (::fchmodat(device.folder(), name, kFolderMode, 0) != 0) {
            return tl::unexpected(problemOfErrno(errno, hostFolder + "/" + name));
        }
    }
    for (const Link& link : kLinks) {
        if (::symlinkat(link.target, device.folder(), link.name) != 0) {
            return tl::unexpected(problemOfErrno(errno, hostFolder + "/" + link.name));
        }
        device.made(link.name);
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
    const FolderEntry entry = root.openParent(devicePath);
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
    LaidOut device(hostFolder, isNew);
    device.open(Descriptor(::open(hostFolder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)));
    if (device.folder() < 0) {
        return tl::unexpected(problemOfErrno(errno, hostFolder));
    }
    if (!isEmpty(device.folder())) {
        return tl::unexpected(
            Problem{"the folder is not empty; a new device needs an empty one", hostFolder});
    }
    if (auto made = makeFolders(device, hostFolder); !made) {
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
    device.keep();
    return root;
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
