// Words of results, the same on both sides.
#include "device/equality/transcript.h"

#include <array>
#include <cstdio>

namespace velmoranth::equality {

std::string shownNumber(double number) {
    std::array<char, 40> text;
    std::snprintf(text.data(), text.size(), "%.9g", number);
    return text.data();
}

std::string shown(const ShownImage& image) {
    return "image " + shownNumber(image.width) + " x " + shownNumber(image.height) + " points @" +
           shownNumber(image.scale);
}

std::string shownText(const std::optional<std::string>& text) {
    return text ? "\"" + *text + "\"" : kNothing;
}

}  // namespace velmoranth::equality
