// Reading a picture of this machine that a user names.
#pragma once

#include "desktop/result/result.h"
#include "simulator/picture.h"

#include <string>
#include <string_view>

namespace velmoranth::simulator {

// PNG, JPEG, GIF or TIFF, of at most 64 MiB and 64 million pixels, one pixel a point. A pipe is not
// waited for. The problem names the file; `what` is what it calls the picture: "a wallpaper".
[[nodiscard]] desktop::Result<Picture> readPictureFile(const std::string& path,
                                                       std::string_view what);

}  // namespace velmoranth::simulator
