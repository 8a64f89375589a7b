#include "desktop/files/device_root.h"

#include <fcntl.h>
#include <linux/openat2.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstdint>
#include <optional>
#include <string_view>
#include <utility>

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

// openat2 below `root`, resolved as `resolve` says. The library has no wrapper for it.
int openInRoot(int root, const char* path, int flags, unsigned mode,
               std::uint64_t resolve = RESOLVE_IN_ROOT) {
    open_how how{};
    how.flags = static_cast<std::uint64_t>(flags | O_CLOEXEC);
    how.mode = (flags & O_CREAT) != 0 ? mode & 07777U : 0U;  // refuses a mode that has no use
    how.resolve = resolve;
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

Descriptor openHostFolder(const std::string& path) {
    return Descriptor(isPath(path) ? ::open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC) : -1);
}

// Whether the path is absolute and says itself where it leads as long as no link is in the way.
bool isPlain(const std::string& path) {
    return path.starts_with('/') && path.find("//") == std::string::npos &&
           path.find("/.") == std::string::npos;
}

// What of a plain path lies behind the place; nothing when it does not lead there.
std::optional<std::string_view> behind(std::string_view place, std::string_view path) {
    if (!path.starts_with(place) || (path.size() > place.size() && path[place.size()] != '/')) {
        return std::nullopt;
    }
    path.remove_prefix(place.size());
    return path;
}

}  // namespace

Result<std::shared_ptr<DeviceRoot>> DeviceRoot::open(const DeviceFiles& files,
                                                     PathResolution resolution) {
    Descriptor descriptor = openHostFolder(files.folder);
    if (!descriptor.isOpen()) {
        return tl::unexpected(problemOfErrno(errno, files.folder));
    }
    const bool inKernel =
        resolution == PathResolution::automatic && kernelResolves(descriptor.get());
    std::shared_ptr<DeviceRoot> root(new DeviceRoot(files, std::move(descriptor), inKernel));
    std::vector<OpenGraft> grafts;
    for (const Graft& graft : files.grafts) {
        auto opened = root->openGraft(graft);
        if (!opened) {
            return tl::unexpected(std::move(opened.error()));
        }
        grafts.push_back(std::move(*opened));
    }
    root->grafts_ = std::move(grafts);
    return root;
}

DeviceRoot::DeviceRoot(DeviceFiles files, Descriptor descriptor, bool inKernel)
    : files_(std::move(files)), descriptor_(std::move(descriptor)), inKernel_(inKernel) {}

DeviceRoot::~DeviceRoot() = default;

Result<OpenGraft> DeviceRoot::openGraft(const Graft& graft) const {
    const std::size_t slash = graft.place.rfind('/');
    if (!isPlain(graft.place) || slash + 1 == graft.place.size() || !isPath(graft.place)) {
        return tl::unexpected(Problem{"nothing can be grafted there", graft.place});
    }
    const Walked parent = openByWalk(descriptor_.get(), {}, graft.place.substr(0, slash + 1),
                                     O_PATH | O_DIRECTORY, 0);
    if (!parent.item.isOpen()) {
        return tl::unexpected(problemOfErrno(errno, graft.place));
    }
    OpenGraft opened{parent.place + graft.place.substr(slash), openHostFolder(graft.folder)};
    if (!opened.folder.isOpen()) {
        return tl::unexpected(problemOfErrno(errno, graft.folder));
    }
    return opened;
}

Walked DeviceRoot::walk(const std::string& devicePath, int flags, unsigned mode) const {
    return isPath(devicePath) ? openByWalk(descriptor_.get(), grafts_, devicePath, flags, mode)
                              : Walked();
}

