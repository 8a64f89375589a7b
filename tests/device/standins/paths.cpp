// Leads the phone's paths into a folder of this machine: each of the C library's calls that take a
// path is defined here too, ahead of its own, and passes the path on as it is on this machine.
#include "device/standins/journal.h"
#include "device/standins/system.h"
#include "record/operations.h"
#include "record/words.h"
#include <dlfcn.h>
#include <limits.h>
#include <stdlib.h>
#include <string.h>
#include <sys/types.h>
#include <time.h>

#include <atomic>
#include <string>
#include <string_view>

namespace {

// What the phone has that this machine has not, or has otherwise.
constexpr std::string_view kPhoneFolders[] = {
    "/Applications", "/Library",        "/System",     "/User",
    "/private",      "/var/containers", "/var/mobile", "/var/root",
};

struct Alias {
    std::string_view link;
    std::string_view target;
};

constexpr Alias kAliases[] = {{"/private/var", "/var"}, {"/User", "/var/mobile"}};

// Null for none. Set by a test; those that it replaces are kept, as someone may be reading them.
std::atomic<const std::string*> phoneRoot{nullptr};

bool isInside(std::string_view path, std::string_view folder) {
    return path.starts_with(folder) && (path.size() == folder.size() || path[folder.size()] == '/');
}

std::string hostPath(const char* path) {
    const std::string* const root = phoneRoot.load();
    std::string text = path;
    if (root == nullptr || !text.starts_with('/')) {
        return text;
    }
    while (text.starts_with("//")) {
        text.erase(0, 1);
    }
    bool isPhones = false;
    for (const std::string_view folder : kPhoneFolders) {
        isPhones = isPhones || isInside(text, folder);
    }
    if (!isPhones) {
        return text;
    }
    for (const Alias& alias : kAliases) {
        if (isInside(text, alias.link)) {
            text.replace(0, alias.link.size(), alias.target);
        }
    }
    return *root + text;
}

// A path on this machine for the length of a call.
class Host {
  public:
    explicit Host(const char* path)
        : isNull_(path == nullptr), path_(isNull_ ? "" : hostPath(path)) {}

    operator const char*() const {  // NOLINT(google-explicit-constructor): an argument of a call
        return isNull_ ? nullptr : path_.c_str();
    }

    [[nodiscard]] char* data() { return path_.data(); }

  private:
    bool isNull_;
    std::string path_;
};

// The C library's own call of that name.
template <class Signature>
Signature* nextOf(const char* name) {
    return reinterpret_cast<Signature*>(dlsym(RTLD_NEXT, name));
}

// What realpath() found, as the phone would call it. `resolved` has room for PATH_MAX.
char* phonePath(char* resolved) {
    const std::string* const root = phoneRoot.load();
    if (resolved != nullptr && root != nullptr && isInside(resolved, *root)) {
        const std::string inside = std::string(resolved).substr(root->size());
        strcpy(resolved, inside.empty() ? "/" : inside.c_str());
    }
    return resolved;
}

// Takes down what the phone's process does to a file of its own and with which mode; the tests' own
// paths are this machine's.
int noted(std::string_view function, const char* path, mode_t mode, int result) {
    const bool isHosts = path == nullptr || (*path == '/' && hostPath(path) == path);
    if (velmoranth::standins::filesAreRecorded() && !isHosts) {
        velmoranth::standins::note({.kind = velmoranth::record::EntryKind::written,
                                    .message = std::string(function),
                                    .subject = path,
                                    .arguments = {velmoranth::record::wordsOfMode(mode)},
                                    .answer = std::to_string(result)});
    }
    return result;
}

// For the calls that make a name up in place of the template's last six letters.
template <class Call>
auto withTemplate(char* path, Call call) {
    Host host(path);
    const auto result = call(host.data());
    const std::string_view made(host);
    memcpy(path + strlen(path) - 6, made.data() + made.size() - 6, 6);
    return result;
}

}  // namespace

