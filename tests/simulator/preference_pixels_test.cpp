// What each preference changes on the home screen, pixel by pixel: the same screen with it off and
// on.
#include "themed_device.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace velmoranth::simulator::preference_pixels_test {
namespace {

constexpr const char* kMaps = "com.apple.Maps";        // no badge
constexpr const char* kMail = "com.apple.mobilemail";  // a badge
constexpr const char* kModel = "phone-667";
constexpr double kIconSide = 60;

class PreferencePixels : public testing::TestWithParam<int> {
  protected:
    // Off, then on, with the other preferences as they are.
    struct OffAndOn {
        Look off;
        Look on;
    };

    [[nodiscard]] OffAndOn lookAt(const std::string& key, platform::Dictionary others = {},
                                  std::string_view model = kModel) const {
        others.insert_or_assign(key, false);
        const Look off = device.look(model, GetParam(), others);
        others.insert_or_assign(key, true);
        return {off, device.look(model, GetParam(), others)};
    }

    ThemedDevice device;
};

INSTANTIATE_TEST_SUITE_P(Systems, PreferencePixels, testing::Values(12, 13));

TEST_P(PreferencePixels, EnableThemesTheIcons) {
    device.png("IconBundles/com.apple.Maps-large.png", 120, 120, kMagenta);
    const auto [off, on] = lookAt("enable");
    const platform::Point icon = on.icon(kMaps);
    EXPECT_EQ(on.at(icon.x + 30, icon.y + 30), kMagenta);
    EXPECT_EQ(off.count(kMagenta), 0U);
    // With theming off no other preference counts.
    const Look stock = device.look(kModel, GetParam(),
                                   {{"enable", false},
                                    {"enableIconMask", true},
                                    {"enableOverlay", true},
                                    {"enableShadow", true},
                                    {"dynamicShadow", true},
                                    {"opacityVal", 1.0},
                                    {"shadowWidthVal", 90.0},
                                    {"shadowHeightVal", 90.0},
                                    {"removeDock", true},
                                    {"removeFolderBG", true},
                                    {"removeLabels", true},
                                    {"removeIconBadges", true},
                                    {"removePageDots", true}});
    EXPECT_EQ(stock.screen().picture, off.screen().picture);
}

TEST_P(PreferencePixels, IconMaskHidesWhatItHides) {
    device.png("IconBundles/com.apple.Maps-large.png", 120, 120, kMagenta);
    // A mask's white hides.
    device.png("Bundles/com.apple.mobileicons.framework/AppIconMask.png", 120, 120, kBlack, kWhite);
    const auto [off, on] = lookAt("enableIconMask");
    const platform::Point icon = on.icon(kMaps);
    EXPECT_EQ(on.at(icon.x + 20, icon.y + 30), kMagenta);
    EXPECT_TRUE(on.showsWallpaper(icon.x + 40, icon.y + 30));
    EXPECT_EQ(off.at(icon.x + 40, icon.y + 30), kMagenta);
}

TEST_P(PreferencePixels, OverlayCoversTheIcons) {
    device.png("IconBundles/com.apple.Maps-large.png", 120, 120, kMagenta);
    device.png("Velmoranth/iPhoneOverlay.png", 60, 60, kGreen, {0, 0, 0, 0});
    const auto [off, on] = lookAt("enableOverlay");
    const platform::Point icon = on.icon(kMaps);
    EXPECT_EQ(on.at(icon.x + 20, icon.y + 30), kGreen);
    EXPECT_EQ(on.at(icon.x + 40, icon.y + 30), kMagenta);
    EXPECT_EQ(off.at(icon.x + 20, icon.y + 30), kMagenta);
}

TEST_P(PreferencePixels, ShadowImageLiesBehindTheIcons) {
    device.png("IconBundles/com.apple.Maps-large.png", 120, 120, kMagenta);
    device.png("Velmoranth/iPhoneShadow.png", 80, 80, kGreen);
    const auto [off, on] = lookAt("enableShadow");
    const platform::Point icon = on.icon(kMaps);
    // From 10 points above and to the left of the icon, 80 × 80.
    EXPECT_EQ(on.at(icon.x - 10, icon.y - 10), kGreen);
    EXPECT_EQ(on.at(icon.x + 69.5, icon.y + 30), kGreen);
    EXPECT_TRUE(on.showsWallpaper(icon.x - 10.5, icon.y - 10));
    EXPECT_TRUE(on.showsWallpaper(icon.x + 70, icon.y + 30));
    EXPECT_EQ(on.at(icon.x + 30, icon.y + 30), kMagenta);
    EXPECT_TRUE(off.showsWallpaper(icon.x - 10, icon.y - 10));
}

// The drawn shadow of one set of numbers, and points that it covers and leaves free.
struct ShadowCase {
    double radius, opacity, x, y, width, height;
    std::vector<platform::Point> black;  // from the icon's top left
    std::vector<platform::Point> free;
};

TEST_P(PreferencePixels, DrawnShadowHasItsNumbers) {
    const std::vector<ShadowCase> cases{
        // No blur: a rectangle as large as asked for, moved by the offset.
        {0, 1, 20, 0, 60, 60, {{70, 10}, {79, 59}}, {{81, 30}, {-2, 30}, {70, -2}, {70, 62}}},
        {0, 1, 0, -12, 60, 60, {{2, -5}, {30, -11}}, {{30, -13}}},
        {0, 1, -15, 0, 60, 60, {{-10, 30}}, {{-16, 30}, {62, 30}}},
        {0, 1, 0, 0, 75, 40, {{65, 10}, {74, 39}}, {{65, 42}, {76, 10}}},
        {0, 1, 0, 0, 40, 40, {}, {{62, 10}}},
        // No width, no shadow.
        {0, 1, 20, 0, 0, 60, {}, {{70, 10}}},
        {0, 0, 20, 0, 60, 60, {}, {{70, 10}}},
    };
    for (const ShadowCase& shadow : cases) {
        const Look look = device.look(kModel, GetParam(),
                                      {{"dynamicShadow", true},
                                       {"removeLabels", true},
                                       {"shadowRadiusVal", shadow.radius},
                                       {"opacityVal", shadow.opacity},
                                       {"xAxisVal", shadow.x},
                                       {"yAxisVal", shadow.y},
                                       {"shadowWidthVal", shadow.width},
                                       {"shadowHeightVal", shadow.height}});
        const platform::Point icon = look.icon(kMaps);
        for (const platform::Point& point : shadow.black) {
            EXPECT_EQ(look.at(icon.x + point.x, icon.y + point.y), kBlack)
                << point.x << ", " << point.y;
        }
        for (const platform::Point& point : shadow.free) {
            EXPECT_TRUE(look.showsWallpaper(icon.x + point.x, icon.y + point.y))
                << point.x << ", " << point.y;
        }
    }
}

TEST_P(PreferencePixels, DrawnShadowIsSoftAndFaintAsAskedFor) {
    const platform::Dictionary hard{{"dynamicShadow", true},
                                    {"opacityVal", 0.5},
                                    {"xAxisVal", 20.0},
                                    {"shadowWidthVal", 60.0},
                                    {"shadowHeightVal", 60.0}};
    const Look faint = device.look(kModel, GetParam(), hard);
    const platform::Point icon = faint.icon(kMaps);
    const Pixel shown = faint.at(icon.x + 70, icon.y + 30);
    const Pixel wallpaper = faint.wallpaperAt(icon.x + 70, icon.y + 30);
    for (std::size_t c = 0; c < 3; ++c) {
        EXPECT_NEAR(shown[c], wallpaper[c] / 2.0, 1);
    }
    platform::Dictionary soft = hard;
    soft.insert_or_assign("opacityVal", 1.0);
    soft.insert_or_assign("shadowRadiusVal", 4.0);
    const Look blurred = device.look(kModel, GetParam(), soft);
    // The edge itself is half covered; two deviations inside nearly all, outside nearly nothing.
    const auto brightness = [&](double x) {
        return static_cast<double>(blurred.at(icon.x + x, icon.y + 30)[0]) /
               blurred.wallpaperAt(icon.x + x, icon.y + 30)[0];
    };
    EXPECT_NEAR(brightness(80), 0.5, 0.06);
    EXPECT_LT(brightness(72), 0.06);
    EXPECT_GT(brightness(88), 0.94);
    EXPECT_LT(brightness(76), brightness(84));
}

TEST_P(PreferencePixels, DrawnShadowIsOffUnlessSwitchedOn) {
    const auto [off, on] = lookAt("dynamicShadow", {{"opacityVal", 1.0},
                                                    {"xAxisVal", 20.0},
                                                    {"shadowWidthVal", 60.0},
                                                    {"shadowHeightVal", 60.0}});
    const platform::Point icon = on.icon(kMaps);
    EXPECT_EQ(on.at(icon.x + 70, icon.y + 30), kBlack);
    EXPECT_TRUE(off.showsWallpaper(icon.x + 70, icon.y + 30));
}

TEST_P(PreferencePixels, RemoveDockShowsTheThemesInItsPlace) {
    device.png("Velmoranth/SBDockBGiphone.png", 375, 96, kGreen);
    const auto [off, on] = lookAt("removeDock");
    // The dock begins at 571; the theme's picture 10 below.
    EXPECT_FALSE(off.showsWallpaper(5, 575));
    EXPECT_EQ(off.count(kGreen), 0U);
    EXPECT_TRUE(on.showsWallpaperIn({{1, 573}, {24, 7}}));
    EXPECT_EQ(on.at(5, 581), kGreen);
    EXPECT_EQ(on.at(370, 666), kGreen);
    // The older system's highlight goes with the dock, the newer one's stays.
    EXPECT_EQ(on.showsWallpaper(100, 571), GetParam() == 12);
}

TEST_P(PreferencePixels, RemoveDockWithoutAPictureLeavesTheWallpaper) {
    const auto [off, on] = lookAt("removeDock");
    EXPECT_FALSE(off.showsWallpaper(5, 600));
    EXPECT_TRUE(on.showsWallpaperIn({{1, 573}, {24, 90}}));
}

TEST_P(PreferencePixels, RemoveDockOfAPadTakesPlatterAndDivider) {
    device.png("Bundles/com.apple.springboard/SBDockBG-Portrait@2x~ipad.png", 768, 104, kGreen);
    const auto [off, on] = lookAt("removeDock", {}, "pad");
    EXPECT_EQ(off.count(kGreen), 0U);
    // The platter begins at 910; the picture 10 below, from edge to edge.
    EXPECT_TRUE(on.showsWallpaperIn({{40, 911}, {20, 8}}));
    EXPECT_EQ(on.at(2, 921), kGreen);
    EXPECT_EQ(on.at(765, 1022), kGreen);
    // Where the divider was.
    const platform::Point last = on.icon("com.apple.Music");
    EXPECT_EQ(on.at(last.x + 76 + 20, last.y + 38), kGreen);
}

TEST_P(PreferencePixels, RemoveLabelsLeavesTheWallpaper) {
    const auto [off, on] = lookAt("removeLabels", {{"removeIconBadges", true}});
    const platform::Point icon = on.icon(kMaps);
    const platform::Rect below{{icon.x - 10, icon.y + kIconSide + 1}, {80, 24}};
    EXPECT_FALSE(off.showsWallpaperIn(below));
    EXPECT_TRUE(on.showsWallpaperIn(below));
    // In the dock of this screen, too: nothing stands out from the material there.
    const platform::Point docked = on.icon("com.apple.Music");
    EXPECT_NE(off.at(docked.x + 30, docked.y + 76 - 4), on.at(docked.x + 30, docked.y + 76 - 4));
}

TEST_P(PreferencePixels, RemoveIconBadgesLeavesTheIcon) {
    device.png("IconBundles/com.apple.mobilemail-large.png", 120, 120, kMagenta);
    const auto [off, on] = lookAt("removeIconBadges");
    const platform::Point icon = on.icon(kMail);
    EXPECT_FALSE(off.showsWallpaper(icon.x + 62, icon.y + 2));
    EXPECT_TRUE(on.showsWallpaperIn({{icon.x + 61, icon.y - 9}, {9, 22}}));
    EXPECT_EQ(on.at(icon.x + 55, icon.y + 4), kMagenta);
}

TEST_P(PreferencePixels, RemovePageDotsLeavesTheWallpaper) {
    const auto [off, on] = lookAt("removePageDots");
    const platform::Rect row{{150, 558}, {75, 11}};
    EXPECT_FALSE(off.showsWallpaperIn(row));
    EXPECT_TRUE(on.showsWallpaperIn(row));
}

TEST_P(PreferencePixels, DockOfTheOtherThemesLayoutShows) {
    device.png("Bundles/com.apple.springboard/SBDockBG@2x.png", 750, 192, kGreen);
    const Look look = device.look(kModel, GetParam(), {{"removeDock", true}});
    EXPECT_EQ(look.at(5, 581), kGreen);
    EXPECT_TRUE(look.showsWallpaper(5, 579));
}

TEST_P(PreferencePixels, PadHeldSidewaysHasADockOfItsOwn) {
    device.png("Bundles/com.apple.springboard/SBDockBG-Landscape@2x~ipad.png", 1024, 104, kGreen);
    device.png("Bundles/com.apple.springboard/SBDockBG-Portrait@2x~ipad.png", 768, 104, kMagenta);
    ScreenRequest request = device.request("pad", GetParam(), {{"removeDock", true}});
    ASSERT_TRUE(turnToLandscape(request.device));
    const Look look(renderScreen(request).value());
    // The platter begins at 654; the picture 10 below, over the whole width.
    EXPECT_EQ(look.at(2, 665), kGreen);
    EXPECT_EQ(look.at(1021, 766), kGreen);
    EXPECT_TRUE(look.showsWallpaper(2, 662));
    EXPECT_EQ(look.count(kMagenta), 0U);
}

// The older system's dock gets one picture more at every layout, so it is laid out no more often
// than the platform would.
TEST_P(PreferencePixels, DockIsLaidOutOnceForManyPictures) {
    const auto running =
        RunningScreen::start(device.request(kModel, GetParam(), {{"removeDock", true}}));
    ASSERT_TRUE(running);
    std::size_t layouts = 0;
    for (int i = 0; i < 3; ++i) {
        const auto screen = (*running)->render();
        ASSERT_TRUE(screen);
        layouts += static_cast<std::size_t>(
            std::count_if(screen->log.begin(), screen->log.end(), [](const std::string& line) {
                return line.starts_with("kCFCoreFoundationVersionNumber Running ios");
            }));
    }
    EXPECT_EQ(layouts, 1U);
}

TEST_P(PreferencePixels, ThemesBadgeDotsAndFolderShow) {
    const std::string springBoard = "Bundles/com.apple.springboard/";
    device.png(springBoard + "SBBadgeBG.png", 24, 24, kGreen);
    device.png(springBoard + "SBPageDotCurrent.png", 7, 7, kBlue);
    device.png("ANEMPageDots/Dot_Pages.png", 7, 7, kMagenta);
    device.png("ANEMPageDots/Spotlight_Pages.png", 7, 7, kGreen);
    device.png("Velmoranth/Folder.png", 60, 60, kGreen, kBlue);
    const Look look = device.look(kModel, GetParam(), {});
    const platform::Point mail = look.icon(kMail);
    EXPECT_EQ(look.at(mail.x + 68, mail.y - 8), kGreen);
    // Search, current, other: 16 apart around the middle.
    EXPECT_EQ(look.at(171.5, 563.5), kGreen);
    EXPECT_EQ(look.at(187.5, 563.5), kBlue);
    EXPECT_EQ(look.at(203.5, 563.5), kMagenta);
    const platform::Point folder = look.icon("folder.utilities");
    EXPECT_EQ(look.at(folder.x + 2, folder.y + 30), kGreen);
    EXPECT_EQ(look.at(folder.x + 57, folder.y + 30), kBlue);
}

}  // namespace
}  // namespace velmoranth::simulator::preference_pixels_test
