#include "makers/skeleton/fitted_pictures.h"

#include "desktop/image_io/image_io.h"
#include "simulator/artwork/artwork.h"
#include "simulator/artwork/toolkit_artwork.h"
#include "simulator/home_screen/calendar_lines.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <string>
#include <vector>

namespace velmoranth::makers {

using simulator::CalendarLine;

namespace {

// The icon that the calendar's lines are measured on, and the boxes that the library writes a
// weekday and a day into, in points. They have no room for a larger line, on no device.
constexpr double kMeasuredSide = 60;
constexpr double kWeekdayBox = 12;
constexpr double kDayBox = 30;

// Pixels by which the boxes lie lower than they need to: a line stands on the nearest whole row of
// pixels, so it stays, and the box cuts less off the letters' tails.
constexpr double kLowering = 0.49;

// How far the mask reaches beyond the shape, as a share of its side: more than the half pixel by
// which an edge moves when the mask is made as small as the smallest icon.
constexpr double kWidening = 0.0125;

// The public name under which a phone has the face.
const char* fontName(desktop::FontWeight weight) {
    return weight == desktop::FontWeight::extraLight ? "HelveticaNeue-Thin" : "HelveticaNeue";
}

std::string hexadecimal(const platform::Color& color) {
    constexpr double kMost = 255;
    return fmt::format("{:02X}{:02X}{:02X}", std::lround(color.red * kMost),
                       std::lround(color.green * kMost), std::lround(color.blue * kMost));
}

platform::Dictionary settingsOf(const CalendarLine& line, double box, double unit, double scale) {
    return {{"FontName", std::string(fontName(line.weight))},
            {"FontSize", line.size * std::min(unit, 1.0)},
            {"TextColor", hexadecimal(line.color)},
            {"TextXoffset", 0.0},
            {"TextYoffset", line.middle * unit - box / 2 + kLowering / scale},
            {"ShadowXoffset", 0.0},
            {"ShadowYoffset", 0.0},
            {"ShadowBlurRadius", 0.0}};
}

}  // namespace

platform::Data widenedMask(std::size_t side) {
    const std::vector<std::uint8_t> shape = simulator::iconShapeCoverage(static_cast<int>(side));
    const double reach = static_cast<double>(side) * kWidening;
    const auto rows = static_cast<std::ptrdiff_t>(reach);
    const auto length = static_cast<std::ptrdiff_t>(side);
    constexpr std::uint8_t kShown = 0;
    constexpr std::uint8_t kHidden = 255;
    std::vector<std::uint8_t> mask(shape.size(), kHidden);
    for (std::ptrdiff_t y = 0; y < length; ++y) {
        for (std::ptrdiff_t x = 0; x < length; ++x) {
            if (shape[static_cast<std::size_t>(y * length + x)] == 0) {
                continue;
            }
            const std::ptrdiff_t lastRow = std::min(length - 1, y + rows);
            for (std::ptrdiff_t row = std::max<std::ptrdiff_t>(0, y - rows); row <= lastRow;
                 ++row) {
                const auto away = static_cast<double>(row - y);
                const auto width =
                    static_cast<std::ptrdiff_t>(std::sqrt(reach * reach - away * away));
                const std::ptrdiff_t first = std::max<std::ptrdiff_t>(0, x - width);
                const std::ptrdiff_t count = std::min(length - 1, x + width) - first + 1;
                std::fill_n(mask.begin() + row * length + first, count, kShown);
            }
        }
    }
    return desktop::encodeGrayPng(mask, side, side);
}

platform::Data bareCalendar(std::size_t side) {
    std::vector<std::uint8_t> pixels =
        simulator::drawCalendarBase(static_cast<double>(side), 1).bgra;
    simulator::applyIconShape(pixels, static_cast<int>(side));
    return desktop::encodePng(pixels, side, side, side * 4, desktop::PngEffort::balanced);
}

platform::Dictionary skeletonInfo(double side, double scale) {
    const double unit = side / kMeasuredSide;
    return {
        {"PackageName", std::string("Skeleton")},
        {"IB-MaskIcons", true},
        {"CalendarIconDaySettings",
         settingsOf(simulator::calendarWeekday(), kWeekdayBox, unit, scale)},
        {"CalendarIconDateSettings", settingsOf(simulator::calendarDay(), kDayBox, unit, scale)}};
}

}  // namespace velmoranth::makers
