#include "simulator/artwork/toolkit_artwork.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <limits>
#include <set>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace velmoranth::simulator::toolkit_artwork_test {
namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNotANumber = std::numeric_limits<double>::quiet_NaN();

struct Bgra {
    int blue, green, red, alpha;

    friend bool operator==(const Bgra&, const Bgra&) = default;
};

Bgra at(const FurniturePicture& picture, int x, int y) {
    const std::uint8_t* const pixel = &picture.bgra.at(
        (static_cast<std::size_t>(y) * static_cast<std::size_t>(picture.widthPixels) +
         static_cast<std::size_t>(x)) *
        4);
    return {pixel[0], pixel[1], pixel[2], pixel[3]};
}

Bgra middle(const FurniturePicture& picture) {
    return at(picture, picture.widthPixels / 2, picture.heightPixels / 2);
}

void expectSize(const FurniturePicture& picture, int width, int height, const std::string& what) {
    EXPECT_EQ(picture.widthPixels, width) << what;
    EXPECT_EQ(picture.heightPixels, height) << what;
    EXPECT_EQ(picture.bgra.size(),
              static_cast<std::size_t>(width) * static_cast<std::size_t>(height) * 4)
        << what;
}

// Share of the pixels that something is drawn on.
double coveredShare(const FurniturePicture& picture) {
    double sum = 0;
    for (std::size_t i = 3; i < picture.bgra.size(); i += 4) {
        sum += picture.bgra[i];
    }
    return sum / 255 / (static_cast<double>(picture.bgra.size()) / 4);
}

bool isPremultiplied(const FurniturePicture& picture) {
    for (std::size_t i = 0; i < picture.bgra.size(); i += 4) {
        const int alpha = picture.bgra[i + 3];
        if (picture.bgra[i] > alpha || picture.bgra[i + 1] > alpha || picture.bgra[i + 2] > alpha) {
            return false;
        }
    }
    return true;
}

// A family of named pictures, at a scale.
struct Family {
    std::string name;
    std::span<const std::string_view> names;
    std::function<FurniturePicture(std::string_view, double)> draw;
};

std::vector<Family> families() {
    return {
        {"glyphs", glyphNames(),
         [](std::string_view name, double scale) { return drawGlyph(name, 20, scale, 0x123456); }},
        {"toolkit images", toolkitImageNames(), drawToolkitImage},
        {"settings icons", settingsIconNames(), drawSettingsIcon},
        {"weather on colour", weatherConditionNames(),
         [](std::string_view name, double scale) {
             return drawWeatherCondition(name, 30, scale, 0);
         }},
        {"weather on white", weatherConditionNames(),
         [](std::string_view name, double scale) {
             return drawWeatherCondition(name, 30, scale, 1);
         }},
    };
}

TEST(ToolkitArtwork, ListsHaveWhatScreensShow) {
    const auto has = [](std::span<const std::string_view> names, std::string_view name) {
        return std::ranges::find(names, name) != names.end();
    };
    for (const char* name : {"chevron.right",
                             "chevron.left",
                             "plus",
                             "plus.circle.fill",
                             "arrow.up.circle.fill",
                             "circle.fill",
                             "circle",
                             "checkmark",
                             "magnifyingglass",
                             "square.and.arrow.up",
                             "trash",
                             "gear",
                             "heart.fill",
                             "star.fill",
                             "person.crop.circle.fill",
                             "ellipsis.circle",
                             "xmark.circle.fill",
                             "bell.fill",
                             "moon.fill",
                             "wifi",
                             "location.fill",
                             "list.bullet"}) {
        EXPECT_TRUE(has(glyphNames(), name)) << name;
    }
    for (const char* name :
         {"UIButtonBarSearch", "UINavigationBarBackIndicatorDefault", "UITabBarFavorites",
          "UITableGrabber", "UISearchFieldIcon", "UITableNext"}) {
        EXPECT_TRUE(has(toolkitImageNames(), name)) << name;
    }
    for (const char* name :
         {"AirplaneMode", "WiFi", "Bluetooth", "Cellular", "Notifications", "Sounds",
          "DoNotDisturb", "ScreenTime", "General", "ControlCenter", "DisplayBrightness",
          "Wallpaper", "Battery", "Privacy", "PhotosAndCamera"}) {
        EXPECT_TRUE(has(settingsIconNames(), name)) << name;
    }
    for (const char* name :
         {"clear-day", "clear-night", "mostly-sunny", "partly-cloudy-day", "partly-cloudy-night",
          "cloudy", "rain", "showers", "thunderstorm", "snow", "fog", "wind"}) {
        EXPECT_TRUE(has(weatherConditionNames(), name)) << name;
    }
}

