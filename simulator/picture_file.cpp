#include "simulator/picture_file.h"

#include "desktop/files/descriptor.h"
#include "desktop/image_io/image_io.h"
#include "desktop/imaging/pixels.h"
#include "platform/foundation.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <utility>

namespace velmoranth::simulator {

using desktop::Problem;
using desktop::Result;

namespace {

// Photographs have up to some 50 million pixels.
constexpr std::size_t kMostMebibytes = 64;  // of the file
constexpr std::size_t kMostMillions = 64;   // of pixels

Result<platform::Data> readPlainFile(const std::string& path) {
    // A pipe is not waited for.
    const desktop::Descriptor file(
        ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NOCTTY | O_NONBLOCK));
    struct stat status{};
    if (!file.isOpen() || ::fstat(file.get(), &status) != 0) {
        return tl::unexpected(desktop::problemOfErrno(errno, path));
    }
    if (!S_ISREG(status.st_mode)) {
        return tl::unexpected(
            Problem{S_ISDIR(status.st_mode) ? "is a directory" : "is no plain file", path});
    }
    constexpr std::size_t kMostBytes = kMostMebibytes * 1024 * 1024;
    if (static_cast<std::uint64_t>(status.st_size) > kMostBytes) {
        return tl::unexpected(
            Problem{"the file is larger than " + std::to_string(kMostMebibytes) + " MiB", path});
    }
    platform::Data bytes(static_cast<std::size_t>(status.st_size));
    std::size_t length = 0;
    while (length < bytes.size()) {
        const ssize_t count = ::read(file.get(), bytes.data() + length, bytes.size() - length);
        if (count < 0 && errno == EINTR) {
            continue;
        }
        if (count < 0) {
            return tl::unexpected(desktop::problemOfErrno(errno, path));
        }
        if (count == 0) {
            break;  // it has become shorter
        }
        length += static_cast<std::size_t>(count);
    }
    bytes.resize(length);
    return bytes;
}

}  // namespace

Result<Picture> readPictureFile(const std::string& path, std::string_view what) {
    auto bytes = readPlainFile(path);
    if (!bytes) {
        return tl::unexpected(std::move(bytes.error()));
    }
    auto image = desktop::decodeImage(*bytes);
    if (!image) {
        image.error().path = path;
        return tl::unexpected(std::move(image.error()));
    }
    const desktop::PixelSize size{image->layout.width, image->layout.height};
    // Packed samples may take far less than what they are drawn from.
    if (size.width > kMostMillions * 1'000'000 / size.height) {
        return tl::unexpected(Problem{"the image is " + std::to_string(size.width) + " x " +
                                          std::to_string(size.height) + " pixels, more than the " +
                                          std::to_string(kMostMillions) + " million of " +
                                          std::string(what),
                                      path});
    }
    Picture picture{
        .width = size.width, .height = size.height, .pixels = desktop::toPremultipliedBgra(*image)};
    if (picture.pixels.empty()) {
        return tl::unexpected(Problem{"the image is of a kind that cannot be drawn", path});
    }
    return picture;
}

}  // namespace velmoranth::simulator
