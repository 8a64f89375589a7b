#include "desktop/files/replacement.h"

#include "desktop/files/file_tree.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>

namespace velmoranth::desktop {

int Replacement::write(std::span<const std::uint8_t> bytes) {
    static std::atomic<unsigned> counter = 0;
    // A name that is taken was left by a process of our number that was killed: it goes.
    do {
        name_ = ".dat.nosync" + std::to_string(::getpid()) + "." + std::to_string(++counter);
        // Known to the clean-up before there is such a file, by a path that no renaming changes.
        temporary_ = std::make_unique<RemovedAtEnd>("/proc/self/fd/" +
                                                    std::to_string(folder_.get()) + "/" + name_);
        file_ = Descriptor(calls_->openat(folder_.get(), name_.c_str(),
                                          O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666));
    } while (!file_.isOpen() && errno == EEXIST);
    return file_.isOpen() ? writeWhole(*calls_, file_.get(), bytes.data(), bytes.size()) : errno;
}

int Replacement::takeModeOf(const std::string& name) const {
    struct stat old{};
    if (::fstatat(folder_.get(), name.c_str(), &old, AT_SYMLINK_NOFOLLOW) != 0 ||
        !S_ISREG(old.st_mode)) {
        return 0;
    }
    return ::fchmod(file_.get(), old.st_mode & 07777U) == 0 ? 0 : errno;
}

int Replacement::sync() const {
    return calls_->fsync(file_.get()) == 0 ? 0 : errno;
}

int Replacement::place(const std::string& name) {
    if (calls_->renameat(folder_.get(), name_.c_str(), folder_.get(), name.c_str()) != 0) {
        return errno;
    }
    temporary_->keep();
    return 0;
}

int replaceFile(const FileCalls& calls, Descriptor folder, const std::string& name,
                std::span<const std::uint8_t> bytes) {
    Replacement replacement(calls, std::move(folder));
    int error = replacement.write(bytes);
    error = error != 0 ? error : replacement.takeModeOf(name);
    error = error != 0 ? error : replacement.sync();
    return error != 0 ? error : replacement.place(name);
}

}  // namespace velmoranth::desktop
