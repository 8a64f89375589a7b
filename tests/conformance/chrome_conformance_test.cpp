// The folder and badge pictures of real themes, where they are: each is to show as in its file,
// stretched to its view.
#include "desktop/files/create_device_root.h"
#include "desktop/image_io/image_io.h"
#include "desktop/imaging/bitmap_image.h"
#include "desktop/imaging/graphics_context.h"
#include "desktop/plist/property_lists.h"
#include "simulator/artwork/artwork.h"
#include "simulator/process/launcher.h"
#include "tests/support/places.h"
#include "tests/support/temporary_folder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <memory>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

namespace velmoranth::simulator::chrome_conformance_test {
namespace {

namespace fs = std::filesystem;

constexpr const char* kFolder = "ANEMFolderIconBG";
constexpr const char* kBadge = "SBBadgeBG";

fs::path samples() {
    return tests::samples("themes");
}

// The file that a device with a screen of scale 3 loads for the name; empty when there is none.
fs::path fileOf(const fs::path& theme, const std::string& name) {
    for (const char* const suffix : {"@3x.png", "@2x.png", ".png"}) {
        const fs::path file = theme / "Bundles/com.apple.springboard" / (name + suffix);
        if (fs::exists(file)) {
            return file;
        }
    }
    return {};
}

std::vector<fs::path> themesWith(const std::string& name) {
    std::vector<fs::path> found;
    std::error_code none;
    for (const auto& author : fs::directory_iterator(samples(), none)) {
        if (!author.is_directory()) {
            continue;
        }
        for (const auto& theme : fs::directory_iterator(author.path())) {
            if (theme.is_directory() && !fileOf(theme.path(), name).empty()) {
                found.push_back(theme.path());
            }
        }
    }
    std::sort(found.begin(), found.end());
    return found;
}

RenderedScreen screenOf(const fs::path& theme, int system) {
    const tests::TemporaryFolder folder;
    EXPECT_TRUE(desktop::createDeviceRoot(folder / "device"));
    fs::copy(theme, folder / "device/Library/Themes/Real.theme", fs::copy_options::recursive);
    const platform::Data preferences =
        desktop::writeXmlPropertyList(platform::PropertyList(platform::Dictionary{
            {"ActiveThemes", platform::PropertyList::Array{"Real.theme"}}, {"enable", true}}));
    folder.file("device/User/Library/Preferences/com.qor.velmoranthprefs.plist",
                std::string(preferences.begin(), preferences.end()));
    ScreenRequest request;
    request.device = deviceConfiguration("phone", system).value();
    request.deviceFiles = folder / "device";
    request.enginePath = tests::kEngineLibrary;
    return renderScreen(request).value();
}

std::shared_ptr<desktop::DesktopGraphicsContext> stretched(const fs::path& file, std::size_t side) {
    std::ifstream stream(file, std::ios::binary);
    const auto decoded =
        desktop::decodeImage(platform::Data{std::istreambuf_iterator<char>(stream), {}});
    EXPECT_TRUE(decoded) << file;
    const std::vector<std::uint8_t> pixels = desktop::toPremultipliedBgra(*decoded);
    auto context = desktop::DesktopGraphicsContext::create({.size = {side, side}});
    context->drawPixels(
        {pixels.data(), decoded->layout.width, decoded->layout.height, decoded->layout.width * 4},
        {{0, 0}, {static_cast<double>(side), static_cast<double>(side)}});
    return context;
}

// The greatest difference of a component from the picture over the wallpaper, at the pixels that
// nothing else covers. `left` and `top` in pixels of the screen.
int greatestDifference(const RenderedScreen& screen, const fs::path& file, std::size_t side,
                       std::size_t left, std::size_t top,
                       const std::function<bool(std::size_t x, std::size_t y)>& isBare) {
    const Picture& picture = screen.picture;
    const std::vector<std::uint8_t> wallpaper =
        drawWallpaper(static_cast<int>(picture.width), static_cast<int>(picture.height));
    const auto expected = stretched(file, side);
    const desktop::PixelView view = expected->pixels();
    int greatest = 0;
    for (std::size_t y = 0; y < side; ++y) {
        for (std::size_t x = 0; x < side; ++x) {
            if (!isBare(x, y)) {
                continue;
            }
            const std::uint8_t* const wanted = view.row(y) + x * 4;
            const std::size_t at = ((top + y) * picture.width + left + x) * 4;
            for (std::size_t c = 0; c < 3; ++c) {
                const int composed =
                    wanted[c] + (wallpaper[at + c] * (255 - wanted[3]) + 127) / 255;
                greatest = std::max(greatest, std::abs(composed - picture.pixels[at + c]));
            }
        }
    }
    return greatest;
}

const ShownIcon& iconOf(const RenderedScreen& screen, std::string_view identifier) {
    return *std::find_if(screen.icons.begin(), screen.icons.end(), [&](const ShownIcon& icon) {
        return icon.bundleIdentifier == identifier;
    });
}

class ChromeConformance : public testing::TestWithParam<int> {};

TEST_P(ChromeConformance, FolderPicturesOfRealThemesShowAsInTheirFiles) {
    const std::vector<fs::path> themes = themesWith(kFolder);
    if (themes.empty()) {
        GTEST_SKIP() << "no samples here; name their folder in VELMORANTH_SAMPLES";
    }
    for (const fs::path& theme : themes) {
        const RenderedScreen screen = screenOf(theme, GetParam());
        const ShownIcon& folder = iconOf(screen, "folder.utilities");
        // Between the edge and the miniatures, which begin at 7.5 points.
        constexpr std::size_t kSide = 180;
        constexpr std::size_t kBand = 21;
        EXPECT_LE(greatestDifference(
                      screen, fileOf(theme, kFolder), kSide, static_cast<std::size_t>(folder.x),
                      static_cast<std::size_t>(folder.y),
                      [](std::size_t x, std::size_t y) {
                          return std::min({x, y, kSide - 1 - x, kSide - 1 - y}) < kBand;
                      }),
                  2)
            << theme;
    }
}

TEST_P(ChromeConformance, BadgePicturesOfRealThemesShowAsInTheirFiles) {
    const std::vector<fs::path> themes = themesWith(kBadge);
    if (themes.empty()) {
        GTEST_SKIP() << "no samples here; name their folder in VELMORANTH_SAMPLES";
    }
    for (const fs::path& theme : themes) {
        const RenderedScreen screen = screenOf(theme, GetParam());
        const ShownIcon& icon = iconOf(screen, "com.apple.reminders");
        // 24 points, 10 over the icon's right and upper edges. What lies beyond the icon has the
        // wallpaper behind it; the digit is in the middle.
        constexpr std::size_t kSide = 72;
        constexpr std::size_t kOverhang = 30;
        EXPECT_LE(
            greatestDifference(screen, fileOf(theme, kBadge), kSide,
                               static_cast<std::size_t>(icon.x + icon.side) + kOverhang - kSide,
                               static_cast<std::size_t>(icon.y) - kOverhang,
                               [](std::size_t x, std::size_t y) {
                                   const bool beyondIcon = y < kOverhang || x >= kSide - kOverhang;
                                   const bool nearDigit = x > 15 && x < 57 && y > 8;
                                   return beyondIcon && !nearDigit;
                               }),
            2)
            << theme;
    }
}

INSTANTIATE_TEST_SUITE_P(Systems, ChromeConformance, testing::Values(12, 13));

}  // namespace
}  // namespace velmoranth::simulator::chrome_conformance_test
