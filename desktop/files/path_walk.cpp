#include "desktop/files/path_walk.h"

#include "desktop/files/descriptor.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <climits>
#include <string_view>
#include <vector>

namespace velmoranth::desktop {
namespace {

constexpr int kMaxLinks = 40;  // the kernel's own limit (path_resolution(7))

// The components still to be walked, the next one last.
class Pending {
  public:
    void push(std::string_view path) {
        std::size_t end = path.size();
        while (end > 0) {
            const std::size_t slash = path.rfind('/', end - 1);
            const std::size_t start = slash == std::string_view::npos ? 0 : slash + 1;
            if (end > start) {
                components_.emplace_back(path.substr(start, end - start));
            }
            end = slash == std::string_view::npos ? 0 : slash;
        }
    }

    [[nodiscard]] bool empty() const { return components_.empty(); }

    std::string pop() {
        std::string component = std::move(components_.back());
        components_.pop_back();
        return component;
    }

  private:
    std::vector<std::string> components_;
};

class Walk {
  public:
    Walk(int root, int flags, unsigned mode) : root_(root), flags_(flags), mode_(mode) {}

    int run(const std::string& path) {
        if (path.empty()) {
            errno = ENOENT;
            return -1;
        }
        pending_.push(path);
        wantsFolder_ = path.back() == '/' || (flags_ & O_DIRECTORY) != 0;
        trailingSlash_ = path.back() == '/';
        while (!pending_.empty()) {
            const std::string name = pending_.pop();
            if (name == "." || name == "..") {
                if (name == ".." && !folders_.empty()) {
                    folders_.pop_back();
                }
                continue;
            }
            if (pending_.empty()) {
                const int result = openLast(name);
                if (result != kFollow) {
                    return result;
                }
            } else if (!enter(name)) {
                return -1;
            }
        }
        // The path ends in the root, "." or "..": a folder that is already there.
        if ((flags_ & O_CREAT) != 0) {
            errno = (flags_ & O_EXCL) != 0 ? EEXIST : EISDIR;
            return -1;
        }
        return ::openat(current(), ".", flags_ | O_CLOEXEC);
    }

  private:
    static constexpr int kFollow = -2;

    [[nodiscard]] int current() const { return folders_.empty() ? root_ : folders_.back().get(); }

    // Goes down into `name`, or puts a link's target in its place.
    bool enter(const std::string& name) {
        Descriptor found(::openat(current(), name.c_str(), O_PATH | O_NOFOLLOW | O_CLOEXEC));
        struct stat status{};
        if (!found.isOpen() || ::fstat(found.get(), &status) != 0) {
            return false;
        }
        if (S_ISLNK(status.st_mode)) {
            return follow(found.get());
        }
        if (!S_ISDIR(status.st_mode)) {
            errno = ENOTDIR;
            return false;
        }
        folders_.push_back(std::move(found));
        return true;
    }

    bool follow(int link) {
        if (++links_ > kMaxLinks) {
            errno = ELOOP;
            return false;
        }
        std::array<char, PATH_MAX> target{};
        const ssize_t length = ::readlinkat(link, "", target.data(), target.size());
        if (length < 0) {
            return false;
        }
        if (length == 0 || static_cast<std::size_t>(length) == target.size()) {
            errno = length == 0 ? ENOENT : ENAMETOOLONG;
            return false;
        }
        if (target[0] == '/') {
            folders_.clear();
        }
        const std::string_view text(target.data(), static_cast<std::size_t>(length));
        if (pending_.empty() && text.back() == '/') {
            wantsFolder_ = true;
            trailingSlash_ = true;
        }
        pending_.push(text);
        return true;
    }

    // The descriptor, -1, or kFollow after a link was replaced by its target.
    int openLast(const std::string& name) {
        const bool creates = (flags_ & O_CREAT) != 0;
        if (creates && trailingSlash_) {
            errno = EISDIR;
            return -1;
        }
        Descriptor found(::openat(current(), name.c_str(), O_PATH | O_NOFOLLOW | O_CLOEXEC));
        if (!found.isOpen()) {
            if (errno == ENOENT && creates) {
                return openHere(name);
            }
            return -1;
        }
        struct stat status{};
        if (::fstat(found.get(), &status) != 0) {
            return -1;
        }
        if (S_ISLNK(status.st_mode)) {
            if (creates && (flags_ & O_EXCL) != 0) {
                errno = EEXIST;
                return -1;
            }
            // A slash behind a link asks for what it points to, whatever O_NOFOLLOW says.
            if ((flags_ & O_NOFOLLOW) == 0 || trailingSlash_) {
                return follow(found.get()) ? kFollow : -1;
            }
        }
        if (wantsFolder_ && !S_ISDIR(status.st_mode)) {
            errno = ENOTDIR;
            return -1;
        }
        if ((flags_ & O_PATH) != 0) {
            return found.release();
        }
        return openHere(name);
    }

    int openHere(const std::string& name) {
        return ::openat(current(), name.c_str(), flags_ | O_NOFOLLOW | O_CLOEXEC, mode_);
    }

    int root_;
    int flags_;
    unsigned mode_;
    bool wantsFolder_ = false;
    bool trailingSlash_ = false;
    int links_ = 0;
    Pending pending_;
    // The folders entered so far, so that ".." goes back the way that was come, whatever is moved
    // meanwhile.
    std::vector<Descriptor> folders_;
};

}  // namespace

int openByWalk(int root, const std::string& path, int flags, unsigned mode) {
    return Walk(root, flags, mode).run(path);
}

}  // namespace velmoranth::desktop
