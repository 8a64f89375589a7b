// The two live icons on themed home screens.
#include "simulator/home_screen/live_icons.h"

#include "screen_test.h"

namespace velmoranth::simulator::live_icons_screen_test {
namespace {

// Every pixel of an icon, pixels of the picture.
std::size_t countIn(const Look& look, std::string_view identifier, const Pixel& pixel) {
    const platform::Point icon = look.icon(identifier);
    std::size_t found = 0;
    for (int y = 0; y < 180; ++y) {
        for (int x = 0; x < 180; ++x) {
            found += look.at(icon.x + x / 3.0, icon.y + y / 3.0) == pixel ? 1 : 0;
        }
    }
    return found;
}

TEST(LiveIconsScreen, CalendarIsWrittenAsTheThemesInfoSays) {
    const ThemedScreen screen(ScreenKind::home, "phone", 13);
    screen.device.png("IconBundles/com.apple.mobilecal-large.png", 180, 180, kMagenta);
    const auto text = [](double size, double top) {
        return platform::PropertyList(platform::Dictionary{{"FontName", "Helvetica-Bold"},
                                                           {"FontSize", size},
                                                           {"TextColor", "00FF00"},
                                                           {"TextXoffset", 0.0},
                                                           {"TextYoffset", top}});
    };
    const platform::Data info =
        desktop::writeXmlPropertyList(platform::PropertyList(platform::Dictionary{
            {"CalendarIconDateSettings", text(28, 22)}, {"CalendarIconDaySettings", text(9, 4)}}));
    screen.device.folder.file("device/Library/Themes/T.theme/Info.plist",
                              std::string(info.begin(), info.end()));
    const Look look = screen.themed();
    const platform::Point icon = look.icon("com.apple.mobilecal");
    EXPECT_EQ(look.at(icon.x, icon.y), kMagenta);
    EXPECT_GT(countIn(look, "com.apple.mobilecal", kGreen), 500U);
    std::size_t above = 0;
    std::size_t between = 0;
    std::size_t number = 0;
    for (double y = 0; y < 60; y += 1.0 / 3) {
        for (double x = 0; x < 60; x += 1.0 / 3) {
            if (look.at(icon.x + x, icon.y + y) == kGreen) {
                above += y < 4 ? 1 : 0;
                between += y > 17 && y < 22 ? 1 : 0;
                number += y >= 22 && y < 52 ? 1 : 0;
            }
        }
    }
    EXPECT_EQ(above, 0U);
    EXPECT_EQ(between, 0U);
    EXPECT_GT(number, 300U);
}

TEST(LiveIconsScreen, ClockTakesItsFaceFromTheThemeAndKeepsItsHands) {
    const ThemedScreen screen(ScreenKind::home, "phone", 13);
    screen.device.png("Bundles/com.apple.SpringBoardHome/ClockIconBackgroundSquare.png", 180, 180,
                      kMagenta);
    const Look themed = screen.themed();
    const std::size_t face = countIn(themed, "com.apple.mobiletimer", kMagenta);
    EXPECT_GT(face, 180U * 180 * 8 / 10);
    EXPECT_LT(face, 180U * 180 - 500);
    const platform::Point icon = themed.icon("com.apple.mobiletimer");
    // The hub of the hands.
    EXPECT_NE(themed.at(icon.x + 30, icon.y + 30), kMagenta);
    EXPECT_EQ(themed.at(icon.x + 30, icon.y + 30), screen.stock().at(icon.x + 30, icon.y + 30));
}

TEST(LiveIconsScreen, ClockOfTwelveIsAnIconLikeOthers) {
    const ThemedScreen screen(ScreenKind::home, "phone", 12);
    screen.device.png("Bundles/com.apple.SpringBoardHome/ClockIconBackgroundSquare.png", 180, 180,
                      kMagenta);
    screen.device.png("IconBundles/com.apple.mobiletimer-large.png", 180, 180, kGreen);
    const Look themed = screen.themed();
    EXPECT_EQ(countIn(themed, "com.apple.mobiletimer", kGreen), 180U * 180);
    EXPECT_EQ(themed.count(kMagenta), 0U);
}

}  // namespace
}  // namespace velmoranth::simulator::live_icons_screen_test
