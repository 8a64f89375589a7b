#include "desktop/files/file_tree.h"

#include "desktop/files/descriptor.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <climits>
#include <cstring>
#include <memory>
#include <string_view>
#include <utility>
#include <vector>

namespace velmoranth::desktop {
namespace {

constexpr int kMaxDepth = 256;  // folders in folders; each level holds two descriptors
constexpr std::size_t kChunk = 256 * 1024;
constexpr std::size_t kMaxAttribute = 64 * 1024;  // the kernel's own limit of a list and of a value

struct CloseFolder {
    void operator()(DIR* folder) const { ::closedir(folder); }
};

std::array<timespec, 2> timesOf(const struct stat& status) {
    return {status.st_atim, status.st_mtim};
}

// Best effort: not every file system has attributes, nor every user the right to each of them.
void copyAttributes(int from, int to) {
    std::vector<char> names(kMaxAttribute);
    const ssize_t length = ::flistxattr(from, names.data(), names.size());
    if (length <= 0) {
        return;
    }
    std::vector<char> value(kMaxAttribute);
    for (const char* name = names.data(); name < names.data() + length;
         name += std::strlen(name) + 1) {
        const ssize_t size = ::fgetxattr(from, name, value.data(), value.size());
        if (size >= 0) {
            static_cast<void>(
                ::fsetxattr(to, name, value.data(), static_cast<std::size_t>(size), 0));
        }
    }
}

// Owner first: changing it takes the set-id bits away.
int copyMetadata(int from, const struct stat& status, int to) {
    copyAttributes(from, to);
    if (::fchown(to, status.st_uid, status.st_gid) != 0 && errno != EPERM) {
        return errno;
    }
    if (::fchmod(to, status.st_mode & 07777U) != 0 || ::futimens(to, timesOf(status).data()) != 0) {
        return errno;
    }
    return 0;
}

class TreeCopy {
  public:
    explicit TreeCopy(const FileCalls& calls) : calls_(calls) {}

    int copy(int folder, const std::string& name, int newFolder, const std::string& newName,
             int depth) {
        struct stat status{};
        if (::fstatat(folder, name.c_str(), &status, AT_SYMLINK_NOFOLLOW) != 0) {
            return errno;
        }
        if (hasTarget_ && status.st_dev == target_.st_dev && status.st_ino == target_.st_ino) {
            return 0;  // the copy itself, made inside what is being copied
        }
        switch (status.st_mode & S_IFMT) {
            case S_IFLNK:
                return copyLink(folder, name, status, newFolder, newName);
            case S_IFREG:
                return copyFile(folder, name, newFolder, newName);
            case S_IFDIR:
                return copyFolder(folder, name, newFolder, newName, depth);
            default:
                return ENOTSUP;  // pipes, sockets and devices
        }
    }

  private:
    static int copyLink(int folder, const std::string& name, const struct stat& status,
                        int newFolder, const std::string& newName) {
        std::array<char, PATH_MAX> target{};
        const ssize_t length = ::readlinkat(folder, name.c_str(), target.data(), target.size() - 1);
        if (length < 0 || ::symlinkat(target.data(), newFolder, newName.c_str()) != 0) {
            return errno;
        }
        static_cast<void>(::fchownat(newFolder, newName.c_str(), status.st_uid, status.st_gid,
                                     AT_SYMLINK_NOFOLLOW));
        const auto times = timesOf(status);
        return ::utimensat(newFolder, newName.c_str(), times.data(), AT_SYMLINK_NOFOLLOW) == 0
                   ? 0
                   : errno;
    }

    int copyFile(int folder, const std::string& name, int newFolder, const std::string& newName) {
        const Descriptor from(
            calls_.openat(folder, name.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC, 0));
        struct stat status{};
        if (!from.isOpen() || ::fstat(from.get(), &status) != 0) {
            return errno;
        }
        const Descriptor to(calls_.openat(newFolder, newName.c_str(),
                                          O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC,
                                          S_IRUSR | S_IWUSR));
        if (!to.isOpen()) {
            return errno;
        }
        const int error = copyBytes(from.get(), to.get());
        return error != 0 ? error : copyMetadata(from.get(), status, to.get());
    }

    int copyBytes(int from, int to) {
        buffer_.resize(kChunk);
        for (;;) {
            const ssize_t got = ::read(from, buffer_.data(), buffer_.size());
            if (got == 0) {
                return 0;
            }
            if (got < 0) {
                if (errno == EINTR) {
                    continue;
                }
                return errno;
            }
            const int error = writeWhole(calls_, to, buffer_.data(), static_cast<std::size_t>(got));
            if (error != 0) {
                return error;
            }
        }
    }

