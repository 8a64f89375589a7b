// What the themes are made of that a check is tried on.
#pragma once

#include "desktop/image_io/image_io.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace velmoranth::cli::lint_test {

inline std::string pictureOf(std::size_t width, std::size_t height,
                             const std::vector<std::uint8_t>& pixel, std::size_t cornerSide = 0,
                             const std::vector<std::uint8_t>& corner = {0, 0, 0, 0}) {
    std::vector<std::uint8_t> pixels;
    for (std::size_t y = 0; y < height; ++y) {
        for (std::size_t x = 0; x < width; ++x) {
            const auto& shown = x < cornerSide && y < cornerSide ? corner : pixel;
            pixels.insert(pixels.end(), shown.begin(), shown.end());
        }
    }
    const auto png = desktop::encodePng(pixels, width, height, width * 4);
    return {png.begin(), png.end()};
}

inline const std::string& icon() {
    static const std::string kIcon = pictureOf(180, 180, {254, 0, 255, 255});
    return kIcon;
}

inline std::string listOf(const std::string& contents) {
    return "<?xml version=\"1.0\"?>\n<plist version=\"1.0\">\n<dict>" + contents +
           "</dict>\n</plist>\n";
}

// A text of the calendar with this besides its font, or in its place.
inline std::string textOf(
    const std::string& key, const std::string& more,
    const std::string& font = "<key>FontName</key><string>Helvetica</string>") {
    return "<key>CalendarIcon" + key + "Settings</key><dict>" + font +
           "<key>TextYoffset</key><real>20</real>"
           "<key>FontSize</key><real>9</real><key>TextColor</key><string>FF8000</string>" +
           more + "</dict>";
}

}  // namespace velmoranth::cli::lint_test
