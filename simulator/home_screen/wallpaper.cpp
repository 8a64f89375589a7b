#include "simulator/home_screen/wallpaper.h"

#include "desktop/files/descriptor.h"
#include "desktop/image_io/image_io.h"
#include "desktop/imaging/graphics_context.h"
#include "simulator/artwork/artwork.h"
#include "simulator/screen.h"
#include "simulator/screen_context.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <utility>
#include <vector>

namespace velmoranth::simulator {

using desktop::DesktopBitmapImage;
using desktop::Problem;
using desktop::Result;

namespace {

// Photographs have up to some 50 million pixels.
constexpr std::size_t kMostMebibytes = 64;  // of the file
constexpr std::size_t kMostMillions = 64;   // of pixels

Result<platform::Data> readPicture(const std::string& path) {
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

// Its size and its pixels.
struct Pixels {
    desktop::PixelSize size;
    std::vector<std::uint8_t> bgra;
};

Result<Pixels> decodePicture(const std::string& path) {
    auto bytes = readPicture(path);
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
                                          std::to_string(kMostMillions) + " million of a wallpaper",
                                      path});
    }
    Pixels pixels{size, desktop::toPremultipliedBgra(*image)};
    if (pixels.bgra.empty()) {
        return tl::unexpected(Problem{"the image is of a kind that cannot be drawn", path});
    }
    return pixels;
}

std::shared_ptr<DesktopBitmapImage> opaqueImage(std::vector<std::uint8_t> bgra,
                                                const desktop::PixelSize& size) {
    return DesktopBitmapImage::createPremultiplied(
        std::make_shared<const platform::Data>(std::move(bgra)), size, size.width * 4, true);
}

}  // namespace

Result<std::shared_ptr<DesktopBitmapImage>> loadWallpaper(const std::string& file,
                                                          const ScreenDescription& screen) {
    const desktop::PixelSize size = pixelSizeOf(screen);
    auto picture = decodePicture(file);
    if (!picture) {
        return tl::unexpected(std::move(picture.error()));
    }
    const auto context = desktop::DesktopGraphicsContext::create(
        {.size = size, .content = desktop::DesktopGraphicsContext::Content::opaque});
    if (context == nullptr) {
        return tl::unexpected(Problem{"the screen is too large to draw"});
    }
    const auto width = static_cast<double>(picture->size.width);
    const auto height = static_cast<double>(picture->size.height);
    const auto screenWidth = static_cast<double>(size.width);
    const auto screenHeight = static_cast<double>(size.height);
    const double factor = std::max(screenWidth / width, screenHeight / height);
    const platform::Size scaled{width * factor, height * factor};
    context->drawPixels(
        {picture->bgra.data(), picture->size.width, picture->size.height, picture->size.width * 4},
        {{(screenWidth - scaled.width) / 2, (screenHeight - scaled.height) / 2}, scaled});
    const desktop::PixelView drawn = context->pixels();
    std::vector<std::uint8_t> bgra;
    bgra.reserve(size.width * size.height * 4);
    for (std::size_t y = 0; y < drawn.height; ++y) {
        bgra.insert(bgra.end(), drawn.row(y), drawn.row(y) + drawn.width * 4);
    }
    return opaqueImage(std::move(bgra), size);
}

std::shared_ptr<DesktopBitmapImage> wallpaperOf(const ScreenContext& context) {
    if (context.wallpaper != nullptr) {
        return context.wallpaper;
    }
    const desktop::PixelSize size = pixelSizeOf(context.device.screen);
    return opaqueImage(drawWallpaper(static_cast<int>(size.width), static_cast<int>(size.height)),
                       size);
}

}  // namespace velmoranth::simulator
