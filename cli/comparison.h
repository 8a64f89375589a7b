// Two pictures side by side.
#pragma once

#include "simulator/picture.h"

#include <string>

namespace velmoranth::cli {

struct Captioned {
    const simulator::Picture& picture;
    std::string caption;
};

// Points; in the picture times its scale, rounded.
inline constexpr double kComparisonGap = 12;
inline constexpr double kCaptionHeight = 28;

// Left and right with a gap between them, a caption above each. At the scale of the left one.
[[nodiscard]] simulator::Picture sideBySide(const Captioned& left, const Captioned& right);

}  // namespace velmoranth::cli
