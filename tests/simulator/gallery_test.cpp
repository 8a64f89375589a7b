// The gallery: every image that the screens ask for, and what a theme changes in them.
#include "simulator/process/process.h"
#include "simulator/screens/gallery_screen.h"
#include "simulator/screens/sheet.h"

#include "screen_test.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <memory>
#include <numeric>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <tuple>
#include <utility>
#include <vector>

namespace velmoranth::simulator::gallery_test {
namespace {

constexpr Pixel kYellow{0, 255, 255, 255};

// A gallery in this process.
class Gallery {
  public:
    explicit Gallery(ScreenRequest request) : scale_(request.device.screen.scale) {
        request.screen = ScreenKind::gallery;
        auto process = SimulatedProcess::start(
            request, [this](const std::string& line) { log.push_back(line); });
        EXPECT_TRUE(process) << (process ? "" : toLine(process.error()));
        process_ = std::move(*process);
    }

    [[nodiscard]] GalleryScreen& screen() {
        return dynamic_cast<GalleryScreen&>(process_->screen());
    }

    [[nodiscard]] desktop::Runtime& runtime() { return process_->runtime(); }

    // Shows the item's page. Nothing when there is no such item.
    [[nodiscard]] std::optional<GalleryCell> find(std::string_view group, std::string_view name) {
        for (int page = 1; page <= screen().pageCount(); ++page) {
            screen().showPage(page);
            for (const GalleryCell& cell : screen().cells()) {
                if (cell.item->group == group && cell.item->name == name) {
                    return cell;
                }
            }
        }
        return std::nullopt;
    }

    // The colours in the middles of the item's two pictures, as the screen shows them.
    [[nodiscard]] std::pair<Pixel, Pixel> shown(std::string_view group, std::string_view name) {
        const std::optional<GalleryCell> cell = find(group, name);
        EXPECT_TRUE(cell) << name;
        if (!cell) {
            return {};
        }
        screen().layoutViews();
        const auto picture = screen().draw();
        const auto middle = [&](const platform::Rect& slot) {
            const auto x = static_cast<std::size_t>((slot.origin.x + slot.size.width / 2) * scale_);
            const auto y =
                static_cast<std::size_t>((slot.origin.y + slot.size.height / 2) * scale_);
            Pixel pixel{};
            std::copy_n(picture->pixels().row(y) + x * 4, 4, pixel.begin());
            return pixel;
        };
        return {middle(cell->before), middle(cell->after)};
    }

    // How wide one of the item's pictures is on the screen, pixels: the columns of its slot that
    // are not all of the plate's colour.
    [[nodiscard]] std::size_t widthOf(platform::Rect GalleryCell::* which, std::string_view group,
                                      std::string_view name) {
        const std::optional<GalleryCell> cell = find(group, name);
        EXPECT_TRUE(cell) << name;
        if (!cell) {
            return 0;
        }
        screen().layoutViews();
        const auto picture = screen().draw();
        const auto pixels = [&](double points) {
            return static_cast<std::size_t>(std::lround(points * scale_));
        };
        const platform::Rect& slot = (*cell).*which;
        const auto at = [&](std::size_t x, std::size_t y) {
            Pixel pixel{};
            std::copy_n(picture->pixels().row(y) + x * 4, 4, pixel.begin());
            return pixel;
        };
        const std::size_t top = pixels(slot.origin.y + 1);
        const std::size_t middle = pixels(slot.origin.x + slot.size.width / 2);
        std::size_t columns = 0;
        for (std::size_t x = pixels(slot.origin.x + 1);
             x < pixels(slot.origin.x + slot.size.width - 1); ++x) {
            bool isInk = false;
            for (std::size_t y = pixels(slot.origin.y + 4);
                 y < pixels(slot.origin.y + slot.size.height - 4); ++y) {
                isInk = isInk || at(x, y) != at(middle, top);
            }
            columns += isInk ? 1 : 0;
        }
        return columns;
    }

    // What the middle row of the item's answer has a quarter and three quarters along.
    [[nodiscard]] std::pair<Pixel, Pixel> quarters(std::string_view group, std::string_view name) {
        const std::optional<GalleryCell> cell = find(group, name);
        const auto bitmap =
            cell ? desktop::DesktopBitmapImage::of(platform::bitmapOf(cell->item->after()))
                 : nullptr;
        EXPECT_NE(bitmap, nullptr) << name;
        if (bitmap == nullptr) {
            return {};
        }
        const desktop::PixelView pixels = bitmap->pixels();
        const auto at = [&](std::size_t x) {
            Pixel pixel{};
            std::copy_n(pixels.row(pixels.height / 2) + x * 4, 4, pixel.begin());
            return pixel;
        };
        return {at(pixels.width / 4), at(pixels.width * 3 / 4)};
    }

