// What stands behind the home screen: the drawn wallpaper, or a picture of this machine's.
#pragma once

#include "desktop/imaging/bitmap_image.h"
#include "desktop/result/result.h"
#include "simulator/device.h"

#include <memory>
#include <string>

namespace velmoranth::simulator {

struct ScreenContext;

// The picture as a device shows it: as large as covers the screen with its proportions, in the
// middle, black behind what is transparent. A problem, whose path is the file's, when it is
// missing, no plain file, no image, or larger than a photograph is.
[[nodiscard]] desktop::Result<std::shared_ptr<desktop::DesktopBitmapImage>> loadWallpaper(
    const std::string& file, const ScreenDescription& screen);

// The context's wallpaper, as large as its screen; drawn where it has none. Nil for a screen too
// large to draw.
[[nodiscard]] std::shared_ptr<desktop::DesktopBitmapImage> wallpaperOf(
    const ScreenContext& context);

}  // namespace velmoranth::simulator
