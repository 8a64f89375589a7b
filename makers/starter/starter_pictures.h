// The starter's pictures as files. Private to the folder.
#pragma once

#include "makers/starter/drawings.h"
#include "makers/starter/starter.h"

#include <span>
#include <string_view>
#include <vector>

namespace velmoranth::makers {

enum class Scales { three, all };

// A picture of the starter, or its picture at each scale under names of their own.
struct StarterPicture {
    std::string_view name;  // in the theme
    std::string_view what;  // a few words for its maker
    double width = 0;       // points
    double height = 0;      // points
    Drawing draw = nullptr;
    // three: one file with three pixels a point. all: NAME.png, NAME@2x.png and NAME@3x.png, for
    // pictures that are shown at their own size.
    Scales scales = Scales::three;
};

[[nodiscard]] std::span<const StarterPicture> starterPictures();

// The mask, which is gray: black shows.
inline constexpr std::string_view kMaskName =
    "Bundles/com.apple.mobileicons.framework/AppIconMask.png";

[[nodiscard]] std::vector<StarterFile> drawnFiles(const Palette& palette);

}  // namespace velmoranth::makers