    std::vector<std::string> log;

  private:
    double scale_;
    std::unique_ptr<SimulatedProcess> process_;
};

class GalleryOn : public testing::TestWithParam<std::tuple<std::string, int>> {
  public:
    [[nodiscard]] int system() const { return std::get<1>(GetParam()); }

    [[nodiscard]] ScreenRequest request(const platform::Dictionary& preferences = {}) const {
        return device.request(std::get<0>(GetParam()), system(), preferences);
    }

    // In each of the places that the other tests look at.
    void theme() const {
        device.png("IconBundles/com.apple.Maps-large.png", 180, 180, kMagenta);
        device.png("IconBundles/com.apple.compass-large.png", 180, 180, kMagenta);
        device.png("Bundles/com.apple.Preferences/WiFi@3x.png", 87, 87, kGreen);
        device.png("Bundles/com.apple.Preferences/WiFi@2x.png", 58, 58, kGreen);
        device.png("Bundles/com.apple.weather-framework/snow.png", 30, 30, kMagenta);
        device.png("Bundles/com.apple.SpringBoardHome/ClockIconBackgroundSquare.png", 180, 180,
                   kBlue);
        device.png("Bundles/com.apple.springboard/SBBadgeBG.png", 24, 24, kGreen);
        for (const char* const dot : {"SBPageDotCurrent", "SBPageDot", "Spotlight_Pages"}) {
            for (const char* const end : {".png", "@2x.png", "@3x.png"}) {
                device.png(std::string("Bundles/com.apple.springboard/") + dot + end, 24, 24,
                           kMagenta);
            }
        }
        device.png("UIImages/gear.png", 20, 20, kMagenta);
        device.png("UIImages/UISwitchKnob.png", 30, 30, kGreen);
    }

