#include "simulator/screens/today_screen.h"

#include "screen_test.h"

namespace velmoranth::simulator::today_screen_test {
namespace {

// On the tall phone: cards lie 8 points from its edge, the first 100 from its top; the icon in a
// card's header is 20 points wide.
constexpr platform::Point kCalendarIcon{8 + 8 + 10, 100 + 18};
constexpr platform::Point kFirstSuggestion{8 + 45, 218 + 36 + 12 + 30};
constexpr platform::Point kWeatherIcon{8 + 8 + 10, 366 + 18};
constexpr platform::Point kNotesIcon{8 + 8 + 10, 484 + 18};

TEST(TodayScreen, ThemeShowsOnTheWidgetWithoutAnIdentifierAlone) {
    const ThemedScreen screen(ScreenKind::today, "phone", 13);
    screen.device.png("IconBundles/(null)-large.png", 120, 120, kMagenta);
    screen.device.png("IconBundles/com.apple.weather-large.png", 120, 120, kGreen);
    screen.device.png("IconBundles/com.apple.mobilecal-large.png", 120, 120, kGreen);
    screen.device.png("IconBundles/com.apple.mobilenotes-large.png", 120, 120, kGreen);
    const Look themed = screen.themed();
    const Look stock = screen.stock();
    EXPECT_EQ(themed.at(kNotesIcon.x, kNotesIcon.y), kMagenta);
    EXPECT_EQ(themed.count(kMagenta), 60U * 60);
    EXPECT_EQ(themed.count(kGreen), 0U);
    for (const platform::Point& icon : {kCalendarIcon, kWeatherIcon}) {
        EXPECT_EQ(themed.at(icon.x, icon.y), stock.at(icon.x, icon.y));
    }
}

TEST(TodayScreen, WidgetsOfTwelveAreThePlatforms) {
    const ThemedScreen screen(ScreenKind::today, "phone", 12);
    screen.device.png("IconBundles/(null)-large.png", 120, 120, kMagenta);
    screen.device.png("IconBundles/com.apple.weather-large.png", 120, 120, kGreen);
    const Look themed = screen.themed();
    EXPECT_EQ(themed.count(kMagenta) + themed.count(kGreen), 0U);
}

TEST(TodayScreen, SuggestedAppsShowTheThemesIconsOnBothSystems) {
    for (const int system : {12, 13}) {
        const ThemedScreen screen(ScreenKind::today, "phone", system);
        screen.device.png("IconBundles/com.apple.Music-large.png", 180, 180, kMagenta);
        const Look themed = screen.themed();
        EXPECT_EQ(themed.at(kFirstSuggestion.x, kFirstSuggestion.y), kMagenta) << system;
        EXPECT_EQ(themed.count(kMagenta), 180U * 180) << system;
        EXPECT_EQ(screen.stock().count(kMagenta), 0U);
    }
}

TEST(TodayScreen, PadHasTwoColumns) {
    const ThemedScreen screen(ScreenKind::today, "pad", 13);
    screen.device.png("IconBundles/(null)-large.png", 40, 40, kMagenta);
    EXPECT_EQ(screen.themed().count(kMagenta), 40U * 40);
}

}  // namespace
}  // namespace velmoranth::simulator::today_screen_test