TEST(ToolkitArtwork, EveryNameDrawsAPictureOfItsOwn) {
    for (const Family& family : families()) {
        std::set<std::vector<std::uint8_t>> pictures;
        for (const std::string_view name : family.names) {
            const std::string what = family.name + ": " + std::string(name);
            const FurniturePicture picture = family.draw(name, 3);
            EXPECT_GT(coveredShare(picture), 0.06) << what;
            EXPECT_TRUE(isPremultiplied(picture)) << what;
            EXPECT_TRUE(pictures.insert(picture.bgra).second) << what;
            EXPECT_EQ(picture, family.draw(name, 3)) << what;
        }
    }
}

// A sign that runs over its square's edge would be cut off.
TEST(ToolkitArtwork, SignsStayInsideTheirSquares) {
    for (const Family& family : families()) {
        if (family.name == "settings icons" || family.name == "toolkit images") {
            continue;
        }
        for (const std::string_view name : family.names) {
            const FurniturePicture picture = family.draw(name, 4);
            const int last = picture.widthPixels - 1;
            for (int i = 0; i <= last; ++i) {
                for (const auto& [x, y] : {std::array{i, 0}, std::array{i, last}, std::array{0, i},
                                           std::array{last, i}}) {
                    ASSERT_EQ(at(picture, x, y).alpha, 0)
                        << family.name << ' ' << name << ' ' << x << ' ' << y;
                }
            }
        }
    }
}

TEST(ToolkitArtwork, PixelsArePointsTimesScale) {
    for (const int scale : {1, 2, 3}) {
        expectSize(drawGlyph("gear", 17, scale, 0), 17 * scale, 17 * scale, "gear");
        expectSize(drawToolkitImage("UINavigationBarBackIndicatorDefault", scale), 13 * scale,
                   21 * scale, "back");
        expectSize(drawSettingsIcon("WiFi", scale), 29 * scale, 29 * scale, "WiFi");
        expectSize(drawWeatherCondition("rain", 30, scale, 0), 30 * scale, 30 * scale, "rain");
        expectSize(drawSwitchKnob(scale), 50 * scale, 50 * scale, "knob");
        expectSize(drawSwitchTrack(true, 13, scale), 51 * scale, 31 * scale, "track");
        expectSize(drawCalendarBase(60, scale), 60 * scale, 60 * scale, "calendar");
        expectSize(drawClockBackground(60, scale), 60 * scale, 60 * scale, "clock");
        expectSize(drawClockFace(60, scale, 1, 2, 3), 60 * scale, 60 * scale, "hands");
    }
    expectSize(drawGlyph("gear", 10, 1.25, 0), 13, 13, "to the nearest pixel");
    expectSize(drawGlyph("gear", 0.1, 1, 0), 1, 1, "one pixel at least");
}

TEST(ToolkitArtwork, UnknownNamesGiveNothing) {
    for (const Family& family : families()) {
        for (const std::string_view name :
             {std::string_view{}, std::string_view{"gears"}, std::string_view{"wifi\0", 5},
              std::string_view{"WIFI"}, std::string_view{"../UITableNext"}}) {
            EXPECT_EQ(family.draw(name, 2), FurniturePicture{}) << family.name << ' ' << name;
        }
    }
}

TEST(ToolkitArtwork, SizesOutOfRangeGiveNothing) {
    for (const double bad : {0.0, -1.0, kNotANumber, kInfinity, -kInfinity, 1e300}) {
        for (const Family& family : families()) {
            EXPECT_EQ(family.draw(family.names.front(), bad), FurniturePicture{}) << bad;
        }
        EXPECT_EQ(drawGlyph("gear", bad, 2, 0), FurniturePicture{}) << bad;
        EXPECT_EQ(drawWeatherCondition("rain", bad, 2, 0), FurniturePicture{}) << bad;
        EXPECT_EQ(drawSwitchKnob(bad), FurniturePicture{}) << bad;
        EXPECT_EQ(drawSwitchTrack(true, 13, bad), FurniturePicture{}) << bad;
        for (const auto& [side, scale] : {std::array{bad, 2.0}, std::array{60.0, bad}}) {
            EXPECT_EQ(drawCalendarBase(side, scale), FurniturePicture{}) << bad;
            EXPECT_EQ(drawClockBackground(side, scale), FurniturePicture{}) << bad;
            EXPECT_EQ(drawClockFace(side, scale, 0, 0, 0), FurniturePicture{}) << bad;
        }
    }
    EXPECT_EQ(drawGlyph("gear", kMaximumFurniturePixels + 1, 1, 0), FurniturePicture{});
}

