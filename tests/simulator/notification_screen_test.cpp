#include "simulator/screens/notification_screen.h"

#include "screen_test.h"

#include <algorithm>
#include <string>

namespace velmoranth::simulator::notification_screen_test {
namespace {

// In the middle of the banner's icon on the tall phone.
constexpr platform::Point kIcon{8 + 10 + 10, 44 + 18};

TEST(NotificationScreen, BannerShowsTheThemesIcon) {
    for (const int system : {12, 13}) {
        const ThemedScreen screen(ScreenKind::notification, "phone", system);
        screen.device.png("IconBundles/com.apple.MobileSMS-large.png", 60, 60, kMagenta);
        const Look themed = screen.themed();
        const Look stock = screen.stock();
        EXPECT_EQ(themed.at(kIcon.x, kIcon.y), kMagenta) << system;
        EXPECT_NE(stock.at(kIcon.x, kIcon.y), kMagenta) << system;
        // The page under the banner, and the dock: the same app's icon is there too.
        EXPECT_EQ(stock.count(kMagenta), 0U);
        EXPECT_GT(themed.count(kMagenta), 60U * 60) << system;
    }
}

TEST(NotificationScreen, ThirteensIconIsMadeByItsInitialiser) {
    for (const int system : {12, 13}) {
        const Look look = ThemedScreen(ScreenKind::notification, "phone", system)
                              .draw({{"enableLogging", true}}, true);
        const auto isInitialisers = [](const std::string& line) {
            return line.starts_with("VELMORANTH UNNotificationIcon, ") &&
                   line.ends_with("With Identifier: com.apple.MobileSMS");
        };
        EXPECT_EQ(std::count_if(look.screen().log.begin(), look.screen().log.end(), isInitialisers),
                  system == 13 ? 1 : 0);
    }
}

TEST(NotificationScreen, HomeScreenLiesUnderIt) {
    const ThemedScreen screen(ScreenKind::notification, "phone", 13);
    const Look look = screen.stock();
    EXPECT_EQ(look.screen().icons.size(), 28U);
    const ThemedScreen home(ScreenKind::home, "phone", 13);
    const Look plain = home.stock();
    for (const double y : {300.0, 500.0, 760.0}) {
        EXPECT_EQ(look.at(60, y), plain.at(60, y)) << y;
    }
    EXPECT_NE(look.at(187, 60), plain.at(187, 60));
}

}  // namespace
}  // namespace velmoranth::simulator::notification_screen_test
