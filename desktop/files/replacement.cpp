#include "desktop/files/replacement.h"

#include "desktop/files/file_tree.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <optional>
#include <random>

namespace velmoranth::desktop {

int Replacement::write(std::span<const std::uint8_t> bytes, mode_t mode) {
    std::random_device random;
    // The process's number alone is no name: containers that share a folder have the same ones.
    for (int attempt = 0; attempt < 10 && !file_.isOpen(); ++attempt) {
        name_ = ".dat.nosync" + std::to_string(::getpid()) + "." + std::to_string(random());
        // Known to the clean-up before there is such a file, by a path that no renaming changes.
        temporary_ = std::make_unique<RemovedAtEnd>("/proc/self/fd/" +
                                                    std::to_string(folder_.get()) + "/" + name_);
        file_ = Descriptor(calls_->openat(folder_.get(), name_.c_str(),
                                          O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, mode));
        if (!file_.isOpen()) {
            const int error = errno;
            temporary_->keep();  // not ours: nothing was made, or another has the name
            if (error != EEXIST) {
                return error;
            }
        }
    }
    return file_.isOpen() ? writeWhole(*calls_, file_.get(), bytes.data(), bytes.size()) : EEXIST;
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
    // EINVAL: a file system that has nothing to bring to a disk.
    return calls_->fsync(file_.get()) == 0 || errno == EINVAL ? 0 : errno;
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
