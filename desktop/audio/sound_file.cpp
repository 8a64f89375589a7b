#include "desktop/audio/sound_file.h"

#include "desktop/files/descriptor.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <limits>
#include <utility>

namespace velmoranth::desktop {

// Bytes, or the descriptor of a file.
struct SoundFile::Contents {
    std::string name;
    std::uint64_t size = 0;
    platform::Data bytes;
    Descriptor descriptor;
};

SoundFile::SoundFile(std::shared_ptr<const Contents> contents) : contents_(std::move(contents)) {}

SoundFile SoundFile::ofData(platform::Data bytes, std::string name) {
    auto contents = std::make_shared<Contents>();
    contents->name = std::move(name);
    contents->size = bytes.size();
    contents->bytes = std::move(bytes);
    return SoundFile(std::move(contents));
}

Result<SoundFile> SoundFile::open(const DeviceRoot& root, const std::string& path) {
    auto contents = std::make_shared<Contents>();
    contents->name = path;
    // Not waiting: opening a named pipe must not stop the process.
    contents->descriptor = Descriptor(root.openFile(path, O_RDONLY | O_NONBLOCK | O_NOCTTY));
    struct stat status{};
    if (!contents->descriptor.isOpen() || ::fstat(contents->descriptor.get(), &status) != 0) {
        return tl::unexpected(problemOfErrno(errno, path));
    }
    if (!S_ISREG(status.st_mode)) {
        return tl::unexpected(Problem{
            S_ISDIR(status.st_mode) ? "a folder, not a sound" : "not a regular file", path});
    }
    contents->size = static_cast<std::uint64_t>(std::max<off_t>(status.st_size, 0));
    return SoundFile(std::move(contents));
}

const std::string& SoundFile::name() const {
    return contents_->name;
}

std::uint64_t SoundFile::size() const {
    return contents_->size;
}

std::size_t SoundFile::readAt(std::uint64_t offset, std::span<std::uint8_t> bytes) const {
    if (offset >= contents_->size) {
        return 0;
    }
    const std::uint64_t rest = contents_->size - offset;
    const auto wanted = static_cast<std::size_t>(std::min<std::uint64_t>(rest, bytes.size()));
    if (!contents_->descriptor.isOpen()) {
        std::copy_n(contents_->bytes.begin() + static_cast<std::ptrdiff_t>(offset), wanted,
                    bytes.begin());
        return wanted;
    }
    std::size_t length = 0;
    while (length < wanted) {
        const ssize_t got = ::pread(contents_->descriptor.get(), bytes.data() + length,
                                    wanted - length, static_cast<off_t>(offset + length));
        if (got < 0 && errno == EINTR) {
            continue;
        }
        if (got <= 0) {
            break;
        }
        length += static_cast<std::size_t>(got);
    }
    return length;
}

}  // namespace velmoranth::desktop
