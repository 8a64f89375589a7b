#include "desktop/files/replacement.h"

#include "desktop/files/file_tree.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <optional>

namespace velmoranth::desktop {

int Replacement::write(std::span<const std::uint8_t> bytes, mode_t mode) {
    static std::atomic<unsigned> counter = 0;
    // A name that is taken was left by a process of our number that was killed: it goes.
    do {
        name_ = ".dat.nosync" + std::to_string(::getpid()) + "." + std::to_string(++counter);
        // Known to the clean-up before there is such a file, by a path that no renaming changes.
        temporary_ = std::make_unique<RemovedAtEnd>("/proc/self/fd/" +
                                                    std::to_string(folder_.get()) + "/" + name_);
        file_ = Descriptor(calls_->openat(folder_.get(), name_.c_str(),
                                          O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, mode));
    } while (!file_.isOpen() && errno == EEXIST);
    return file_.isOpen() ? writeWhole(*calls_, file_.get(), bytes.data(), bytes.size()) : errno;
}

std::optional<mode_t> Replacement::modeOf(const std::string& name) const {
    struct stat old{};
    if (::fstatat(folder_.get(), name.c_str(), &old, AT_SYMLINK_NOFOLLOW) != 0 ||
        !S_ISREG(old.st_mode)) {
        return std::nullopt;
    }
    return old.st_mode & 07777U;
}

int Replacement::setMode(mode_t mode) const {
    return ::fchmod(file_.get(), mode) == 0 ? 0 : errno;
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
    const std::optional<mode_t> mode = replacement.modeOf(name);
    // Nobody reads it meanwhile who may not read the one that it replaces.
    int error = replacement.write(bytes, mode.value_or(0666) & 0666U);
    error = error != 0 || !mode ? error : replacement.setMode(*mode);
    error = error != 0 ? error : replacement.sync();
    return error != 0 ? error : replacement.place(name);
}

}  // namespace velmoranth::desktop