namespace velmoranth::standins {

void setPhoneRoot(const std::string& folder) {
    if (folder.empty()) {
        phoneRoot = nullptr;
        return;
    }
    char* const resolved = ::realpath(folder.c_str(), nullptr);
    phoneRoot = new std::string(resolved == nullptr ? folder.c_str() : resolved);
    free(resolved);
}

std::string placeOf(const std::string& path) {
    return hostPath(path.c_str());
}

}  // namespace velmoranth::standins

// The headers declare these calls in ways that differ between themselves and from here, so each is
// defined under a name of its own and only called as the C library's is.
#define INTERPOSE(result, name, parameters, arguments)             \
    extern "C" result standIn_##name parameters __asm__(#name);    \
    extern "C" result standIn_##name parameters {                  \
        static const auto next = nextOf<result parameters>(#name); \
        return next arguments;                                     \
    }

using Path = const char*;

// Files. A mode that was not given is passed on unread.
INTERPOSE(int, open, (Path path, int flags, mode_t mode), (Host(path), flags, mode))
INTERPOSE(int, open64, (Path path, int flags, mode_t mode), (Host(path), flags, mode))
INTERPOSE(int, __open_2, (Path path, int flags), (Host(path), flags))
INTERPOSE(int, __open64_2, (Path path, int flags), (Host(path), flags))
INTERPOSE(int, openat, (int at, Path path, int flags, mode_t mode), (at, Host(path), flags, mode))
INTERPOSE(int, openat64, (int at, Path path, int flags, mode_t mode), (at, Host(path), flags, mode))
INTERPOSE(int, __openat_2, (int at, Path path, int flags), (at, Host(path), flags))
INTERPOSE(int, __openat64_2, (int at, Path path, int flags), (at, Host(path), flags))
INTERPOSE(int, creat, (Path path, mode_t mode), (Host(path), mode))
INTERPOSE(int, creat64, (Path path, mode_t mode), (Host(path), mode))
INTERPOSE(void*, fopen, (Path path, Path mode), (Host(path), mode))
INTERPOSE(void*, fopen64, (Path path, Path mode), (Host(path), mode))
INTERPOSE(void*, freopen, (Path path, Path mode, void* file), (Host(path), mode, file))
INTERPOSE(int, truncate, (Path path, off_t length), (Host(path), length))
INTERPOSE(int, truncate64, (Path path, off_t length), (Host(path), length))

// What is known of them.
INTERPOSE(int, stat, (Path path, void* found), (Host(path), found))
INTERPOSE(int, stat64, (Path path, void* found), (Host(path), found))
INTERPOSE(int, lstat, (Path path, void* found), (Host(path), found))
INTERPOSE(int, lstat64, (Path path, void* found), (Host(path), found))
INTERPOSE(int, fstatat, (int at, Path path, void* found, int flags), (at, Host(path), found, flags))
INTERPOSE(int, fstatat64, (int at, Path path, void* found, int flags),
          (at, Host(path), found, flags))
INTERPOSE(int, statx, (int at, Path path, int flags, unsigned mask, void* found),
          (at, Host(path), flags, mask, found))
INTERPOSE(int, access, (Path path, int mode), (Host(path), mode))
INTERPOSE(int, faccessat, (int at, Path path, int mode, int flags), (at, Host(path), mode, flags))
INTERPOSE(int, euidaccess, (Path path, int mode), (Host(path), mode))
INTERPOSE(int, eaccess, (Path path, int mode), (Host(path), mode))
INTERPOSE(int, statfs, (Path path, void* found), (Host(path), found))
INTERPOSE(int, statfs64, (Path path, void* found), (Host(path), found))
INTERPOSE(int, statvfs, (Path path, void* found), (Host(path), found))
INTERPOSE(int, statvfs64, (Path path, void* found), (Host(path), found))

// Changes to them.
INTERPOSE(int, fchmodat, (int at, Path path, mode_t mode, int flags), (at, Host(path), mode, flags))
INTERPOSE(int, chown, (Path path, uid_t user, gid_t group), (Host(path), user, group))
INTERPOSE(int, lchown, (Path path, uid_t user, gid_t group), (Host(path), user, group))
INTERPOSE(int, fchownat, (int at, Path path, uid_t user, gid_t group, int flags),
          (at, Host(path), user, group, flags))
