// One line of text drawn into premultiplied B, G, R, A memory. The system face is Inter, taken from
// a font configuration of our own, so that pixels do not follow what else a machine has installed.
#pragma once

#include "desktop/imaging/pixels.h"
#include "platform/core_graphics.h"

#include <optional>
#include <string>
#include <vector>

namespace velmoranth::desktop {

// Weights as font files number them.
enum class FontWeight {
    thin = 100,
    light = 300,
    regular = 400,
    medium = 500,
    semibold = 600,
    bold = 700,
    heavy = 800,
    black = 900,
};

enum class TextAlignment { left, center, right };

struct TextShadow {
    platform::Color color{0, 0, 0, 0.5};
    platform::Point offset{0, 1};  // points, y downwards
    double radius = 1;             // points; the standard deviation of the blur, 0 is hard
};

struct TextStyle {
    std::string family = "Inter";  // a family that is not there is drawn in Inter
    FontWeight weight = FontWeight::regular;
    double size = 17;  // points
    platform::Color color{0, 0, 0, 1};
    std::optional<TextShadow> shadow = {};
    TextAlignment alignment = TextAlignment::left;
};

// The folders whose fonts may be used, before the first text is drawn; later calls do nothing. By
// default the folders in which distributions install Inter; when none of them has it, the machine's
// own sans-serif face stands in.
void setFontFolders(std::vector<std::string> folders);

// Whether the system face was found.
[[nodiscard]] bool hasSystemFace();

// Size of the line in points, ascent and descent included, not wider than `maxWidth` (not positive
// or infinite: as wide as it is). 0 × 0 for an empty text or a size that is not positive.
[[nodiscard]] platform::Size measureText(const std::string& text, const TextStyle& style,
                                         double maxWidth = 0);

// Draws the line over what is there: centred vertically in `box`, aligned in it, not wider than it
// (a line that does not fit ends in "…"). `box` is in points from the top left of the memory;
// `scale` is pixels per point. Line ends are drawn as spaces, bytes that are no UTF-8 as U+FFFD.
void drawText(const MutablePixels& target, const std::string& text, const TextStyle& style,
              const platform::Rect& box, double scale);

}  // namespace velmoranth::desktop
