// The screen of an ordinary app with the engine's library: what a theme changes in them, and
// where.
#include "simulator/process/process.h"
#include "simulator/toolkit/toolkit_images.h"
#include "themed_device.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <tuple>
#include <vector>

namespace velmoranth::simulator::toolkit_screens_test {
namespace {

constexpr Pixel kYellow{0, 255, 255, 255};

// Every pixel of that colour lies in `area` (points), and nothing else does.
void expectFilled(const Look& look, const Pixel& pixel, const platform::Rect& area) {
    const double scale = look.screen().picture.scale;
    const double step = 1 / scale;
    std::size_t inside = 0;
    for (double y = area.origin.y + step / 2; y < area.origin.y + area.size.height; y += step) {
        for (double x = area.origin.x + step / 2; x < area.origin.x + area.size.width; x += step) {
            inside += look.at(x - step / 2, y - step / 2) == pixel ? 1 : 0;
        }
    }
    const auto whole =
        static_cast<std::size_t>(area.size.width * area.size.height * scale * scale + 0.5);
    EXPECT_EQ(inside, whole);
    EXPECT_EQ(look.count(pixel), whole);
}

class AppScreenOn : public testing::TestWithParam<std::tuple<std::string, int>> {
  public:
    [[nodiscard]] ScreenRequest request(ScreenKind kind,
                                        const platform::Dictionary& preferences = {}) const {
        ScreenRequest wanted =
            device.request(std::get<0>(GetParam()), std::get<1>(GetParam()), preferences);
        wanted.screen = kind;
        return wanted;
    }

    [[nodiscard]] Look look(ScreenKind kind, const platform::Dictionary& preferences = {}) const {
        return Look(renderScreen(request(kind, preferences)).value());
    }

    [[nodiscard]] Picture stock(ScreenKind kind) const {
        ScreenRequest wanted = request(kind);
        wanted.loadEngine = false;
        return renderScreen(wanted).value().picture;
    }

    ThemedDevice device;
};

INSTANTIATE_TEST_SUITE_P(Devices, AppScreenOn,
                         testing::Combine(testing::Values("phone", "phone-667", "pad"),
                                          testing::Values(12, 13)));

TEST_P(AppScreenOn, WithoutImagesInTheThemeAllIsStock) {
    constexpr ScreenKind kKind = ScreenKind::controls;
    EXPECT_EQ(look(kKind).screen().picture, stock(kKind));
    device.png("UIImages/UINavigationBarBackIndicatorDefault.png", 13, 21, kMagenta);
    EXPECT_EQ(look(kKind, {{"enable", false}}).screen().picture, stock(kKind));
    EXPECT_NE(look(kKind).screen().picture, stock(kKind));
}

TEST_P(AppScreenOn, ThemedImagesShowInTheirPlaces) {
    const double scale =
        deviceConfiguration(std::get<0>(GetParam()), std::get<1>(GetParam())).value().screen.scale;
    const auto px = [scale](double points) { return static_cast<std::size_t>(points * scale); };
    // A file that names a scale has that many pixels a point, whatever the screen has.
    const std::string at = scale == 3 ? "@3x" : "@2x";
    device.png("UIImages/UINavigationBarBackIndicatorDefault" + at + ".png", px(13), px(21),
               kMagenta);
    device.png("UIImages/gear" + at + ".png", px(20), px(20), kGreen);
    device.png("UIImages/UISwitchKnob" + at + ".png", px(28), px(28), kYellow);
    device.png("UIImages/UISwitchKnob.png", 28, 28, kYellow);
    device.png("Bundles/com.example.Workbench/FavoriteButton.png", 28, 28, kBlue);
    const Look themed = look(ScreenKind::controls);
    const double barTop = std::get<0>(GetParam()) == "phone" ? 44 : 20;
    const auto snapped = [scale](double points) { return std::round(points * scale) / scale; };
    expectFilled(themed, kMagenta, {{8, snapped(barTop + 11.5)}, {13, 21}});
    // One row's glyph, both switches' knobs, one button.
    EXPECT_EQ(themed.count(kGreen), px(20) * px(20));
    EXPECT_EQ(themed.count(kYellow), 2 * px(28) * px(28));
    EXPECT_EQ(themed.count(kBlue), px(28) * px(28));
}

TEST_P(AppScreenOn, AnOrdinaryAppHasNoClassesOfTheHomeScreen) {
    device.png("UIImages/gear.png", 20, 20, kMagenta);
    std::vector<std::string> log;
    auto process = SimulatedProcess::start(request(ScreenKind::controls),
                                           [&](const std::string& line) { log.push_back(line); });
    ASSERT_TRUE(process);
    desktop::Runtime& runtime = (*process)->runtime();
    for (const char* const name :
         {"SBIconView", "SBIcon", "SBDockView", "SBHIconImageCache", "SBIconController"}) {
        EXPECT_EQ(runtime.getClass(name), nullptr) << name;
    }
    EXPECT_EQ((*process)->homeScreen(), nullptr);
    // Replaced all the same.
    EXPECT_EQ(platform::sizeOf(runtime.sendToClass<platform::ImageRef, platform::NullableString>(
                  "UIImage", "systemImageNamed:", "gear")),
              (platform::Size{20, 20}));
    (*process)->screen().layoutViews();
    for (const std::string& line : log) {
        EXPECT_EQ(line.find("does not"), std::string::npos) << line;
        EXPECT_FALSE(line.starts_with("MS:Warning")) << line;
    }
}

}  // namespace
}  // namespace velmoranth::simulator::toolkit_screens_test
