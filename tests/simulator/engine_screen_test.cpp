// Whole home screens with the engine's own library: what a user of a theme sees.
#include "desktop/files/create_device_root.h"
#include "desktop/image_io/image_io.h"
#include "desktop/notifications/notification_center.h"
#include "desktop/plist/property_lists.h"
#include "simulator/process/launcher.h"
#include "tests/support/places.h"

#include <gtest/gtest.h>
#include <stdlib.h>  // NOLINT(modernize-deprecated-headers): mkdtemp() is POSIX's

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>
#include <vector>

namespace velmoranth::simulator::engine_screen_test {
namespace {

using namespace std::chrono_literals;
using Pixel = std::array<std::uint8_t, 4>;  // B, G, R, A

constexpr Pixel kMagenta{255, 0, 255, 255};
constexpr Pixel kGreen{0, 255, 0, 255};
constexpr const char* kMaps = "com.apple.Maps";
constexpr const char* kMusic = "com.apple.Music";
constexpr const char* kCalendar = "com.apple.mobilecal";

void writeFile(const std::string& path, const platform::Data& bytes) {
    std::filesystem::create_directories(std::filesystem::path(path).parent_path());
    std::ofstream file(path, std::ios::binary);
    std::copy(bytes.begin(), bytes.end(), std::ostreambuf_iterator<char>(file));
    ASSERT_TRUE(file.good()) << path;
}

// Every pixel `pixel` but a black frame of one pixel, so that a picture that is moved or scaled is
// seen.
platform::Data framedSquare(std::size_t side, const Pixel& pixel) {
    std::vector<std::uint8_t> pixels;
    for (std::size_t y = 0; y < side; ++y) {
        for (std::size_t x = 0; x < side; ++x) {
            const bool edge = x == 0 || y == 0 || x == side - 1 || y == side - 1;
            const Pixel shown = edge ? Pixel{0, 0, 0, 255} : pixel;
            pixels.insert(pixels.end(), shown.begin(), shown.end());
        }
    }
    return desktop::encodePng(pixels, side, side, side * 4);
}

class EngineScreen : public testing::Test {
  public:
    void SetUp() override {
        std::string pattern = std::filesystem::temp_directory_path() / "velmoranth-XXXXXX";
        ASSERT_NE(mkdtemp(pattern.data()), nullptr);
        folder = pattern;
        auto made = desktop::createDeviceRoot(folder + "/device");
        ASSERT_TRUE(made);
        root = *made;
    }

    ~EngineScreen() override {
        std::error_code ignored;
        std::filesystem::remove_all(folder, ignored);
    }

    void addIcon(const std::string& theme, const std::string& identifier, std::size_t side,
                 const Pixel& pixel) const {
        writeFile(folder + "/device/Library/Themes/" + theme + "/IconBundles/" + identifier +
                      "-large.png",
                  framedSquare(side, pixel));
    }

    void setPreferences(const platform::Dictionary& preferences) const {
        writeFile(folder + "/device/User/Library/Preferences/com.qor.velmoranthprefs.plist",
                  desktop::writeXmlPropertyList(platform::PropertyList(preferences)));
    }

    [[nodiscard]] ScreenRequest request(std::string_view model, int system) const {
        ScreenRequest wanted;
        wanted.device = deviceConfiguration(model, system).value();
        wanted.deviceFiles = folder + "/device";
        wanted.enginePath = tests::kEngineLibrary;
        return wanted;
    }

    [[nodiscard]] RenderedScreen stock(std::string_view model, int system) const {
        ScreenRequest wanted = request(model, system);
        wanted.loadEngine = false;
        return renderScreen(wanted).value();
    }

