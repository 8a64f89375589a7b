// Whole screens of the example theme against pictures that were looked at before they were kept, in
// pictures/. They are of scale 1, which keeps them small. With VELMORANTH_KEEP_PICTURES set the
// pictures are written instead: look at each before it is committed.
//
// Tolerance: a component may differ by kSmallDifference everywhere (another rounding), and beyond
// that in kMostOddPixels of the pixels, and of the pixels of any tile in kMostOddOfTile (another
// rasteriser of letters), so that nothing as small as a page dot can go missing. A failure leaves
// the difference as a picture: gray where nothing differs, the brighter the more it does.
#include "desktop/files/create_device_root.h"
#include "desktop/image_io/image_io.h"
#include "desktop/plist/property_lists.h"
#include "simulator/launcher.h"
#include "tests/support/temporary_folder.h"

#include <gtest/gtest.h>
#include <stdlib.h>  // NOLINT(modernize-deprecated-headers): setenv() is POSIX's

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <tuple>
#include <vector>

namespace velmoranth::simulator {
namespace {

namespace fs = std::filesystem;

constexpr int kSmallDifference = 3;
constexpr double kMostOddPixels = 0.002;
constexpr std::size_t kTile = 8;  // pixels a side
constexpr std::size_t kMostOddOfTile = 16;

// 2019-12-24 09:41 UTC in seconds since 2001.
constexpr double kMoment = 598873260;

struct Screen {
    const char* name;
    ScreenKind kind;
};

constexpr Screen kHome{"home", ScreenKind::home};
constexpr Screen kFolder{"folder", ScreenKind::folder};

using Case = std::tuple<const char*, int, Screen, bool>;  // device, system, screen, theming

std::string nameOf(const Case& which) {
    const auto& [model, system, screen, themed] = which;
    return std::string(model) + "_ios" + std::to_string(system) + "_" + screen.name +
           (themed ? "_themed" : "_stock");
}

Picture draw(const Case& which) {
    const auto& [model, system, screen, themed] = which;
    const tests::TemporaryFolder folder;
    EXPECT_TRUE(desktop::createDeviceRoot(folder / "device"));
    fs::copy(EXAMPLE_THEME, folder / "device/Library/Themes/Kilnware.theme",
             fs::copy_options::recursive);
    const platform::Data preferences = desktop::writeXmlPropertyList(platform::PropertyList(
        platform::Dictionary{{"ActiveThemes", platform::PropertyList::Array{"Kilnware.theme"}},
                             {"enable", themed},
                             {"enableIconMask", true},
                             {"enableOverlay", true},
                             {"enableShadow", true},
                             {"removeDock", true}}));
    folder.file("device/User/Library/Preferences/com.qor.velmoranthprefs.plist",
                std::string(preferences.begin(), preferences.end()));
    ScreenRequest request;
    request.device = deviceConfiguration(model, system).value();
    request.device.screen.scale = 1;
    request.device.date = platform::Date{kMoment};
    request.rootFolder = folder / "device";
    request.enginePath = ENGINE_LIBRARY;
    request.screen = screen.kind;
    auto rendered = renderScreen(request);
    EXPECT_TRUE(rendered) << (rendered ? "" : toLine(rendered.error()));
    return rendered ? rendered->picture : Picture{};
}

void write(const fs::path& path, const std::vector<std::uint8_t>& pixels, const Picture& size) {
    fs::create_directories(path.parent_path());
    const platform::Data bytes =
        desktop::encodePng(pixels, size.width, size.height, size.width * 4);
    std::ofstream file(path, std::ios::binary);
    std::copy(bytes.begin(), bytes.end(), std::ostreambuf_iterator<char>(file));
    ASSERT_TRUE(file.good()) << path;
}

// Premultiplied B, G, R, A of a picture of that size; empty when there is none.
std::vector<std::uint8_t> kept(const fs::path& path, const Picture& size) {
    std::ifstream file(path, std::ios::binary);
    const platform::Data bytes{std::istreambuf_iterator<char>(file), {}};
    const auto decoded = desktop::decodeImage(bytes);
    if (!decoded || decoded->layout.width != size.width || decoded->layout.height != size.height) {
        return {};
    }
    return desktop::toPremultipliedBgra(*decoded);
}

class HomeScreenGolden : public testing::TestWithParam<Case> {};

TEST_P(HomeScreenGolden, LooksAsItDidWhenSomebodyLooked) {
    const Picture picture = draw(GetParam());
    const fs::path path = fs::path(GOLDEN_PICTURES) / (nameOf(GetParam()) + ".png");
    if (std::getenv("VELMORANTH_KEEP_PICTURES") != nullptr) {
        write(path, picture.pixels, picture);
        return;
    }
    const std::vector<std::uint8_t> expected = kept(path, picture);
    ASSERT_EQ(expected.size(), picture.pixels.size()) << path << ": no picture of this size";
    std::vector<std::uint8_t> difference(expected.size(), 255);
    std::size_t odd = 0;
    const std::size_t tilesAcross = (picture.width + kTile - 1) / kTile;
    std::vector<std::size_t> oddOfTile(tilesAcross * ((picture.height + kTile - 1) / kTile));
    for (std::size_t i = 0; i < expected.size(); i += 4) {
        int greatest = 0;
        for (std::size_t c = 0; c < 3; ++c) {
            greatest = std::max(greatest, std::abs(expected[i + c] - picture.pixels[i + c]));
        }
        if (greatest > kSmallDifference) {
            const std::size_t pixel = i / 4;
            ++odd;
            ++oddOfTile[pixel / picture.width / kTile * tilesAcross +
                        pixel % picture.width / kTile];
        }
        const int shown = greatest == 0 ? 60 : 128 + greatest / 2;
        std::fill_n(difference.begin() + static_cast<std::ptrdiff_t>(i), 3,
                    static_cast<std::uint8_t>(shown));
    }
    const double most = kMostOddPixels * static_cast<double>(expected.size() / 4);
    const std::size_t oddest = *std::max_element(oddOfTile.begin(), oddOfTile.end());
    if (static_cast<double>(odd) > most || oddest > kMostOddOfTile) {
        const fs::path out = fs::path(GOLDEN_DIFFERENCES) / path.filename();
        write(out, difference, picture);
        ADD_FAILURE() << odd << " pixels differ from " << path << ", " << oddest
                      << " of them in one tile; where: " << out;
    }
}

INSTANTIATE_TEST_SUITE_P(Screens, HomeScreenGolden,
                         testing::Combine(testing::Values("phone", "pad"), testing::Values(12, 13),
                                          testing::Values(kHome, kFolder), testing::Bool()),
                         [](const testing::TestParamInfo<Case>& which) {
                             return nameOf(which.param);
                         });

}  // namespace
}  // namespace velmoranth::simulator

int main(int argc, char** argv) {
    if (velmoranth::simulator::isSimulatedProcess(argc, argv)) {
        return velmoranth::simulator::simulatedProcessMain(argc, argv);
    }
    // The clock shows the machine's time zone.
    setenv("TZ", "UTC", 1);
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