    int copyFolder(int folder, const std::string& name, int newFolder, const std::string& newName,
                   int depth) {
        if (depth >= kMaxDepth) {
            return ENAMETOOLONG;
        }
        const Descriptor from(
            ::openat(folder, name.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
        struct stat status{};
        if (!from.isOpen() || ::fstat(from.get(), &status) != 0 ||
            ::mkdirat(newFolder, newName.c_str(), S_IRWXU) != 0) {
            return errno;
        }
        const Descriptor to(
            ::openat(newFolder, newName.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
        if (!to.isOpen()) {
            return errno;
        }
        if (!hasTarget_) {
            hasTarget_ = ::fstat(to.get(), &target_) == 0;
        }
        std::vector<std::string> names;
        int error = namesIn(from.get(), names);
        for (std::size_t i = 0; error == 0 && i < names.size(); ++i) {
            error = copy(from.get(), names[i], to.get(), names[i], depth + 1);
        }
        return error != 0 ? error : copyMetadata(from.get(), status, to.get());
    }

    const FileCalls& calls_;
    std::vector<char> buffer_;
    // The folder that the copy of the whole became.
    bool hasTarget_ = false;
    struct stat target_{};
};

int removeAtDepth(int folder, const std::string& name, int depth) {
    if (::unlinkat(folder, name.c_str(), 0) == 0) {
        return 0;
    }
    // What removing a folder as a file says differs: EISDIR here, EPERM elsewhere.
    const int asFile = errno;
    if (asFile != EISDIR && asFile != EPERM) {
        return asFile;
    }
    const Descriptor here(
        ::openat(folder, name.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
    if (!here.isOpen()) {
        return errno == ENOTDIR ? asFile : errno;
    }
    if (depth >= kMaxDepth) {
        return ENAMETOOLONG;
    }
    std::vector<std::string> names;
    int error = namesIn(here.get(), names);
    for (std::size_t i = 0; error == 0 && i < names.size(); ++i) {
        error = removeAtDepth(here.get(), names[i], depth + 1);
    }
    if (error != 0) {
        return error;
    }
    return ::unlinkat(folder, name.c_str(), AT_REMOVEDIR) == 0 ? 0 : errno;
}

// Calls with each entry but "." and ".." until one is no 0; that, or the errno of reading.
template <class Call>
int forEachEntry(int folder, const Call& call) {
    // A descriptor of its own: the stream closes the one it is given.
    Descriptor own(::openat(folder, ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    const std::unique_ptr<DIR, CloseFolder> stream(own.isOpen() ? ::fdopendir(own.get()) : nullptr);
    if (stream == nullptr) {
        return errno;
    }
    static_cast<void>(own.release());
    for (;;) {
        errno = 0;
        const dirent* const entry = ::readdir(stream.get());
        if (entry == nullptr) {
            return errno;
        }
        const std::string_view name = static_cast<const char*>(entry->d_name);
        if (name == "." || name == "..") {
            continue;
        }
        if (const int error = call(*entry); error != 0) {
            return error;
        }
    }
}

// What the entry is, as the folder says it or, where that does not, the item itself.
mode_t kindOf(int folder, const dirent& entry) {
    if (entry.d_type != DT_UNKNOWN) {
        return static_cast<mode_t>(DTTOIF(entry.d_type));
    }
    struct stat status{};
    return ::fstatat(folder, static_cast<const char*>(entry.d_name), &status,
                     AT_SYMLINK_NOFOLLOW) == 0
               ? status.st_mode & S_IFMT
               : 0;
}

int addFilesBelow(int folder, const std::string& above, int depth,
                  std::vector<std::string>& files) {
    return forEachEntry(folder, [&](const dirent& entry) {
        const std::string name = static_cast<const char*>(entry.d_name);
        const mode_t kind = kindOf(folder, entry);
        if (S_ISREG(kind)) {
            files.push_back(above + name);
        }
        if (!S_ISDIR(kind)) {
            return 0;
        }
        if (depth >= kMaxDepth) {
            return ENAMETOOLONG;
        }
        const Descriptor below(
            ::openat(folder, name.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
        return below.isOpen() ? addFilesBelow(below.get(), above + name + "/", depth + 1, files)
                              : errno;
    });
}

}  // namespace

int namesIn(int folder, std::vector<std::string>& names) {
    return forEachEntry(folder, [&](const dirent& entry) {
        names.emplace_back(static_cast<const char*>(entry.d_name));
        return 0;
    });
}

int filesBelow(int folder, std::vector<std::string>& files) {
    return addFilesBelow(folder, "", 0, files);
}

int copyTree(const FileCalls& calls, int folder, const std::string& name, int newFolder,
             const std::string& newName) {
    return TreeCopy(calls).copy(folder, name, newFolder, newName, 0);
}

int removeTree(int folder, const std::string& name) {
    return removeAtDepth(folder, name, 0);
}

int writeWhole(const FileCalls& calls, int file, const void* bytes, std::size_t count) {
    const char* rest = static_cast<const char*>(bytes);
    while (count > 0) {
        const ssize_t written = calls.write(file, rest, count);
        if (written < 0) {
            if (errno == EINTR) {
                continue;
            }
            return errno;
        }
        rest += written;
        count -= static_cast<std::size_t>(written);
    }
    return 0;
}

}  // namespace velmoranth::desktop
