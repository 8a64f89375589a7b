// The calendar's icon of a theme, and of what is installed for themes that say nothing of it: a
// sheet of ten days in five languages, one of them written from the right and three not in Latin
// letters.
#include "core/settings.h"
#include "desktop/imaging/bitmap_image.h"
#include "hooks/images/drawn_icon_hooks.h"
#include "tests/golden/golden_picture.h"
#include "tests/support/places.h"
#include "tests/support/test_device.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <string>

namespace velmoranth::tests::calendar_golden_test {
namespace {

namespace fs = std::filesystem;

using hooks::SBCalendarApplicationIconHooks;
using platform::ImageRef;

constexpr double kSide = 60;  // points
constexpr double kScale = 2;
constexpr std::size_t kPixels = 120;

constexpr std::array<std::uint8_t, 4> kGround{0x60, 0x38, 0x20, 0xFF};  // B, G, R, A

constexpr std::array<const char*, 5> kLocales{"en_US", "de_DE", "ja_JP", "ar_SA", "ru_RU"};

// Days since 2001-01-01, a Monday: every weekday, days of one digit and of two, ends of months, a
// leap day.
constexpr std::array<int, 10> kDays{
    6931,  // Tuesday 2019-12-24
    6939,  // Wednesday 2020-01-01
    6974,  // Wednesday 2020-02-05
    6998,  // Saturday 2020-02-29
    7029,  // Tuesday 2020-03-31
    6509,  // Sunday 2018-10-28
    6821,  // Thursday 2019-09-05
    7084,  // Monday 2020-05-25
    6907,  // Saturday 2019-11-30
    7893,  // Friday 2022-08-12
};

class CalendarIcon final : public platform::SBCalendarApplicationIcon {
  public:
    [[nodiscard]] std::string className() const override { return "SBCalendarApplicationIcon"; }

    [[nodiscard]] platform::NullableString leafIdentifier() const override { return kIdentifier; }

    [[nodiscard]] platform::NullableString nodeIdentifier() const override { return kIdentifier; }

    [[nodiscard]] platform::NullableString uniqueIdentifier() const override { return kIdentifier; }

  private:
    static constexpr const char* kIdentifier = "com.apple.mobilecal";
};

ImageRef generate(platform::SBCalendarApplicationIcon& icon) {
    const platform::Implementation saved(
        std::function<ImageRef(platform::Object&, platform::SBIconImageInfo)>(
            [](platform::Object&, platform::SBIconImageInfo) { return nullptr; }));
    return SBCalendarApplicationIconHooks::generateIconImageWithInfo(
        core::OriginalImplementation<SBCalendarApplicationIconHooks::Signature>(saved), icon,
        {.size = {kSide, kSide}, .scale = kScale});
}

// On a dark blue ground, which shows what is clear, white or gray.
void paste(const ImageRef& image, std::size_t column, std::size_t row, GoldenPicture& sheet) {
    const auto bitmap = desktop::DesktopBitmapImage::of(platform::bitmapOf(image));
    ASSERT_NE(bitmap, nullptr);
    const desktop::PixelView pixels = bitmap->pixels();
    ASSERT_EQ(pixels.width, kPixels);
    ASSERT_EQ(pixels.height, kPixels);
    for (std::size_t y = 0; y < kPixels; ++y) {
        for (std::size_t x = 0; x < kPixels; ++x) {
            const std::uint8_t* from = pixels.row(y) + x * 4;
            std::uint8_t* to =
                &sheet.pixels[((row * kPixels + y) * sheet.width + column * kPixels + x) * 4];
            for (std::size_t c = 0; c < 3; ++c) {
                to[c] = static_cast<std::uint8_t>(from[c] + to[c] * (255 - from[3]) / 255);
            }
        }
    }
}

void expectSheet(TestDevice& device, const std::string& name) {
    core::loadSettings();
    CalendarIcon icon;
    GoldenPicture sheet{kPixels * kDays.size(), kPixels * kLocales.size(), {}};
    while (sheet.pixels.size() < sheet.width * sheet.height * 4) {
        sheet.pixels.insert(sheet.pixels.end(), kGround.begin(), kGround.end());
    }
    for (std::size_t row = 0; row < kLocales.size(); ++row) {
        device.dates.locale = kLocales[row];
        for (std::size_t column = 0; column < kDays.size(); ++column) {
            device.dates.now = {kDays[column] * 86400.0 + 43200};
            paste(generate(icon), column, row, sheet);
        }
    }
    expectGolden(name, sheet);
}

void expectThemesSheet(const fs::path& theme, const std::string& name) {
    TestDevice device(kScale);
    fs::create_directories(device.hostFolder() + "/Library/Themes");
    fs::copy(theme, device.hostFolder() + "/Library/Themes/T.theme", fs::copy_options::recursive);
    device.activeThemes({"T.theme"}, {{"enable", true}, {"enableIconMask", true}});
    expectSheet(device, name);
}

TEST(CalendarGolden, OfTheExampleTheme) {
    expectThemesSheet(kExampleTheme, "calendar_kilnware");
}

TEST(CalendarGolden, OfAThemeThatOnlyHasAMask) {
    constexpr const char* kMask = "Bundles/com.apple.mobileicons.framework/AppIconMask.png";
    TestDevice device(kScale);
    const fs::path theme = device.hostFolder() + "/Library/Themes/T.theme";
    fs::create_directories((theme / kMask).parent_path());
    fs::copy_file(fs::path(kExampleTheme) / kMask, theme / kMask);
    fs::copy(kLayoutFolder + std::string("/var/mobile/Library/VelMoranth/UserSettings"),
             device.hostFolder() + "/User/Library/VelMoranth/UserSettings");
    device.activeThemes({"T.theme"}, {{"enable", true}, {"enableIconMask", true}});
    expectSheet(device, "calendar_installed");
}

TEST(CalendarGolden, OfARealThemeWithCalendarSettings) {
    const fs::path theme = samples("themes") / "limelight/Limelight.theme";
    std::error_code none;
    if (!fs::is_directory(theme, none)) {
        GTEST_SKIP() << "no samples here; name their folder in VELMORANTH_SAMPLES";
    }
    expectThemesSheet(theme, "calendar_limelight");
}

}  // namespace
}  // namespace velmoranth::tests::calendar_golden_test
