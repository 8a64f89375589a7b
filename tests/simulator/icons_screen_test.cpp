// The sheets of icons: which apps, where, and what the home screen's messages answer for them.
#include "simulator/screens/icons_screen.h"

#include "desktop/text/text.h"
#include "simulator/screens/sheet.h"
#include "themed_device.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <string>
#include <tuple>
#include <vector>

namespace velmoranth::simulator::icons_screen_test {
namespace {

constexpr Pixel kYellow{0, 255, 255, 255};

class IconsOn : public testing::TestWithParam<std::tuple<std::string, int>> {
  public:
    [[nodiscard]] RenderedScreen draw(const std::vector<NamedApp>& apps, int page = 1,
                                      ScreenKind kind = ScreenKind::icons,
                                      const platform::Dictionary& preferences = {},
                                      bool loadEngine = true) const {
        ScreenRequest request =
            device.request(std::get<0>(GetParam()), std::get<1>(GetParam()), preferences);
        request.screen = kind;
        request.apps = apps;
        request.page = page;
        request.loadEngine = loadEngine;
        auto screen = renderScreen(request);
        EXPECT_TRUE(screen) << (screen ? "" : toLine(screen.error()));
        return std::move(*screen);
    }

    ThemedDevice device;
};

INSTANTIATE_TEST_SUITE_P(Devices, IconsOn,
                         testing::Combine(testing::Values("phone", "phone-667", "pad"),
                                          testing::Values(12, 13)));

std::vector<Pixel> middleOf(const RenderedScreen& screen, std::size_t index) {
    const ShownIcon& icon = screen.icons.at(index);
    // Away from its edges, where what lies behind shows.
    const auto side = static_cast<std::size_t>(std::lround(icon.side * 0.6));
    const auto left = static_cast<std::size_t>(std::lround(icon.x + icon.side * 0.2));
    const auto top = static_cast<std::size_t>(std::lround(icon.y + icon.side * 0.2));
    std::vector<Pixel> pixels;
    for (std::size_t y = top; y < top + side; ++y) {
        for (std::size_t x = left; x < left + side; ++x) {
            Pixel pixel{};
            std::copy_n(screen.picture.pixels.begin() +
                            static_cast<std::ptrdiff_t>((y * screen.picture.width + x) * 4),
                        4, pixel.begin());
            pixels.push_back(pixel);
        }
    }
    return pixels;
}

std::size_t indexOf(const RenderedScreen& screen, const std::string& identifier) {
    const auto found = std::ranges::find(screen.icons, identifier, &ShownIcon::bundleIdentifier);
    EXPECT_NE(found, screen.icons.end()) << identifier;
    return static_cast<std::size_t>(found - screen.icons.begin());
}

TEST_P(IconsOn, ShowWhatTheHomeScreenShowsAndAskForItAsOften) {
    device.png("IconBundles/com.example.Two-large.png", 180, 180, kMagenta, kGreen);
    device.png("IconBundles/com.apple.mobilecal-large.png", 180, 180, kBlue);
    device.png("Bundles/com.apple.mobileicons.framework/AppIconMask.png", 120, 120, kBlack, kWhite);
    for (const char* const overlay : {"iPhoneOverlay", "iPadOverlay"}) {
        device.png(std::string("Velmoranth/") + overlay + ".png", 60, 60, kYellow, {0, 0, 0, 0});
    }
    const std::vector<NamedApp> apps{{"com.example.Two"},
                                     {"com.apple.mobilecal"},
                                     {"com.apple.mobiletimer"},
                                     {"com.apple.mobilemail"}};
    // A pad's dock asks again for what it suggests: these three, and none of those.
    std::vector<NamedApp> withSuggested = apps;
    for (const App& app : suggestedApps()) {
        withSuggested.push_back({std::string(app.bundleIdentifier)});
    }
    const platform::Dictionary all{{"enableIconMask", true}, {"enableOverlay", true}};
    for (const bool loadEngine : {true, false}) {
        const RenderedScreen icons = draw(apps, 1, ScreenKind::icons, all, loadEngine);
        const RenderedScreen home = draw(withSuggested, 1, ScreenKind::home, all, loadEngine);
        ASSERT_EQ(icons.icons.size(), 4U);
        for (std::size_t i = 0; i < icons.icons.size(); ++i) {
            const std::size_t onHome = indexOf(home, icons.icons[i].bundleIdentifier);
            EXPECT_EQ(icons.icons[i].stockImageRequests, home.icons[onHome].stockImageRequests)
                << icons.icons[i].bundleIdentifier;
            EXPECT_EQ(icons.icons[i].side, home.icons[onHome].side);
        }
    }
    // The mask hides the right half of each; the overlay covers the left one.
    const RenderedScreen icons = draw(apps, 1, ScreenKind::icons, all);
    const std::vector<Pixel> two = middleOf(icons, indexOf(icons, "com.example.Two"));
    const auto side = static_cast<std::size_t>(std::lround(std::sqrt(two.size())));
    EXPECT_EQ(two[side / 2 * side + side / 4], kYellow);
    EXPECT_NE(two[side / 2 * side + side * 3 / 4], kGreen);
    EXPECT_NE(two[side / 2 * side + side * 3 / 4], kYellow);
    // Without them the theme's icon is as it is on the home screen, pixel by pixel.
    const RenderedScreen plain = draw(apps);
    const RenderedScreen home = draw(apps, 1, ScreenKind::home);
    for (const char* const app : {"com.example.Two", "com.apple.mobilecal"}) {
        EXPECT_EQ(middleOf(plain, indexOf(plain, app)), middleOf(home, indexOf(home, app))) << app;
    }
    EXPECT_EQ(middleOf(plain, indexOf(plain, "com.example.Two")).front(), kMagenta);
}

TEST_P(IconsOn, LieInTheOrderOfTheirIdentifiersWithoutBadges) {
    const RenderedScreen screen = draw({{"com.example.b", "A"},
                                        {"com.apple.mobilephone"},
                                        {"Com.example.A"},
                                        {"com.apple.mobilemail"},
                                        {"com.burbn.instagram"}});
    std::string order;
    for (const ShownIcon& icon : screen.icons) {
        order += icon.label + " ";
        EXPECT_EQ(icon.label, icon.bundleIdentifier);
    }
    EXPECT_EQ(order,
              "com.apple.mobilemail com.apple.mobilephone com.burbn.instagram Com.example.A "
              "com.example.b ");
    // A badge reaches over the icon's upper right corner.
    const ShownIcon& mail = screen.icons[0];
    const auto x = static_cast<std::size_t>(mail.x + mail.side + 3);
    const auto y = static_cast<std::size_t>(mail.y - 3);
    Pixel corner{};
    std::copy_n(screen.picture.pixels.begin() +
                    static_cast<std::ptrdiff_t>((y * screen.picture.width + x) * 4),
                4, corner.begin());
    EXPECT_EQ(corner, (Pixel{237, 232, 232, 255}));
}

TEST_P(IconsOn, FillSheetsThatHaveNumbers) {
    const auto& [model, system] = GetParam();
    const std::size_t perSheet = model == "phone" ? 28 : model == "pad" ? 56 : 24;
    std::vector<NamedApp> apps;
    for (std::size_t i = 0; i < perSheet * 2 + 1; ++i) {
        apps.push_back({"com.example.app" + std::to_string(100 + i)});
    }
    const RenderedScreen first = draw(apps);
    EXPECT_EQ(first.pageCount, 3);
    EXPECT_EQ(first.page, 1);
    ASSERT_EQ(first.icons.size(), perSheet);
    EXPECT_EQ(first.icons.front().label, "com.example.app100");
    const RenderedScreen last = draw(apps, 9);
    EXPECT_EQ(last.page, 3);
    ASSERT_EQ(last.icons.size(), 1U);
    EXPECT_EQ(last.icons.front().label, "com.example.app" + std::to_string(100 + perSheet * 2));
    EXPECT_EQ(last.icons.front().x, first.icons.front().x);
    apps.resize(perSheet);
    EXPECT_EQ(draw(apps).pageCount, 1);
    // No two overlap, identifiers included, and none leaves the screen.
    const double scale = first.picture.scale;
    const auto width = static_cast<double>(first.picture.width);
    const auto height = static_cast<double>(first.picture.height);
    for (std::size_t i = 0; i < perSheet; ++i) {
        const ShownIcon& icon = first.icons[i];
        EXPECT_GE(icon.x, 10 * scale);
        EXPECT_LE(icon.x + icon.side, width - 10 * scale);
        EXPECT_LE(icon.y + icon.side + 25 * scale, height);
        for (std::size_t j = 0; j < i; ++j) {
            const ShownIcon& other = first.icons[j];
            EXPECT_TRUE(std::abs(icon.x - other.x) >= icon.side + 20 * scale ||
                        std::abs(icon.y - other.y) >= icon.side + 25 * scale);
        }
    }
}

TEST(SheetText, BreaksAnIdentifierBehindADot) {
    const desktop::TextStyle style{.size = 9};
    const auto width = [&](const char* text) { return desktop::measureText(text, style).width; };
    using Lines = std::vector<std::string>;
    EXPECT_EQ(linesOfIdentifier("com.example.notes", style, width("com.example.notes")),
              Lines{"com.example.notes"});
    EXPECT_EQ(linesOfIdentifier("com.example.notes", style, width("com.example.note")),
              (Lines{"com.example.", "notes"}));
    const Lines cut = linesOfIdentifier("com.averyveryverylongname", style, width("com.avery"));
    ASSERT_EQ(cut.size(), 2U);
    EXPECT_EQ(cut[0], "com.");
    EXPECT_NE(cut[1].find("…"), std::string::npos);
    const Lines whole = linesOfIdentifier("averyveryverylongname", style, width("avery"));
    ASSERT_EQ(whole.size(), 1U);
    EXPECT_LE(width(whole[0].c_str()), width("avery"));
    EXPECT_EQ(linesOfIdentifier("", style, 10), Lines{""});
    EXPECT_EQ(linesOfIdentifier(".a", style, 0.1), Lines{"…"});
}

}  // namespace
}  // namespace velmoranth::simulator::icons_screen_test