int DeviceRoot::openFile(const std::string& devicePath, int flags, unsigned mode) const {
    if (!isPath(devicePath)) {
        return -1;
    }
    if (inKernel_ && grafts_.empty()) {
        return openInRoot(descriptor_.get(), devicePath.c_str(), flags, mode);
    }
    // What the kernel can do alone is done at once: a path that says where it leads, as long as it
    // meets no link.
    constexpr int kMore = O_ACCMODE | O_CREAT | O_TRUNC | (O_TMPFILE & ~O_DIRECTORY);
    if (inKernel_ && (flags & kMore) == O_RDONLY && isPlain(devicePath)) {
        int folder = descriptor_.get();
        const char* path = devicePath.c_str();
        for (const OpenGraft& graft : grafts_) {
            if (const auto inside = behind(graft.place, devicePath)) {
                folder = graft.folder.get();
                path = inside->empty() ? "/" : inside->data();
            }
        }
        const int item =
            openInRoot(folder, path, flags, mode, RESOLVE_IN_ROOT | RESOLVE_NO_SYMLINKS);
        if (item >= 0 || errno != ELOOP) {
            return item;
        }
    }
    return walk(devicePath, flags, mode).item.release();
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

namespace {

// A path as the folder that its last component stands in, and that component.
struct SplitPath {
    std::string folder;
    std::string name;
};

SplitPath split(const std::string& devicePath) {
    std::string path = devicePath;
    while (!path.empty() && path.back() == '/') {
        path.pop_back();
    }
    const std::size_t slash = path.rfind('/');
    std::string name = slash == std::string::npos ? path : path.substr(slash + 1);
    // A name that stands for a folder elsewhere is looked up as a whole: ".." used by itself below
    // the root's own descriptor would leave it.
    if (name.empty() || name == "." || name == "..") {
        return {devicePath, "."};
    }
    return {slash == std::string::npos ? "." : path.substr(0, slash + 1), std::move(name)};
}

}  // namespace

FolderEntry DeviceRoot::openParent(const std::string& devicePath) const {
    SplitPath path = split(devicePath);
    if (!isPath(devicePath)) {
        return {Descriptor(), std::move(path.name)};
    }
    return {Descriptor(openFile(path.folder, O_PATH | O_DIRECTORY)), std::move(path.name)};
}

FolderEntry DeviceRoot::openParentToChange(const std::string& devicePath) const {
    if (grafts_.empty()) {
        return openParent(devicePath);
    }
    SplitPath path = split(devicePath);
    if (!isPath(devicePath)) {
        return {Descriptor(), std::move(path.name)};
    }
    Walked parent = walk(path.folder, O_PATH | O_DIRECTORY);
    const std::string place = parent.place + (path.name == "." ? "" : "/" + path.name);
    const bool leadsToGraft = std::ranges::any_of(
        grafts_, [&](const OpenGraft& graft) { return behind(place, graft.place).has_value(); });
    if (parent.item.isOpen() && (parent.isGrafted || leadsToGraft)) {
        parent.item = Descriptor();
        errno = leadsToGraft ? EBUSY : EROFS;
    }
    return {std::move(parent.item), std::move(path.name)};
}

int DeviceRoot::makeFolder(const std::string& devicePath, unsigned mode) const {
    const FolderEntry place = openParentToChange(devicePath);
    if (place.folder.isOpen()) {
        return ::mkdirat(place.folder.get(), place.name.c_str(), mode) == 0 ? 0 : errno;
    }
    const int error = errno;
    const bool isKept = error == EROFS || error == EBUSY;
    return isKept && Descriptor(openFile(devicePath, O_PATH | O_NOFOLLOW)).isOpen() ? EEXIST
                                                                                    : error;
}

int DeviceRoot::changeMode(const std::string& devicePath, unsigned mode) const {
    constexpr unsigned kPermissionBits = 07777;
    // The item is opened as a place only, which asks for no right to read it, and is then named by
    // its descriptor: a mode cannot be changed through such a descriptor itself.
    const Walked item = grafts_.empty()
                            ? Walked{Descriptor(openFile(devicePath, O_PATH)), {}, false}
                            : walk(devicePath, O_PATH);
    if (!item.item.isOpen()) {
        return errno;
    }
    if (item.isGrafted) {
        return EROFS;
    }
    const std::string name = "/proc/self/fd/" + std::to_string(item.item.get());
    return ::chmod(name.c_str(), mode & kPermissionBits) == 0 ? 0 : errno;
}

}  // namespace velmoranth::desktop