    ThemedDevice device;
};

INSTANTIATE_TEST_SUITE_P(Devices, GalleryOn,
                         testing::Combine(testing::Values("phone", "phone-667", "pad"),
                                          testing::Values(12, 13)));

TEST_P(GalleryOn, AllIsStockWhereNothingIsThemed) {
    theme();
    Gallery gallery(request({{"enable", false}}));
    std::size_t pictures = 0;
    for (int page = 1; page <= gallery.screen().pageCount(); ++page) {
        gallery.screen().showPage(page);
        for (const GalleryCell& cell : gallery.screen().cells()) {
            const platform::ImageRef before = cell.item->before();
            EXPECT_TRUE(samePixels(before, cell.item->after()))
                << cell.item->group << ": " << cell.item->name;
            pictures += before != nullptr ? 1 : 0;
        }
        gallery.screen().layoutViews();
    }
    EXPECT_GT(pictures, 120U);
    for (const std::string& line : gallery.log) {
        EXPECT_EQ(line.find("does not"), std::string::npos) << line;
    }
}

TEST_P(GalleryOn, ThemedImagesLieBesideThePlatformsOwn) {
    theme();
    Gallery gallery(request());
    const auto expectReplaced = [&](std::string_view group, std::string_view name,
                                    const Pixel& pixel) {
        const auto [before, after] = gallery.shown(group, name);
        EXPECT_NE(before, pixel) << group << ": " << name;
        EXPECT_EQ(after, pixel) << group << ": " << name;
    };
    expectReplaced("Home Screen Icons", "Maps", kMagenta);
    expectReplaced("Folder Miniatures", "Compass", kMagenta);
    expectReplaced("Icons in Other Places", "Suggestion", kMagenta);
    expectReplaced("Settings", "WiFi", kGreen);
    expectReplaced("Weather", "snow", kMagenta);
    expectReplaced("Home Screen", "Badge", kGreen);
    expectReplaced("Home Screen", "Page Dot", kMagenta);
    expectReplaced("Home Screen", "Search Dot", kMagenta);
    expectReplaced("Glyphs", "gear", kMagenta);
    expectReplaced("Controls", "UISwitchKnob.png", kGreen);
    if (system() >= 13) {
        expectReplaced("Icons in Other Places", "Widget", kMagenta);
        expectReplaced("Live Icons", "ClockIconBackgroundSquare", kBlue);
    }
    // What the theme does not have.
    const std::optional<GalleryCell> stock = gallery.find("Home Screen Icons", "Notes");
    ASSERT_TRUE(stock);
    EXPECT_TRUE(samePixels(stock->item->before(), stock->item->after()));
}

// Whoever puts a picture under the name below such a part sees it there.
TEST_P(GalleryOn, PartsOfTheHomeScreenHaveTheNamesOfTheirFiles) {
    std::vector<std::string> named;
    {
        ScreenRequest without = request();  // one process has the engine once
        without.loadEngine = false;
        Gallery gallery(without);
        for (int page = 1; page <= gallery.screen().pageCount(); ++page) {
            gallery.screen().showPage(page);
            for (const GalleryCell& cell : gallery.screen().cells()) {
                if (cell.item->group == "Home Screen") {
                    // A mask is a gray picture, and hides where it is light.
                    device.png(cell.item->bundle, 60, 60, kMagenta);
                    named.push_back(cell.item->name);
                }
            }
        }
    }
    EXPECT_EQ(named.size(), 8U);
    Gallery gallery(request({{"removeDock", true}}));
    for (const std::string& name : named) {
        const std::optional<GalleryCell> cell = gallery.find("Home Screen", name);
        ASSERT_TRUE(cell) << name;
        EXPECT_FALSE(samePixels(cell->item->before(), cell->item->after()))
            << name << " by " << cell->item->bundle;
    }
}

constexpr platform::Rect GalleryCell::* kOwn = &GalleryCell::before;

// A picture that is too large is seen to be that.
TEST_P(GalleryOn, APairIsShownAtOneScale) {
    ScreenRequest without = request();
    without.loadEngine = false;
    const auto whole = static_cast<double>(Gallery(without).widthOf(kOwn, "Glyphs", "gear"));
    device.png("UIImages/gear.png", 114, 114, kMagenta);  // three times as wide as its slot
    const auto shrunk = static_cast<double>(Gallery(request()).widthOf(kOwn, "Glyphs", "gear"));
    EXPECT_GT(whole, 30);
    EXPECT_NEAR(shrunk, whole / 3, 3);
}

// On the screen a picture of any size fills such a place.
TEST_P(GalleryOn, APairThatAScreenStretchesIsShownAtOneSize) {
    std::vector<std::pair<std::string_view, std::string_view>> items{
        {"Home Screen Icons", "Maps"},
        {"Folder Miniatures", "Compass"},
        {"Icons in Other Places", "Widget"},
        {"Icons in Other Places", "Switcher"},
        {"Home Screen", "Badge"},
        {"Settings", "WiFi"}};
    if (system() >= 13) {
        items.emplace_back("Icons in Other Places", "Notification");
    }
    ScreenRequest without = request();
    without.loadEngine = false;
    Gallery stock(without);
    device.png("IconBundles/com.apple.Maps-large.png", 180, 180, kMagenta);
    device.png("IconBundles/com.apple.compass-large.png", 180, 180, kMagenta);
    device.png("Bundles/com.apple.springboard/SBBadgeBG.png", 90, 90, kMagenta);
    device.png("Bundles/com.apple.Preferences/WiFi.png", 90, 90, kMagenta);
    Gallery themed(request());
    for (const auto& [group, name] : items) {
        const auto width = static_cast<double>(stock.widthOf(kOwn, group, name));
        EXPECT_GT(width, 10) << name;
        EXPECT_EQ(themed.widthOf(kOwn, group, name), stock.widthOf(kOwn, group, name)) << name;
        // The theme's Maps fills its whole slot, so that no plate is left to be told from it.
        if (name != "Maps") {
            EXPECT_NEAR(static_cast<double>(themed.widthOf(&GalleryCell::after, group, name)),
                        width, 2)
                << name;
        }
    }
}

TEST_P(GalleryOn, SettingsIconsAndTheClockAreMaskedAndOverlaid) {
    theme();
    // A mask's white hides; the overlay covers the left half.
    device.png("Bundles/com.apple.mobileicons.framework/AppIconMask.png", 120, 120, kBlack, kWhite);
    for (const char* const overlay : {"iPhoneOverlay", "iPadOverlay"}) {
        device.png(std::string("Velmoranth/") + overlay + ".png", 60, 60, kYellow, {0, 0, 0, 0});
    }
    std::vector<std::pair<std::string_view, std::string_view>> icons{{"Settings", "WiFi"}};
    if (system() >= 13) {
        icons.emplace_back("Live Icons", "ClockIconBackgroundSquare");
    }
    Gallery gallery(request({{"enableIconMask", true}, {"enableOverlay", true}}));
    for (const auto& [group, name] : icons) {
        const auto [left, right] = gallery.quarters(group, name);
        EXPECT_EQ(left, kYellow) << name;
        EXPECT_EQ(right, (Pixel{0, 0, 0, 0})) << name;
    }
    // A glyph is neither.
    EXPECT_EQ(gallery.quarters("Glyphs", "gear"), std::pair(kMagenta, kMagenta));
}

TEST_P(GalleryOn, HasTheClassesOfEveryProcess) {
    ScreenRequest wanted = request();
    wanted.loadEngine = false;
    Gallery gallery(wanted);
    for (const char* const name : {"SBIconView", "SBIconController", "PKIconImageCache",
                                   "WGWidgetInfo", "UISwitchModernVisualElement"}) {
        EXPECT_NE(gallery.runtime().getClass(name), nullptr) << name;
    }
    EXPECT_EQ(gallery.runtime().getClass("WeatherImageLoader") != nullptr, system() >= 13);
    EXPECT_EQ(gallery.find("Icons in Other Places", "Notification").has_value(), system() >= 13);
    EXPECT_EQ(gallery.find("Live Icons", "ClockIconBackgroundSquare").has_value(), system() >= 13);
    EXPECT_EQ(gallery.find("Home Screen Icons", "Clock").has_value(), system() < 13);
}

TEST_P(GalleryOn, HasEveryImageOnceAndNothingOverlaps) {
    ScreenRequest wanted = request();
    wanted.loadEngine = false;
    Gallery shown(wanted);
    GalleryScreen& gallery = shown.screen();
    std::set<std::tuple<std::string_view, std::string, std::string>> seen;
    std::set<std::pair<std::string, std::string>> named;
    for (int page = 1; page <= gallery.pageCount(); ++page) {
        gallery.showPage(page);
        ASSERT_EQ(gallery.page(), page);
        std::vector<platform::Rect> taken;
        for (const GalleryCell& cell : gallery.cells()) {
            EXPECT_TRUE(seen.emplace(cell.item->group, cell.item->name, cell.item->bundle).second)
                << cell.item->name;
            named.emplace(cell.item->name, cell.item->bundle);
            const auto joined = [](const std::vector<std::string>& lines) {
                return std::accumulate(lines.begin(), lines.end(), std::string());
            };
            EXPECT_EQ(joined(cell.name), cell.item->name);
            EXPECT_EQ(joined(cell.bundle), cell.item->bundle);
            const double width = cell.after.origin.x + cell.after.size.width - cell.before.origin.x;
            for (const std::string& line : cell.name) {
                EXPECT_LE(desktop::measureText(line, {.size = 9}).width, width) << line;
            }
            platform::Rect texts = cell.before;
            texts.origin.y += texts.size.height;
            texts.size = {width, 11.0 * static_cast<double>(cell.name.size()) +
                                     9.5 * static_cast<double>(cell.bundle.size())};
            for (const platform::Rect& slot : {cell.before, cell.after, texts}) {
                EXPECT_GE(slot.origin.x, 0);
                EXPECT_LE(slot.origin.x + slot.size.width, wanted.device.screen.width);
                EXPECT_LE(slot.origin.y + slot.size.height, wanted.device.screen.height);
                for (const platform::Rect& other : taken) {
                    EXPECT_TRUE(slot.origin.x >= other.origin.x + other.size.width ||
                                other.origin.x >= slot.origin.x + slot.size.width ||
                                slot.origin.y >= other.origin.y + other.size.height ||
                                other.origin.y >= slot.origin.y + slot.size.height)
                        << cell.item->name;
                }
                taken.push_back(slot);
            }
        }
    }
    for (const BundleCatalog& catalog : bundleCatalogs()) {
        if (isIn(catalog.systems, wanted.device.system)) {
            for (const std::string_view name : catalog.names()) {
                EXPECT_TRUE(named.contains({std::string(name), std::string(catalog.identifier)}))
                    << name;
            }
        }
    }
    gallery.showPage(1000);
    EXPECT_EQ(gallery.page(), gallery.pageCount());
    gallery.showPage(-3);
    EXPECT_EQ(gallery.page(), 1);
}

TEST(GalleryText, IsWholeOnAsManyLinesAsItNeeds) {
    const desktop::TextStyle style{.size = 9};
    const auto width = [&](const std::string& text) {
        return desktop::measureText(text, style).width;
    };
    using Lines = std::vector<std::string>;
    EXPECT_EQ(wholeLines("", style, 80), Lines());
    EXPECT_EQ(wholeLines("gear", style, width("gear")), Lines{"gear"});
    EXPECT_EQ(wholeLines("person.crop.fill", style, width("person.crop.")),
              (Lines{"person.crop.", "fill"}));
    EXPECT_EQ(wholeLines("UITabBarSearch", style, width("UITabBarSe")),
              (Lines{"UITabBar", "Search"}));
    EXPECT_EQ(wholeLines("com.MobileBook", style, width("com.MobileB")),
              (Lines{"com.", "MobileBook"}))
        << "a mark goes before a capital letter";
    EXPECT_EQ(wholeLines("Velmoranth/Folder.png", style, width("Velmoranth/Folder.")),
              (Lines{"Velmoranth/", "Folder.png"}));
    EXPECT_EQ(wholeLines("magnifyingglass", style, width("magnify")).front(), "magnify");
    // Where not even a character fits, each has a line; none is torn.
    EXPECT_EQ(wholeLines("ää", style, 1), (Lines{"ä", "ä"}));
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
}  // namespace velmoranth::simulator::gallery_test
