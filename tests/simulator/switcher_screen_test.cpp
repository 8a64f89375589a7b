#include "simulator/screens/switcher_screen.h"

#include "screen_test.h"

namespace velmoranth::simulator::switcher_screen_test {
namespace {

// In the middle of the banner's icon on the tall phone.
constexpr platform::Point kBannerIcon{8 + 14 + 16, 728 + 30};

TEST(SwitcherScreen, BannerShowsTheThemesIconAtThePlatformsSize) {
    for (const int system : {12, 13}) {
        const ThemedScreen screen(ScreenKind::switcher, "phone", system);
        screen.device.png("IconBundles/com.apple.Music-large.png", 180, 180, kMagenta);
        const Look themed = screen.themed();
        EXPECT_EQ(themed.at(kBannerIcon.x, kBannerIcon.y), kMagenta) << system;
        EXPECT_EQ(themed.count(kMagenta), 96U * 96) << system;
        EXPECT_EQ(screen.stock().count(kMagenta), 0U);
    }
}

TEST(SwitcherScreen, CardsShowTheThemesIconsOverThem) {
    const ThemedScreen screen(ScreenKind::switcher, "phone", 13);
    screen.device.png("IconBundles/com.apple.MobileSMS-large.png", 180, 180, kGreen);
    EXPECT_EQ(screen.themed().count(kGreen), 87U * 87);
}

TEST(SwitcherScreen, ThemingOffShowsThePlatformsBanner) {
    const ThemedScreen screen(ScreenKind::switcher, "phone-667", 13);
    screen.device.png("IconBundles/com.apple.Music-large.png", 120, 120, kMagenta);
    EXPECT_EQ(screen.draw({{"enable", false}}, true).screen().picture,
              screen.stock().screen().picture);
}

}  // namespace
}  // namespace velmoranth::simulator::switcher_screen_test
