// How a theme would name the wallpapers that the platform stores.
#pragma once

#include "platform/foundation.h"

namespace velmoranth::hooks {

// What a theme's file for the stored wallpaper at that path is called; any other path as it is.
[[nodiscard]] platform::NullableString wallpaperFileName(platform::NullableString path);

}  // namespace velmoranth::hooks
