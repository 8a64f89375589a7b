#include "simulator/screens/weather_screen.h"

#include "screen_test.h"

#include <algorithm>

namespace velmoranth::simulator::weather_screen_test {
namespace {

// In the middle of the sign of an hour, counted from now, on the tall phone: 278 points lie above
// the strip.
platform::Point signOfHour(int hour) {
    return {4 + 60.0 * hour + 30, 278 + 37 + 15};
}

TEST(WeatherScreen, HoursAndDaysShowTheThemesSignsWhereItHasThem) {
    for (const int system : {12, 13}) {
        const ThemedScreen screen(ScreenKind::weather, "phone", system);
        screen.device.png("Bundles/com.apple.weather-framework/cloudy.png", 90, 90, kMagenta);
        const Look themed = screen.themed();
        const Look stock = screen.stock();
        EXPECT_EQ(themed.at(signOfHour(3).x, signOfHour(3).y), kMagenta) << system;
        EXPECT_EQ(stock.count(kMagenta), 0U);
        // One hour and one day are cloudy; each sign fits its slot of 30 points.
        EXPECT_EQ(themed.count(kMagenta), 2U * 90 * 90) << system;
        for (const int hour : {0, 1, 2, 4, 5}) {
            EXPECT_EQ(themed.at(signOfHour(hour).x, signOfHour(hour).y),
                      stock.at(signOfHour(hour).x, signOfHour(hour).y))
                << hour;
        }
    }
}

TEST(WeatherScreen, ThirteensLoaderIsAskedAndTwelveHasNone) {
    for (const int system : {12, 13}) {
        const ThemedScreen screen(ScreenKind::weather, "phone", system);
        const Look look = screen.draw({{"enableLogging", true}}, true);
        const auto isLoaders = [](const std::string& line) {
            return line.find("conditionImageNamed: cloudy") != std::string::npos;
        };
        EXPECT_EQ(std::count_if(look.screen().log.begin(), look.screen().log.end(), isLoaders),
                  system == 13 ? 2 : 0);
    }
}

TEST(WeatherScreen, DaysFollowTheDate) {
    const ThemedDevice device;
    ScreenRequest request = device.request("phone", 13, {});
    request.screen = ScreenKind::weather;
    request.loadEngine = false;
    request.device.date = platform::Date{kMonday};
    const auto monday = renderScreen(request);
    request.device.date = platform::Date{kMonday + 86400};
    const auto tuesday = renderScreen(request);
    request.device.date = platform::Date{kMonday};
    request.device.locale = "de_DE";
    const auto german = renderScreen(request);
    ASSERT_TRUE(monday && tuesday && german);
    EXPECT_NE(monday->picture, tuesday->picture);
    EXPECT_NE(monday->picture, german->picture);
}

}  // namespace
}  // namespace velmoranth::simulator::weather_screen_test
