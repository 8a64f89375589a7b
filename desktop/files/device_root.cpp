#include "desktop/files/device_root.h"

#include "desktop/files/path_walk.h"

#include <fcntl.h>
#include <linux/openat2.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstdint>

namespace velmoranth::desktop {
namespace {

constexpr int kMaxTries = 64;  // of a look-up that something else's renaming disturbs

// Whether it can be a path; errno says why not. The system would end it at a NUL, so one with more
// behind that would lead elsewhere than it says.
bool isPath(const std::string& text) {
    errno = text.find('\0') != std::string::npos ? EINVAL
            : text.size() >= PATH_MAX            ? ENAMETOOLONG
                                                 : 0;
    return errno == 0;
}

// openat2 below `root` as in a changed root. The library has no wrapper for it.
int openInRoot(int root, const char* path, int flags, unsigned mode) {
    open_how how{};
    how.flags = static_cast<std::uint64_t>(flags | O_CLOEXEC);
    how.mode = (flags & O_CREAT) != 0 ? mode & 07777U : 0U;  // refuses a mode that has no use
    how.resolve = RESOLVE_IN_ROOT;
    for (int tries = 0;; ++tries) {
        const long result = ::syscall(SYS_openat2, root, path, &how, sizeof how);
        // EAGAIN: something was renamed while ".." was being resolved; the kernel asks to repeat.
        if (result >= 0 || (errno != EAGAIN && errno != EINTR) || tries == kMaxTries) {
            return static_cast<int>(result);
        }
    }
}

// Kernels before 5.6 do not have the call; sandboxes of older make refuse what they do not know.
bool kernelResolves(int root) {
    return Descriptor(openInRoot(root, ".", O_PATH | O_DIRECTORY, 0)).isOpen();
}

}  // namespace

Result<std::shared_ptr<DeviceRoot>> DeviceRoot::open(const std::string& hostFolder,
                                                     PathResolution resolution) {
    Descriptor descriptor(
        isPath(hostFolder) ? ::open(hostFolder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC) : -1);
    if (!descriptor.isOpen()) {
        return tl::unexpected(problemOfErrno(errno, hostFolder));
    }
    const bool inKernel =
        resolution == PathResolution::automatic && kernelResolves(descriptor.get());
    return std::shared_ptr<DeviceRoot>(new DeviceRoot(hostFolder, std::move(descriptor), inKernel));
}

DeviceRoot::DeviceRoot(std::string hostFolder, Descriptor descriptor, bool inKernel)
    : hostFolder_(std::move(hostFolder)), descriptor_(std::move(descriptor)), inKernel_(inKernel) {}

DeviceRoot::~DeviceRoot() = default;

int DeviceRoot::openFile(const std::string& devicePath, int flags, unsigned mode) const {
    if (!isPath(devicePath)) {
        return -1;
    }
    return inKernel_ ? openInRoot(descriptor_.get(), devicePath.c_str(), flags, mode)
                     : openByWalk(descriptor_.get(), devicePath, flags, mode);
}

Result<platform::Data> DeviceRoot::readFile(const std::string& devicePath,
                                            std::size_t maxBytes) const {
    // Not waiting: opening a named pipe must not stop the process.
    const Descriptor file(openFile(devicePath, O_RDONLY | O_NONBLOCK | O_NOCTTY));
    struct stat status{};
    if (!file.isOpen() || ::fstat(file.get(), &status) != 0) {
        return tl::unexpected(problemOfErrno(errno, devicePath));
    }
    if (!S_ISREG(status.st_mode)) {
        return tl::unexpected(Problem{"not a regular file", devicePath});
    }
    const Problem tooLarge{"the file is larger than " + std::to_string(maxBytes) + " bytes",
                           devicePath};
    if (static_cast<std::uint64_t>(status.st_size) > maxBytes) {
        return tl::unexpected(tooLarge);
    }
    // One byte more than the file says, so that its end is seen in one read and growing is noticed.
    platform::Data bytes(static_cast<std::size_t>(status.st_size) + 1);
    std::size_t length = 0;
    for (;;) {
        const ssize_t got = ::read(file.get(), bytes.data() + length, bytes.size() - length);
        if (got < 0 && errno != EINTR) {
            return tl::unexpected(problemOfErrno(errno, devicePath));
        }
        if (got == 0) {
            break;
        }
        length += static_cast<std::size_t>(std::max<ssize_t>(got, 0));
        if (length > maxBytes) {
            return tl::unexpected(tooLarge);
        }
        if (length == bytes.size()) {
            bytes.resize(std::min(bytes.size() * 2, maxBytes + 1));
        }
    }
    bytes.resize(length);
    return bytes;
}

FolderEntry DeviceRoot::openParent(const std::string& devicePath) const {
    std::string path = devicePath;
    while (!path.empty() && path.back() == '/') {
        path.pop_back();
    }
    const std::size_t slash = path.rfind('/');
    std::string name = slash == std::string::npos ? path : path.substr(slash + 1);
    // A name that stands for a folder elsewhere is looked up as a whole: ".." used by itself below
    // the root's own descriptor would leave it.
    if (name.empty() || name == "." || name == "..") {
        return {Descriptor(openFile(devicePath, O_PATH | O_DIRECTORY)), "."};
    }
    if (!isPath(path)) {
        return {Descriptor(), std::move(name)};
    }
    const std::string folder = slash == std::string::npos ? "." : path.substr(0, slash + 1);
    return {Descriptor(openFile(folder, O_PATH | O_DIRECTORY)), std::move(name)};
}

}  // namespace velmoranth::desktop
