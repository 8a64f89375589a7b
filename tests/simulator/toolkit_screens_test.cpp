// The screens of an ordinary app with the engine's library: what a theme changes in them, and
// where. This program starts itself again as a simulated process.
#include "simulator/process.h"
#include "simulator/screens/gallery_screen.h"
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

namespace velmoranth::simulator {
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
    for (const ScreenKind kind : {ScreenKind::controls, ScreenKind::gallery}) {
        EXPECT_EQ(look(kind).screen().picture, stock(kind));
    }
    // On the first page of either screen.
    device.png("UIImages/UINavigationBarBackIndicatorDefault.png", 13, 21, kMagenta);
    for (const ScreenKind kind : {ScreenKind::controls, ScreenKind::gallery}) {
        EXPECT_EQ(look(kind, {{"enable", false}}).screen().picture, stock(kind));
        EXPECT_NE(look(kind).screen().picture, stock(kind));
    }
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

TEST_P(AppScreenOn, GalleryShowsWhatIsReplacedBesideWhatIsNot) {
    device.png("UIImages/gear.png", 20, 20, kMagenta);
    device.png("Bundles/com.apple.weather-framework/snow.png", 30, 30, kGreen);
    device.png("UIImages/UISwitchKnob.png", 30, 30, kYellow);
    const double scale = look(ScreenKind::gallery).screen().picture.scale;
    const auto square = [scale](double side) {
        return static_cast<std::size_t>(side * scale * side * scale);
    };
    std::size_t magenta = 0;
    std::size_t green = 0;
    std::size_t yellow = 0;
    int pages = 1;
    for (int page = 1; page <= pages; ++page) {
        ScreenRequest wanted = request(ScreenKind::gallery);
        wanted.page = page;
        const Look shown(renderScreen(wanted).value());
        EXPECT_EQ(shown.screen().page, page);
        pages = shown.screen().pageCount;
        magenta += shown.count(kMagenta);
        green += shown.count(kGreen);
        yellow += shown.count(kYellow);
    }
    EXPECT_GT(pages, 1);
    EXPECT_EQ(magenta, square(20));
    EXPECT_EQ(green, square(30));
    EXPECT_EQ(yellow, square(30));
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

TEST_P(AppScreenOn, GalleryHasEveryImageOnceAndNothingOverlaps) {
    ScreenRequest wanted = request(ScreenKind::gallery);
    wanted.loadEngine = false;
    auto process = SimulatedProcess::start(wanted, [](const std::string&) {});
    ASSERT_TRUE(process);
    auto& gallery = dynamic_cast<GalleryScreen&>((*process)->screen());
    std::size_t expected = 1;  // the knob
    for (const BundleCatalog& catalog : bundleCatalogs()) {
        expected += isIn(catalog.systems, wanted.device.system) ? catalog.names().size() : 0;
    }
    std::vector<GalleryItem> seen;
    for (int page = 1; page <= gallery.pageCount(); ++page) {
        gallery.showPage(page);
        ASSERT_EQ(gallery.page(), page);
        std::vector<platform::Rect> taken;
        for (const GalleryCell& cell : gallery.cells()) {
            EXPECT_EQ(std::ranges::find(seen, cell.item), seen.end()) << cell.item.name;
            seen.push_back(cell.item);
            for (const platform::Rect& slot : {cell.before, cell.after}) {
                EXPECT_GE(slot.origin.x, 0);
                EXPECT_LE(slot.origin.x + slot.size.width, wanted.device.screen.width);
                EXPECT_LE(slot.origin.y + slot.size.height + 25, wanted.device.screen.height);
                for (const platform::Rect& other : taken) {
                    EXPECT_TRUE(slot.origin.x >= other.origin.x + other.size.width ||
                                other.origin.x >= slot.origin.x + slot.size.width ||
                                slot.origin.y >= other.origin.y + other.size.height ||
                                other.origin.y >= slot.origin.y + slot.size.height)
                        << cell.item.name;
                }
                taken.push_back(slot);
            }
        }
    }
    EXPECT_EQ(seen.size(), expected);
    gallery.showPage(1000);
    EXPECT_EQ(gallery.page(), gallery.pageCount());
    gallery.showPage(-3);
    EXPECT_EQ(gallery.page(), 1);
}

TEST(GalleryText, IsShortenedInTheMiddle) {
    const desktop::TextStyle style{.size = 9};
    EXPECT_EQ(shortenedInTheMiddle("gear", style, 80), "gear");
    EXPECT_EQ(shortenedInTheMiddle("", style, 80), "");
    const std::string shorter = shortenedInTheMiddle(std::string(40, 'm') + ".end", style, 80);
    EXPECT_TRUE(shorter.starts_with("mm"));
    EXPECT_TRUE(shorter.ends_with(".end"));
    EXPECT_NE(shorter.find("…"), std::string::npos);
    EXPECT_LE(desktop::measureText(shorter, style).width, 80);
    EXPECT_EQ(shortenedInTheMiddle("gear", style, 0.1), "…");
}

}  // namespace
}  // namespace velmoranth::simulator

int main(int argc, char** argv) {
    if (velmoranth::simulator::isSimulatedProcess(argc, argv)) {
        return velmoranth::simulator::simulatedProcessMain(argc, argv);
    }
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