TEST(InterfaceGlyph, HasTheColourThatIsAskedFor) {
    EXPECT_EQ(middle(drawGlyph("circle.fill", 20, 2, 0x123456)), (Bgra{0x56, 0x34, 0x12, 255}));
    EXPECT_EQ(drawGlyph("circle.fill", 20, 2, 0xFF123456),
              drawGlyph("circle.fill", 20, 2, 0x123456));
}

TEST(InterfaceGlyph, SignsOnDiscsAreHoles) {
    for (const char* name : {"plus.circle.fill", "xmark.circle.fill", "arrow.up.circle.fill"}) {
        const FurniturePicture picture = drawGlyph(name, 40, 2, 0);
        EXPECT_EQ(middle(picture).alpha, 0) << name;
        EXPECT_EQ(at(picture, 40, 8).alpha, 255) << name;
    }
}

TEST(SuccessPlate, IsAWhiteMarkOnADarkPlate) {
    const FurniturePicture plate = drawSuccessPlate(200, 2);
    expectSize(plate, 400, 400, "plate");
    EXPECT_EQ(at(plate, 0, 0).alpha, 0);  // the corner is round
    EXPECT_EQ(at(plate, 0, 200), at(plate, 399, 200));
    EXPECT_EQ(at(plate, 0, 200).alpha, 209);                     // lets a little through
    EXPECT_EQ(at(plate, 200, 88), (Bgra{255, 255, 255, 255}));   // the ring
    EXPECT_EQ(at(plate, 184, 241), (Bgra{255, 255, 255, 255}));  // the mark
    expectSize(drawSuccessPlate(0, 2), 0, 0, "no side");
    expectSize(drawSuccessPlate(1e9, 2), 0, 0, "too large");
}

TEST(SettingsIcon, IsAColouredTileInTheIconShape) {
    for (const std::string_view name : settingsIconNames()) {
        const FurniturePicture picture = drawSettingsIcon(name, 3);
        EXPECT_EQ(at(picture, 0, 0).alpha, 0) << name;
        EXPECT_EQ(at(picture, 86, 86).alpha, 0) << name;
        EXPECT_EQ(at(picture, 43, 2).alpha, 255) << name;
        EXPECT_EQ(middle(picture).alpha, 255) << name;
    }
    EXPECT_EQ(at(drawSettingsIcon("WiFi", 3), 43, 3), (Bgra{0xFF, 0x7A, 0, 255}));
}

// Summed light of what is drawn, as if on black.
double light(const FurniturePicture& picture) {
    double sum = 0;
    for (std::size_t i = 0; i < picture.bgra.size(); i += 4) {
        sum += picture.bgra[i] + picture.bgra[i + 1] + picture.bgra[i + 2];
    }
    return sum;
}

TEST(WeatherCondition, IsBrightOnColourAndDarkOnWhite) {
    for (const std::string_view name : weatherConditionNames()) {
        const FurniturePicture bright = drawWeatherCondition(name, 30, 3, 0);
        const FurniturePicture dark = drawWeatherCondition(name, 30, 3, 1);
        EXPECT_GT(light(bright), light(dark)) << name;
        for (std::size_t i = 3; i < bright.bgra.size(); i += 4) {
            ASSERT_EQ(bright.bgra[i], dark.bgra[i]) << name;
        }
    }
}

TEST(WeatherCondition, UnknownStylesAreOnColour) {
    const FurniturePicture bright = drawWeatherCondition("snow", 30, 2, 0);
    for (const std::int64_t style :
         {std::int64_t{2}, std::int64_t{-1}, std::numeric_limits<std::int64_t>::min()}) {
        EXPECT_EQ(drawWeatherCondition("snow", 30, 2, style), bright) << style;
    }
}

