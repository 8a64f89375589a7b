// The pictures of a theme, each looked at once.
#pragma once

#include "makers/conversion/found_themes.h"
#include "makers/conversion/pictures.h"

#include <cstddef>
#include <functional>
#include <map>
#include <string>
#include <string_view>

namespace velmoranth::makers {

struct JudgedPicture {
    PictureFacts facts;
    bool isEmptyFile = false;
    bool isClear = false;          // every pixel of it
    std::string_view format = {};  // "JPEG", "GIF", "TIFF" or "PNG"; "" for no picture
};

using JudgedPictures = std::map<std::string, JudgedPicture>;

// Those of the theme's files that are named .png and are no clutter, on all processors; a picture
// is in memory only while it is judged. `progress` is told on this thread how many of how many are
// done.
[[nodiscard]] JudgedPictures judgePictures(
    const FoundTheme& theme,
    const std::function<void(std::size_t done, std::size_t all)>& progress);

}  // namespace velmoranth::makers
