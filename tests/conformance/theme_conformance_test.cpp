// Real themes on every simulated home screen: each icon that a theme holds for an app shows with
// the pixels of its file, as far as the screen has room for them.
#include "desktop/files/create_device_root.h"
#include "desktop/image_io/image_io.h"
#include "desktop/imaging/graphics_context.h"
#include "desktop/plist/property_lists.h"
#include "simulator/artwork/artwork.h"
#include "simulator/home_screen/apps.h"
#include "simulator/process/launcher.h"
#include "tests/support/places.h"

#include <gtest/gtest.h>
#include <stdlib.h>  // NOLINT(modernize-deprecated-headers): mkdtemp() is POSIX's

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>
#include <string>
#include <tuple>
#include <vector>

namespace velmoranth::simulator::theme_conformance_test {
namespace {

namespace fs = std::filesystem;

fs::path samples() {
    return tests::samples("themes");
}

std::vector<std::uint8_t> bytesOf(const fs::path& path) {
    std::ifstream stream(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

// Theme folders: those that hold IconBundles.
std::vector<fs::path> iconThemes() {
    std::vector<fs::path> found;
    std::error_code none;
    for (const auto& author : fs::directory_iterator(samples(), none)) {
        if (!author.is_directory()) {
            continue;
        }
        for (const auto& theme : fs::directory_iterator(author.path())) {
            if (fs::is_directory(theme.path() / "IconBundles")) {
                found.push_back(theme.path());
            }
        }
    }
    std::sort(found.begin(), found.end());
    return found;
}

class Device {
  public:
    explicit Device(const fs::path& theme) {
        std::string pattern = fs::temp_directory_path() / "velmoranth-XXXXXX";
        folder_ = ::mkdtemp(pattern.data());
        const auto root = desktop::createDeviceRoot(folder_ + "/device").value();
        const std::string name = theme.filename();
        EXPECT_TRUE(desktop::importFolder(*root, theme, "/Library/Themes/" + name));
        const platform::Data preferences = desktop::writeXmlPropertyList(platform::Dictionary{
            {"ActiveThemes", platform::PropertyList::Array{name}},
            {"enable", true},
            // A badge covers a corner of its icon.
            {"removeIconBadges", true},
            {"enableIconMask", true},
            {"enableOverlay", true},
        });
        std::ofstream(
            folder_ + "/device/var/mobile/Library/Preferences/com.qor.velmoranthprefs.plist",
            std::ios::binary)
            .write(reinterpret_cast<const char*>(preferences.data()),
                   static_cast<std::streamsize>(preferences.size()));
    }

    Device(const Device&) = delete;
    Device& operator=(const Device&) = delete;

    ~Device() {
        std::error_code ignored;
        fs::remove_all(folder_, ignored);
    }

    [[nodiscard]] std::string root() const { return folder_ + "/device"; }

  private:
    std::string folder_;
};

// The file stretched to the side of an icon on the screen.
std::shared_ptr<desktop::DesktopGraphicsContext> stretched(const std::vector<std::uint8_t>& pixels,
                                                           std::size_t width, std::size_t height,
                                                           std::size_t side) {
    auto context = desktop::DesktopGraphicsContext::create({.size = {side, side}});
    const auto points = static_cast<double>(side);
    context->drawPixels({pixels.data(), width, height, width * 4}, {{0, 0}, {points, points}});
    return context;
}

// The greatest difference of a component between the icon as it should be and the screen. Where the
// icon lets the wallpaper through, on a page, the two are composed; in a dock or an open folder
// only opaque pixels count.
int greatestDifference(const ShownIcon& icon, const Picture& picture,
                       const desktop::PixelView& expected,
                       const std::vector<std::uint8_t>& wallpaper, bool overMaterial) {
    int greatest = 0;
    for (std::size_t y = 0; y < expected.height; ++y) {
        for (std::size_t x = 0; x < expected.width; ++x) {
            const std::uint8_t* wanted = expected.row(y) + x * 4;
            if (overMaterial && wanted[3] != 255) {
                continue;
            }
            const std::size_t at = ((static_cast<std::size_t>(icon.y) + y) * picture.width +
                                    static_cast<std::size_t>(icon.x) + x) *
                                   4;
            for (std::size_t c = 0; c < 3; ++c) {
                const int composed =
                    wanted[c] + (wallpaper[at + c] * (255 - wanted[3]) + 127) / 255;
                greatest = std::max(greatest, std::abs(composed - picture.pixels[at + c]));
            }
        }
    }
    return greatest;
}

// No icon of a page begins lower on a screen; those of the dock do.
constexpr double kLowestPageIcon = 0.8;

// Whether an icon shows something else than its file: the day is written on the calendar's, but on
// a pad, where the finished image is replaced; the clock of iOS 13 has a face and hands.
bool isDrawnElsewhere(const std::string& identifier, const std::string& model, int system) {
    return (identifier == "com.apple.mobilecal" && model != "pad") ||
           (identifier == "com.apple.mobiletimer" && system == 13);
}

// One theme on one device, and what has been found of it.
class Check {
  public:
    Check(const fs::path& theme, const std::string& model, int system)
        : theme_(theme), model_(model), system_(system), device_(theme) {}

    // Every page, and every page of every folder.
    void run() {
        int pages = 1;
        for (int page = 1; page <= pages && !testing::Test::HasFatalFailure(); ++page) {
            ScreenRequest wanted = request();
            wanted.page = page;
            draw(wanted, [&](const RenderedScreen& screen) {
                pages = screen.pageCount;
                checkIcons(screen.icons, screen.picture, false);
            });
        }
        for (const HomeScreenItem& item : homeScreenItems()) {
            if (item.folder != nullptr) {
                checkFolder(identifierOf(item));
            }
        }
        // Nothing that the theme holds for a simulated app was passed over.
        for (const App* const app : homeScreenApps()) {
            const std::string identifier(app->bundleIdentifier);
            if (fs::exists(fileOf(identifier)) && !isDrawnElsewhere(identifier, model_, system_)) {
                EXPECT_TRUE(checked_.contains(identifier)) << identifier;
            }
        }
    }

  private:
    [[nodiscard]] ScreenRequest request() const {
        ScreenRequest wanted;
        wanted.device = deviceConfiguration(model_, system_).value();
        wanted.deviceFiles = device_.root();
        wanted.enginePath = tests::kEngineLibrary;
        return wanted;
    }

    [[nodiscard]] fs::path fileOf(const std::string& identifier) const {
        return theme_ / "IconBundles" / (identifier + "-large.png");
    }

    template <class Look>
    static void draw(const ScreenRequest& request, const Look& look) {
        const auto screen = renderScreen(request);
        ASSERT_TRUE(screen) << desktop::toLine(screen.error());
        look(*screen);
    }

    void checkFolder(const std::string& identifier) {
        int pages = 1;
        for (int page = 1; page <= pages && !testing::Test::HasFatalFailure(); ++page) {
            ScreenRequest wanted = request();
            wanted.screen = ScreenKind::folder;
            wanted.item = identifier;
            wanted.folderPage = page;
            draw(wanted, [&](const RenderedScreen& screen) {
                ASSERT_TRUE(screen.folder);
                pages = screen.folder->pageCount;
                checkIcons(screen.folder->icons, screen.picture, true);
            });
        }
    }

    void checkIcons(const std::vector<ShownIcon>& icons, const Picture& picture, bool inFolder) {
        const std::vector<std::uint8_t> wallpaper =
            drawWallpaper(static_cast<int>(picture.width), static_cast<int>(picture.height));
        for (const ShownIcon& icon : icons) {
            const fs::path file = fileOf(icon.bundleIdentifier);
            if (!fs::exists(file) || isDrawnElsewhere(icon.bundleIdentifier, model_, system_)) {
                continue;
            }
            SCOPED_TRACE(icon.bundleIdentifier);
            const auto decoded = desktop::decodeImage(bytesOf(file));
            ASSERT_TRUE(decoded) << desktop::toLine(decoded.error());
            const auto side = static_cast<std::size_t>(icon.side);
            const auto expected = stretched(desktop::toPremultipliedBgra(*decoded),
                                            decoded->layout.width, decoded->layout.height, side);
            const bool overMaterial =
                inFolder || icon.y > kLowestPageIcon * static_cast<double>(picture.height);
            EXPECT_LE(
                greatestDifference(icon, picture, expected->pixels(), wallpaper, overMaterial), 2);
            checked_.insert(icon.bundleIdentifier);
        }
    }

    fs::path theme_;
    std::string model_;
    int system_;
    Device device_;
    std::set<std::string> checked_;
};

class ThemeConformance : public testing::TestWithParam<std::tuple<std::string, int>> {};

TEST_P(ThemeConformance, EveryIconOfARealThemeShowsAsInItsFile) {
    const std::vector<fs::path> themes = iconThemes();
    if (themes.empty()) {
        GTEST_SKIP() << "no samples here; name their folder in VELMORANTH_SAMPLES";
    }
    for (const fs::path& theme : themes) {
        SCOPED_TRACE(theme.string());
        Check(theme, std::get<0>(GetParam()), std::get<1>(GetParam())).run();
    }
}

INSTANTIATE_TEST_SUITE_P(Screens, ThemeConformance,
                         testing::Combine(testing::Values("phone", "phone-667", "pad"),
                                          testing::Values(12, 13)));

}  // namespace
}  // namespace velmoranth::simulator::theme_conformance_test