    std::string folder;
    std::shared_ptr<desktop::DeviceRoot> root;
};

const ShownIcon& iconOf(const RenderedScreen& screen, std::string_view identifier) {
    const auto found =
        std::find_if(screen.icons.begin(), screen.icons.end(),
                     [&](const ShownIcon& icon) { return icon.bundleIdentifier == identifier; });
    EXPECT_NE(found, screen.icons.end()) << identifier;
    return *found;
}

Pixel pixelAt(const Picture& picture, double x, double y) {
    const std::size_t at =
        (static_cast<std::size_t>(y) * picture.width + static_cast<std::size_t>(x)) * 4;
    Pixel pixel{};
    std::copy_n(picture.pixels.begin() + static_cast<std::ptrdiff_t>(at), 4, pixel.begin());
    return pixel;
}

// The icon's pixels, row by row.
std::vector<Pixel> pixelsOf(const RenderedScreen& screen, std::string_view identifier) {
    const ShownIcon& icon = iconOf(screen, identifier);
    std::vector<Pixel> pixels;
    for (double y = 0; y < icon.side; ++y) {
        for (double x = 0; x < icon.side; ++x) {
            pixels.push_back(pixelAt(screen.picture, icon.x + x, icon.y + y));
        }
    }
    return pixels;
}

void expectFramedSquare(const RenderedScreen& screen, std::string_view identifier,
                        const Pixel& pixel) {
    const ShownIcon& icon = iconOf(screen, identifier);
    const std::vector<Pixel> shown = pixelsOf(screen, identifier);
    const auto side = static_cast<std::size_t>(icon.side);
    for (std::size_t i = 0; i < shown.size(); ++i) {
        const std::size_t x = i % side;
        const std::size_t y = i / side;
        const bool edge = x == 0 || y == 0 || x == side - 1 || y == side - 1;
        ASSERT_EQ(shown[i], (edge ? Pixel{0, 0, 0, 255} : pixel))
            << identifier << " at " << x << ", " << y;
    }
}

struct Case {
    std::string_view model;
    int system;
    std::size_t side;  // of an icon, pixels
};

constexpr std::array kCases{Case{"phone", 12, 180},     Case{"phone", 13, 180},
                            Case{"phone-667", 12, 120}, Case{"phone-667", 13, 120},
                            Case{"pad", 12, 152},       Case{"pad", 13, 152}};

TEST_F(EngineScreen, ThemeIconIsShownPixelForPixelInPageAndDock) {
    setPreferences({{"enable", true}, {"ActiveThemes", platform::PropertyList::Array{"A.theme"}}});
    for (const Case& on : kCases) {
        addIcon("A.theme", kMaps, on.side, kMagenta);
        addIcon("A.theme", kMusic, on.side, kGreen);
        const auto screen = renderScreen(request(on.model, on.system));
        ASSERT_TRUE(screen) << toLine(screen.error());
        expectFramedSquare(*screen, kMaps, kMagenta);
        expectFramedSquare(*screen, kMusic, kGreen);
        const RenderedScreen plain = stock(on.model, on.system);
        EXPECT_EQ(pixelsOf(*screen, "com.apple.weather"), pixelsOf(plain, "com.apple.weather"));
        EXPECT_LE(screen->peakMemoryBytes, std::size_t{200} * 1024 * 1024);
    }
}

TEST_F(EngineScreen, ThemingOffShowsTheStockScreen) {
    addIcon("A.theme", kMaps, 180, kMagenta);
    setPreferences({{"enable", false}, {"ActiveThemes", platform::PropertyList::Array{"A.theme"}}});
    for (const Case& on : kCases) {
        const auto screen = renderScreen(request(on.model, on.system));
        ASSERT_TRUE(screen) << toLine(screen.error());
        EXPECT_EQ(screen->picture, stock(on.model, on.system).picture) << on.model << on.system;
    }
}

TEST_F(EngineScreen, DeviceWithoutPreferencesShowsTheStockScreen) {
    for (const int system : {12, 13}) {
        const auto screen = renderScreen(request("phone", system));
        ASSERT_TRUE(screen) << toLine(screen.error());
        EXPECT_EQ(screen->picture, stock("phone", system).picture);
    }
}

TEST_F(EngineScreen, CalendarShowsTheThemesBackgroundUnderTheDay) {
    addIcon("A.theme", kCalendar, 180, kMagenta);
    setPreferences({{"enable", true}, {"ActiveThemes", platform::PropertyList::Array{"A.theme"}}});
    for (const int system : {12, 13}) {
        const auto screen = renderScreen(request("phone", system));
        ASSERT_TRUE(screen) << toLine(screen.error());
        const std::vector<Pixel> shown = pixelsOf(*screen, kCalendar);
        const Pixel black{0, 0, 0, 255};
        EXPECT_EQ(shown.front(), black) << system;
        EXPECT_EQ(shown.back(), black) << system;
        EXPECT_GT(std::count(shown.begin(), shown.end(), kMagenta), 180 * 180 / 2) << system;
        // Frame, background, and more: what is written over it.
        EXPECT_LT(std::count(shown.begin(), shown.end(), kMagenta) +
                      std::count(shown.begin(), shown.end(), black),
                  180 * 180)
            << system;
    }
}

TEST_F(EngineScreen, ThemeChangeShowsInTheNextPicture) {
    const platform::PropertyList::Array first{"A.theme"};
    const platform::PropertyList::Array second{"B.theme"};
    addIcon("A.theme", kMaps, 180, kMagenta);
    addIcon("B.theme", kMaps, 180, kGreen);
    for (const int system : {12, 13}) {
        setPreferences({{"enable", true}, {"ActiveThemes", first}});
        const auto running = RunningScreen::start(request("phone", system));
        ASSERT_TRUE(running) << toLine(running.error());
        const auto before = (*running)->render();
        ASSERT_TRUE(before);
        expectFramedSquare(*before, kMaps, kMagenta);

        setPreferences({{"enable", true}, {"ActiveThemes", second}});
        // The engine keeps the icons that it has themed until it is told.
        const auto kept = (*running)->render();
        ASSERT_TRUE(kept);
        expectFramedSquare(*kept, kMaps, kMagenta);

        ASSERT_GE(desktop::postToProcesses(*root, "com.qor.velmoranththemechanged.prefs").value(),
                  1);
        const auto after = (*running)->nextPicture(10s);
        ASSERT_TRUE(after) << toLine(after.error());
        expectFramedSquare(*after, kMaps, kGreen);
        EXPECT_EQ(std::count(after->log.begin(), after->log.end(), "Velmoranth UpdateIcons "), 1);
    }
}

}  // namespace
}  // namespace velmoranth::simulator::engine_screen_test
