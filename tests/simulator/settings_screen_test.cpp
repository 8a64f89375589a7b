#include "simulator/screens/settings_screen.h"

#include "screen_test.h"

namespace velmoranth::simulator::settings_screen_test {
namespace {

// In the middle of the icon of a row, by its place in the first group of a phone's list. The bar,
// the title, the user and a gap lie above.
platform::Point iconOfRow(int row) {
    return {15 + 14.5, 44 + 44 + 52 + 80 + 35 + 44.0 * row + 22};
}

TEST(SettingsScreen, RowsShowTheThemesIconsWhereItHasThem) {
    for (const int system : {12, 13}) {
        const ThemedScreen screen(ScreenKind::settings, "phone", system);
        screen.device.png("Bundles/com.apple.Preferences/WiFi.png", 87, 87, kMagenta);
        const Look themed = screen.themed();
        const Look stock = screen.stock();
        const platform::Point wifi = iconOfRow(1);
        EXPECT_EQ(themed.at(wifi.x, wifi.y), kMagenta) << system;
        EXPECT_EQ(themed.at(16, wifi.y - 14), kMagenta) << system;  // up to its corners
        EXPECT_EQ(stock.count(kMagenta), 0U);
        // About the icon's 87 × 87 pixels, and no more.
        EXPECT_NEAR(static_cast<double>(themed.count(kMagenta)), 87.0 * 87, 87.0 * 4) << system;
        for (const int row : {0, 2, 3}) {
            const platform::Point icon = iconOfRow(row);
            EXPECT_EQ(themed.at(icon.x - 10, icon.y), stock.at(icon.x - 10, icon.y)) << row;
        }
    }
}

TEST(SettingsScreen, ThemingOffShowsThePlatformsScreen) {
    const ThemedScreen screen(ScreenKind::settings, "phone-667", 13);
    screen.device.png("Bundles/com.apple.Preferences/WiFi.png", 58, 58, kMagenta);
    EXPECT_EQ(screen.draw({{"enable", false}}, true).screen().picture,
              screen.stock().screen().picture);
}

TEST(SettingsScreen, SwitchTakesTheThemesKnob) {
    const ThemedScreen screen(ScreenKind::settings, "phone", 13);
    screen.device.png("UIImages/UISwitchKnob.png", 28, 28, kGreen);
    EXPECT_GT(screen.themed().count(kGreen), 1000U);
}

TEST(SettingsScreen, EveryDeviceShowsTheListAndAPadThePageBesideIt) {
    for (const char* const model : {"phone", "phone-667", "pad"}) {
        const Look look = ThemedScreen(ScreenKind::settings, model, 12).stock();
        // Airplane mode's tile is orange wherever the list is.
        EXPECT_GT(look.count({0, 149, 255, 255}), 100U) << model;
    }
    const Look pad = ThemedScreen(ScreenKind::settings, "pad", 13).stock();
    // Cards of the page, right of the list.
    EXPECT_EQ(pad.at(700, 20 + 44 + 35 + 5), kWhite);
    EXPECT_NE(pad.at(700, 20 + 44 + 20), kWhite);
}

}  // namespace
}  // namespace velmoranth::simulator::settings_screen_test
