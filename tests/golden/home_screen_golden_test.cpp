// Whole screens of the example theme, of scale 1, which keeps them small.
#include "desktop/files/create_device_root.h"
#include "desktop/plist/property_lists.h"
#include "simulator/process/launcher.h"
#include "tests/golden/golden_picture.h"
#include "tests/support/places.h"
#include "tests/support/temporary_folder.h"

#include <gtest/gtest.h>
#include <stdlib.h>  // NOLINT(modernize-deprecated-headers): setenv() is POSIX's

#include <filesystem>
#include <fstream>
#include <string>
#include <tuple>
#include <vector>

namespace velmoranth::simulator::home_screen_golden_test {
namespace {

namespace fs = std::filesystem;

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
    fs::copy(tests::kExampleTheme, folder / "device/Library/Themes/Kilnware.theme",
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
    request.deviceFiles = folder / "device";
    request.enginePath = tests::kEngineLibrary;
    request.screen = screen.kind;
    auto rendered = renderScreen(request);
    EXPECT_TRUE(rendered) << (rendered ? "" : toLine(rendered.error()));
    return rendered ? rendered->picture : Picture{};
}

class HomeScreenGolden : public testing::TestWithParam<Case> {
  protected:
    // The clock shows the machine's time zone.
    HomeScreenGolden() { setenv("TZ", "UTC", 1); }
};

TEST_P(HomeScreenGolden, LooksAsItDidWhenSomebodyLooked) {
    const Picture picture = draw(GetParam());
    tests::expectGolden(nameOf(GetParam()), {picture.width, picture.height, picture.pixels});
}

INSTANTIATE_TEST_SUITE_P(Screens, HomeScreenGolden,
                         testing::Combine(testing::Values("phone", "pad"), testing::Values(12, 13),
                                          testing::Values(kHome, kFolder), testing::Bool()),
                         [](const testing::TestParamInfo<Case>& which) {
                             return nameOf(which.param);
                         });

}  // namespace
}  // namespace velmoranth::simulator::home_screen_golden_test