TEST(SwitchKnob, IsAWhiteDiscInTheMiddleOfItsShadow) {
    const FurniturePicture knob = drawSwitchKnob(2);
    constexpr Bgra kWhite{255, 255, 255, 255};
    EXPECT_EQ(middle(knob), kWhite);
    EXPECT_EQ(at(knob, 50, 23), kWhite);  // the disc reaches from 22 to 78
    EXPECT_EQ(at(knob, 50, 76), kWhite);
    EXPECT_EQ(at(knob, 23, 50), kWhite);
    EXPECT_EQ(at(knob, 50, 20).red, 0);
    // The shadow falls down, and ends inside the picture.
    EXPECT_GT(at(knob, 50, 81).alpha, at(knob, 50, 18).alpha + 15);
    EXPECT_LT(at(knob, 50, 99).alpha, 6);
    EXPECT_LT(at(knob, 50, 0).alpha, 6);
    EXPECT_LT(at(knob, 0, 50).alpha, 6);
}

TEST(SwitchTrack, HasTheColoursOfItsSystem) {
    EXPECT_EQ(middle(drawSwitchTrack(true, 12, 2)), (Bgra{0x64, 0xD9, 0x4C, 255}));
    EXPECT_EQ(middle(drawSwitchTrack(true, 13, 2)), (Bgra{0x59, 0xC7, 0x34, 255}));
    EXPECT_EQ(middle(drawSwitchTrack(false, 13, 2)), (Bgra{0xEA, 0xE9, 0xE9, 255}));
    const FurniturePicture ring = drawSwitchTrack(false, 12, 2);
    EXPECT_EQ(middle(ring), (Bgra{255, 255, 255, 255}));
    EXPECT_EQ(at(ring, 51, 1), (Bgra{0xEA, 0xE5, 0xE5, 255}));
    EXPECT_EQ(at(ring, 0, 0).alpha, 0);
}

TEST(CalendarBase, IsAnEmptyBrightTile) {
    const FurniturePicture base = drawCalendarBase(60, 3);
    for (std::size_t i = 0; i < base.bgra.size(); i += 4) {
        ASSERT_EQ(base.bgra[i + 3], 255);
        ASSERT_GT(base.bgra[i], 230);
    }
    // Nothing is written on it: every row is of one colour.
    for (int y = 0; y < 180; ++y) {
        for (int x = 1; x < 180; ++x) {
            const Bgra left = at(base, 0, y);
            ASSERT_NEAR(at(base, x, y).green, left.green, 2) << x << ' ' << y;
        }
    }
}

TEST(ClockFace, BackgroundIsTheClockWithoutHands) {
    EXPECT_EQ(drawClockBackground(60, 2).bgra, drawClockFace(120));
    EXPECT_NE(drawClockBackground(60, 2), drawClockFace(60, 2, 9, 41, 0));
    EXPECT_EQ(drawClockFace(60, 2, 9, 41, 0).bgra, drawStockIcon("com.apple.mobiletimer", 120));
}

TEST(ClockFace, HandsPointAtTheTime) {
    // Where each hand alone lies, 13 points from the middle; the seconds point away.
    const FurniturePicture three = drawClockFace(60, 2, 3, 0, 30);
    EXPECT_LT(at(three, 60 + 18, 60).red, 80);  // hour, to the right
    EXPECT_LT(at(three, 60, 60 - 28).red, 80);  // minute, up
    EXPECT_GT(at(three, 60 - 18, 60).red, 200);
    EXPECT_LT(at(three, 60, 60 + 32).blue, 160);  // second, down
    const FurniturePicture half = drawClockFace(60, 2, 9, 30, 0);
    EXPECT_LT(at(half, 60, 60 + 28).red, 80);
    EXPECT_GT(at(half, 60 + 18, 60).red, 200);
}

TEST(ClockFace, HourHandGoesOnBetweenHours) {
    const FurniturePicture halfPast = drawClockFace(60, 2, 12, 30, 15);
    EXPECT_LT(at(halfPast, 60 + 5, 60 - 17).red, 80);  // 15 degrees past the top
    EXPECT_GT(at(halfPast, 60 - 1, 60 - 18).red, 200);
}

TEST(ClockFace, GoesAroundPastItsCircle) {
    EXPECT_EQ(drawClockFace(60, 2, 15, 69, 91), drawClockFace(60, 2, 3, 9, 31));
    for (const int odd : {std::numeric_limits<int>::min(), -1, std::numeric_limits<int>::max()}) {
        EXPECT_EQ(coveredShare(drawClockFace(60, 2, odd, odd, odd)), 1) << odd;
    }
}

}  // namespace
}  // namespace velmoranth::simulator::toolkit_artwork_test
