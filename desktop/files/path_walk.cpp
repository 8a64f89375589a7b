#include "desktop/files/path_walk.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <climits>
#include <cstddef>
#include <string_view>
#include <utility>
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
    Walk(int root, std::span<const OpenGraft> grafts, int flags, unsigned mode)
        : root_(root), grafts_(grafts), flags_(flags), mode_(mode) {}

    Walked run(const std::string& path) {
        Descriptor item(open(path));
        return {std::move(item), std::move(place_), isGrafted()};
    }

  private:
    static constexpr int kFollow = -2;

    // A folder that was entered.
    struct Step {
        Descriptor folder;
        std::size_t placeBefore;  // the length of the path that led to it
        bool isGraft;
    };

    int open(const std::string& path) {
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
                if (name == ".." && !steps_.empty()) {
                    leave();
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
        return openFolder();
    }

    [[nodiscard]] int current() const {
        return steps_.empty() ? root_ : steps_.back().folder.get();
    }

    [[nodiscard]] bool isGrafted() const { return graftsEntered_ > 0; }

    // What is grafted in the place of `name`; -1 for nothing.
    [[nodiscard]] int graftAt(const std::string& name) const {
        for (const OpenGraft& graft : grafts_) {
            if (graft.place.size() == place_.size() + 1 + name.size() &&
                graft.place.starts_with(place_) && graft.place.ends_with("/" + name)) {
                return graft.folder.get();
            }
        }
        return -1;
    }

    void step(Descriptor folder, const std::string& name, bool isGraft) {
        steps_.push_back({std::move(folder), place_.size(), isGraft});
        graftsEntered_ += isGraft ? 1 : 0;
        place_ += "/" + name;
    }

    void leave() {
        place_.resize(steps_.back().placeBefore);
        graftsEntered_ -= steps_.back().isGraft ? 1 : 0;
        steps_.pop_back();
    }

    // Goes down into `name`, or puts a link's target in its place.
    bool enter(const std::string& name) {
        if (const int grafted = graftAt(name); grafted >= 0) {
            Descriptor folder(::openat(grafted, ".", O_PATH | O_CLOEXEC));
            if (!folder.isOpen()) {
                return false;
            }
            step(std::move(folder), name, true);
            return true;
        }
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
        step(std::move(found), name, false);
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
            while (!steps_.empty()) {
                leave();
            }
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
        if (const int grafted = graftAt(name); grafted >= 0) {
            if (creates) {
                errno = (flags_ & O_EXCL) != 0 ? EEXIST : EISDIR;
                return -1;
            }
            return enter(name) ? openFolder() : -1;
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
            place_ += "/" + name;
            return found.release();
        }
        if (isGrafted() && creates && (flags_ & O_EXCL) != 0) {
            errno = EEXIST;
            return -1;
        }
        return isGrafted() ? readHere(name, S_ISDIR(status.st_mode)) : openHere(name);
    }

    // The folder that was entered last.
    int openFolder() {
        return isGrafted() && refuses(true) ? -1 : ::openat(current(), ".", flags_ | O_CLOEXEC);
    }

    // Whether the flags ask for more than reading what is there; with errno set.
    [[nodiscard]] bool refuses(bool isFolder) const {
        if ((flags_ & O_PATH) != 0) {
            return false;
        }
        const bool isUnnamed = (flags_ & O_TMPFILE) == O_TMPFILE;
        const bool writes = (flags_ & O_ACCMODE) != O_RDONLY || (flags_ & O_TRUNC) != 0;
        if (isFolder && !isUnnamed && (writes || (flags_ & O_CREAT) != 0)) {
            errno = EISDIR;
            return true;
        }
        errno = EROFS;
        return isUnnamed || writes;
    }

    // Of the tree itself; in a graft nothing is made.
    int openHere(const std::string& name) {
        if (isGrafted()) {
            errno = EROFS;
            return -1;
        }
        place_ += "/" + name;
        return ::openat(current(), name.c_str(), flags_ | O_NOFOLLOW | O_CLOEXEC, mode_);
    }

    // What is in a graft. It may go until it is opened, and is not made then.
    int readHere(const std::string& name, bool isFolder) {
        if (refuses(isFolder)) {
            return -1;
        }
        place_ += "/" + name;
        return ::openat(current(), name.c_str(), (flags_ & ~O_CREAT) | O_NOFOLLOW | O_CLOEXEC);
    }

    int root_;
    std::span<const OpenGraft> grafts_;
    int flags_;
    unsigned mode_;
    bool wantsFolder_ = false;
    bool trailingSlash_ = false;
    int links_ = 0;
    Pending pending_;
    // The folders entered so far, so that ".." goes back the way that was come, whatever is moved
    // meanwhile.
    std::vector<Step> steps_;
    std::string place_;  // their names
    int graftsEntered_ = 0;
};

}  // namespace

Walked openByWalk(int root, std::span<const OpenGraft> grafts, const std::string& path, int flags,
                  unsigned mode) {
    return Walk(root, grafts, flags, mode).run(path);
}

}  // namespace velmoranth::desktop
