#include "desktop/files/replacement.h"

#include "desktop/files/file_tree.h"

#include <fcntl.h>
#include <sys/random.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <optional>

namespace velmoranth::desktop {

namespace {

// By the system's call: the library's device asks the processor what it can do, which takes as long
// as a small file where the processor is a virtual one.
std::uint32_t randomNumber() {
    std::uint32_t number = 0;
    return ::getrandom(&number, sizeof number, GRND_NONBLOCK) == sizeof number ? number : 0;
}

}  // namespace

int Replacement::write(std::span<const std::uint8_t> bytes, mode_t mode) {
    const std::uint32_t first = randomNumber();
    // The process's number alone is no name: containers that share a folder have the same ones.
    for (std::uint32_t attempt = 0; attempt < 10 && !file_.isOpen(); ++attempt) {
        name_ = ".dat.nosync" + std::to_string(::getpid()) + "." + std::to_string(first + attempt);
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
