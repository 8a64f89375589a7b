// What velmoranth preview says of the themes below the picture's line.
#include "tests/cli/preview_fixture.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace velmoranth::cli::preview_report_test {
namespace {

constexpr const char* kMask = "work/A/Bundles/com.apple.mobileicons.framework/AppIconMask.png";

class PreviewReportTest : public PreviewTest {
  protected:
    // A picture of one colour, opaque unless the alpha says otherwise.
    void picture(const std::string& name, Color color = kMagenta, std::uint8_t alpha = 255) const {
        constexpr std::size_t kSide = 180;
        std::vector<std::uint8_t> pixels;
        const auto shown = [alpha](std::uint8_t value) {
            return static_cast<std::uint8_t>(value * alpha / 255);
        };
        for (std::size_t i = 0; i < kSide * kSide; ++i) {
            pixels.insert(pixels.end(),
                          {shown(color.blue), shown(color.green), shown(color.red), alpha});
        }
        const auto png = desktop::encodePng(pixels, kSide, kSide, kSide * 4);
        folder.file(name, std::string(png.begin(), png.end()));
    }

    // Standard error of a preview of the theme A.
    [[nodiscard]] std::string report(std::vector<std::string> more = {}) const {
        std::vector<std::string> words{"preview", "A"};
        words.insert(words.end(), more.begin(), more.end());
        const CommandResult result = runCommand(words, setting());
        EXPECT_EQ(result.code, 0);
        EXPECT_TRUE(result.output.starts_with("preview.png: ")) << result.output;
        EXPECT_EQ(folder.names("tmp"), "");
        return result.errors;
    }
};

TEST_F(PreviewReportTest, CountsTheAppsAndNamesTheParts) {
    picture("work/A/IconBundles/com.apple.Preferences-large.png");
    picture("work/A/IconBundles/com.apple.Maps-large.png");
    picture("work/A/Bundles/com.apple.springboard/SBBadgeBG.png");
    const std::string text = report();
    EXPECT_TRUE(text.starts_with("velmoranth: 2 of ")) << text;
    EXPECT_NE(text.find(" apps have an icon of the theme; badges; nothing for "), std::string::npos)
        << text;
    EXPECT_TRUE(text.ends_with(" apps (velmoranth explain A -- icon '*')\n")) << text;
    EXPECT_EQ(std::ranges::count(text, '\n'), 1) << text;
}

TEST_F(PreviewReportTest, QuietSaysNothing) {
    picture("work/A/IconBundles/com.apple.Maps-large.png");
    EXPECT_EQ(report({"--quiet"}), "");
    EXPECT_EQ(report({"-q"}), "");
}

TEST_F(PreviewReportTest, TheStockScreenHasNothingToSay) {
    picture("work/A/IconBundles/com.apple.Maps-large.png");
    EXPECT_EQ(report({"--before"}), "");
}

TEST_F(PreviewReportTest, FilesThatLieWhereNothingLooksAreCounted) {
    picture("work/A/IconBundles/com.apple.maps.png");
    picture("work/A/com.apple.News@3x.png");
    const std::string text = report();
    EXPECT_TRUE(text.starts_with("velmoranth: 0 of ")) << text;
    EXPECT_NE(text.find("\nvelmoranth: 2 files lie where nothing looks, "
                        "A/IconBundles/com.apple.maps.png first, which would be "
                        "IconBundles/com.apple.Maps-large.png (velmoranth explain A -- file "
                        "IconBundles/com.apple.maps.png)\n"),
              std::string::npos)
        << text;
}

TEST_F(PreviewReportTest, FilesThatGiveNoPictureAreNamed) {
    folder.file("work/A/IconBundles/com.apple.Maps-large.png");
    picture("work/A/IconBundles/com.apple.Preferences-large.png");
    EXPECT_NE(
        report().find("\nvelmoranth: A/IconBundles/com.apple.Maps-large.png is there and gives "
                      "no picture: the file is empty\n"),
        std::string::npos);
}

TEST_F(PreviewReportTest, AMaskThatHidesEverythingOrNothingIsTold) {
    picture("work/A/IconBundles/com.apple.Maps-large.png");
    picture(kMask, {255, 255, 255});
    EXPECT_NE(report().find("AppIconMask.png hides everything"), std::string::npos);
    picture(kMask, {0, 0, 0}, 128);
    EXPECT_NE(report().find("AppIconMask.png hides nothing"), std::string::npos);
}

TEST_F(PreviewReportTest, AFontThatTheDeviceLacksIsTold) {
    folder.file(
        "work/A/Info.plist",
        "<plist><dict><key>CalendarIconDateSettings</key><dict><key>FontName</"
        "key><string>NoSuchFont</string><key>FontSize</key><real>12</real></dict></dict></plist>");
    picture("work/A/IconBundles/com.apple.mobilecal-large.png");
    const std::string text = report();
    EXPECT_NE(
        text.find("\nvelmoranth: the calendar's font \"NoSuchFont\" is none of the device's\n"),
        std::string::npos)
        << text;
}

TEST_F(PreviewReportTest, AnInfoPlistWithoutTheCalendarsKeysIsTold) {
    folder.file("work/A/Info.plist",
                "<plist><dict><key>Name</key><string>A</string></dict></plist>");
    picture("work/A/IconBundles/com.apple.mobilecal-large.png");
    const std::string text = report();
    EXPECT_NE(text.find("\nvelmoranth: A/Info.plist has no font for the calendar: "),
              std::string::npos)
        << text;
}

}  // namespace
}  // namespace velmoranth::cli::preview_report_test
