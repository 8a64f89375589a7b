// One line of text drawn into premultiplied B, G, R, A memory. The system face is Inter; it and the
// other faces are taken from a font configuration of our own (font_files.h), so that pixels do not
// follow what else a machine has installed. On any thread: one text is laid out or drawn at a time.
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
    extraLight = 200,
    light = 300,
    regular = 400,
    medium = 500,
    semibold = 600,
    bold = 700,
    heavy = 800,
    black = 900,
};

// natural: right for a line that runs from right to left, else left. A single line is the last one
// of its paragraph, which is not spread: justified is natural.
enum class TextAlignment { left, center, right, justified, natural };

struct TextShadow {
    platform::Color color{0, 0, 0, 0.5};
    platform::Point offset{0, 1};  // points, y downwards
    double radius = 1;             // points; the standard deviation of the blur, 0 is hard
};

struct TextStyle {
    std::string family = "Inter";  // a family that is not there is drawn in the system's
    FontWeight weight = FontWeight::regular;
    bool italic = false;
    double size = 17;  // points
    platform::Color color{0, 0, 0, 1};
    std::optional<TextShadow> shadow = {};
    TextAlignment alignment = TextAlignment::left;
};

// Text that should be larger is drawn at this size, points.
inline constexpr double kLargestTextSize = 2048;

// The folders whose fonts, all of them, may be used instead of those of the packages, and the
// family among them that stands for the system's. Before the first text is drawn; later calls do
// nothing. When the system's face is missing, the machine's own fonts are used as well.
void setFontFolders(std::vector<std::string> folders, std::string systemFamily = "Inter");

// Whether the system face was found.
[[nodiscard]] bool hasSystemFace();

// Whether some face has every character of the text; what none has is drawn as a box.
[[nodiscard]] bool hasGlyphs(const std::string& text, const TextStyle& style);

// Size of the line in points: as high as ascent and descent of the style's face (a fall-back's do
// not count), not wider than `maxWidth` (not positive or infinite: as wide as it is). 0 × 0 for an
// empty text or a size that is not positive. Text beyond 16 KiB is left out.
[[nodiscard]] platform::Size measureText(const std::string& text, const TextStyle& style,
                                         double maxWidth = 0);

// Where drawText puts the line of that size. Ink may lie beside it.
[[nodiscard]] platform::Rect placeText(const std::string& text, const TextStyle& style,
                                       const platform::Rect& box);

// Draws the line over what is there: centred vertically in `box`, aligned in it, not wider than it
// (a line that does not fit ends in "…"). `box` is in points from the top left of the memory;
// `scale` is pixels per point. Line ends are drawn as spaces, bytes that are no UTF-8 as U+FFFD.
void drawText(const MutablePixels& target, const std::string& text, const TextStyle& style,
              const platform::Rect& box, double scale);

}  // namespace velmoranth::desktop
