#include "desktop/catalog/mapped_file.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cctype>
#include <cerrno>
#include <string_view>
#include <system_error>
#include <utility>

namespace velmoranth::catalog {

namespace {

tl::unexpected<desktop::Problem> refuse(std::string message, const std::string& path) {
    return tl::unexpected(desktop::Problem{.message = std::move(message), .path = path});
}

tl::unexpected<desktop::Problem> refuseWithReason(std::string_view what, const std::string& path) {
    std::string reason = std::generic_category().message(errno);
    if (!reason.empty()) {
        reason[0] = static_cast<char>(std::tolower(static_cast<unsigned char>(reason[0])));
    }
    return refuse(std::string(what) + ": " + reason, path);
}

}  // namespace

desktop::Result<MappedFile> MappedFile::open(const std::string& path, std::size_t maxBytes) {
    // O_NONBLOCK, lest a pipe without a writer keep us waiting; for files it means nothing.
    // NOLINTNEXTLINE(cppcoreguidelines-pro-type-vararg): the system's own interface
    const int file = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    if (file < 0) {
        return refuseWithReason("the file cannot be opened", path);
    }
    desktop::Result<MappedFile> mapped = map(file, path, maxBytes);
    ::close(file);  // a mapping needs it no longer
    return mapped;
}

desktop::Result<MappedFile> MappedFile::map(int file, const std::string& path,
                                            std::size_t maxBytes) {
    struct stat status{};
    if (::fstat(file, &status) != 0) {
        return refuseWithReason("the file cannot be opened", path);
    }
    if (!S_ISREG(status.st_mode)) {
        return refuse("it is not a regular file", path);
    }
    const auto size = static_cast<std::uint64_t>(status.st_size);
    if (size == 0) {
        return refuse("the file is empty", path);
    }
    if (size > maxBytes) {
        return refuse("the file has more than " + std::to_string(maxBytes) + " bytes, the limit",
                      path);
    }
    void* const start =
        ::mmap(nullptr, static_cast<std::size_t>(size), PROT_READ, MAP_PRIVATE, file, 0);
    if (start == MAP_FAILED) {
        return refuseWithReason("the file cannot be mapped", path);
    }
    return MappedFile(start, static_cast<std::size_t>(size));
}

MappedFile::MappedFile(MappedFile&& other) noexcept
    : start_(std::exchange(other.start_, nullptr)), size_(std::exchange(other.size_, 0)) {}

MappedFile& MappedFile::operator=(MappedFile&& other) noexcept {
    std::swap(start_, other.start_);
    std::swap(size_, other.size_);
    return *this;
}

MappedFile::~MappedFile() {
    if (start_ != nullptr) {
        ::munmap(start_, size_);
    }
}

}  // namespace velmoranth::catalog
