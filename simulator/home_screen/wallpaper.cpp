#include "simulator/home_screen/wallpaper.h"

#include "desktop/imaging/graphics_context.h"
#include "simulator/artwork/artwork.h"
#include "simulator/picture_file.h"
#include "simulator/screen.h"
#include "simulator/screen_context.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

namespace velmoranth::simulator {

using desktop::DesktopBitmapImage;
using desktop::Problem;
using desktop::Result;

namespace {

std::shared_ptr<DesktopBitmapImage> opaqueImage(std::vector<std::uint8_t> bgra,
                                                const desktop::PixelSize& size) {
    return DesktopBitmapImage::createPremultiplied(
        std::make_shared<const platform::Data>(std::move(bgra)), size, size.width * 4, true);
}

}  // namespace

Result<std::shared_ptr<DesktopBitmapImage>> loadWallpaper(const std::string& file,
                                                          const ScreenDescription& screen) {
    const desktop::PixelSize size = pixelSizeOf(screen);
    auto picture = readPictureFile(file, "a wallpaper");
    if (!picture) {
        return tl::unexpected(std::move(picture.error()));
    }
    const auto context = desktop::DesktopGraphicsContext::create(
        {.size = size, .content = desktop::DesktopGraphicsContext::Content::opaque});
    if (context == nullptr) {
        return tl::unexpected(Problem{"the screen is too large to draw"});
    }
    const auto width = static_cast<double>(picture->width);
    const auto height = static_cast<double>(picture->height);
    const auto screenWidth = static_cast<double>(size.width);
    const auto screenHeight = static_cast<double>(size.height);
    const double factor = std::max(screenWidth / width, screenHeight / height);
    const platform::Size scaled{width * factor, height * factor};
    context->drawPixels(
        {picture->pixels.data(), picture->width, picture->height, picture->width * 4},
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