INTERPOSE(int, utime, (Path path, const void* times), (Host(path), times))
INTERPOSE(int, utimes, (Path path, const void* times), (Host(path), times))
INTERPOSE(int, lutimes, (Path path, const void* times), (Host(path), times))
INTERPOSE(int, utimensat, (int at, Path path, const void* times, int flags),
          (at, Host(path), times, flags))
INTERPOSE(int, rename, (Path from, Path to), (Host(from), Host(to)))
INTERPOSE(int, renameat, (int fromAt, Path from, int toAt, Path to),
          (fromAt, Host(from), toAt, Host(to)))
INTERPOSE(int, renameat2, (int fromAt, Path from, int toAt, Path to, unsigned flags),
          (fromAt, Host(from), toAt, Host(to), flags))
INTERPOSE(int, unlink, (Path path), (Host(path)))
INTERPOSE(int, unlinkat, (int at, Path path, int flags), (at, Host(path), flags))
INTERPOSE(int, remove, (Path path), (Host(path)))
INTERPOSE(int, link, (Path from, Path to), (Host(from), Host(to)))
INTERPOSE(int, linkat, (int fromAt, Path from, int toAt, Path to, int flags),
          (fromAt, Host(from), toAt, Host(to), flags))
INTERPOSE(int, symlink, (Path target, Path path), (target, Host(path)))
INTERPOSE(int, symlinkat, (Path target, int at, Path path), (target, at, Host(path)))
INTERPOSE(ssize_t, readlink, (Path path, char* target, size_t size), (Host(path), target, size))
INTERPOSE(ssize_t, readlinkat, (int at, Path path, char* target, size_t size),
          (at, Host(path), target, size))

// Folders.
INTERPOSE(int, mkdirat, (int at, Path path, mode_t mode), (at, Host(path), mode))
INTERPOSE(int, rmdir, (Path path), (Host(path)))
INTERPOSE(int, chdir, (Path path), (Host(path)))
INTERPOSE(void*, opendir, (Path path), (Host(path)))

extern "C" int standInChmod(Path path, mode_t mode) __asm__("chmod");

extern "C" int standInChmod(Path path, mode_t mode) {
    static const auto next = nextOf<int(Path, mode_t)>("chmod");
    return noted(velmoranth::record::messageOf("LibSystem", "chmod"), path, mode,
                 next(Host(path), mode));
}

extern "C" int standInMkdir(Path path, mode_t mode) __asm__("mkdir");

extern "C" int standInMkdir(Path path, mode_t mode) {
    static const auto next = nextOf<int(Path, mode_t)>("mkdir");
    return noted(velmoranth::record::messageOf("LibSystem", "mkdir"), path, mode,
                 next(Host(path), mode));
}

extern "C" char* standInRealpath(Path path, char* resolved) __asm__("realpath");

extern "C" char* standInRealpath(Path path, char* resolved) {
    static const auto next = nextOf<char*(Path, char*)>("realpath");
    return phonePath(next(Host(path), resolved));
}

extern "C" char* standInCheckedRealpath(Path path, char* resolved,
                                        size_t size) __asm__("__realpath_chk");

extern "C" char* standInCheckedRealpath(Path path, char* resolved, size_t size) {
    static const auto next = nextOf<char*(Path, char*, size_t)>("__realpath_chk");
    return phonePath(next(Host(path), resolved, size));
}

extern "C" int standInMkstemp(char* path) __asm__("mkstemp");

extern "C" int standInMkstemp(char* path) {
    return withTemplate(path, nextOf<int(char*)>("mkstemp"));
}

extern "C" int standInMkstemp64(char* path) __asm__("mkstemp64");

extern "C" int standInMkstemp64(char* path) {
    return withTemplate(path, nextOf<int(char*)>("mkstemp64"));
}

extern "C" char* standInMkdtemp(char* path) __asm__("mkdtemp");

extern "C" char* standInMkdtemp(char* path) {
    return withTemplate(path, nextOf<char*(char*)>("mkdtemp")) == nullptr ? nullptr : path;
}
