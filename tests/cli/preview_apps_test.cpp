// A maker's own wallpaper and apps on the home screen, and the sheets of icons.
#include "tests/cli/preview_fixture.h"
#include "tests/support/places.h"

#include <cstdlib>
#include <filesystem>
#include <string>
#include <utility>
#include <vector>

namespace velmoranth::cli::preview_apps_test {
namespace {

namespace fs = std::filesystem;

constexpr Color kOrange{255, 128, 1};

class PreviewApps : public PreviewTest {
  public:
    PreviewApps() { theme("A.theme", kMagenta); }

    // The icon of another app in a theme, in that colour.
    void icon(const std::string& themeName, const std::string& identifier, Color color) const {
        theme("colors", color);
        folder.file(themeName + "/IconBundles/" + identifier + "-large.png",
                    folder.contents("colors/IconBundles/com.apple.Preferences-large.png"));
    }

    // Nothing is said on standard error.
    PngPicture draw(std::vector<std::string> words) const {
        words.insert(words.begin(), "../A.theme");
        const CommandResult result = preview(std::move(words));
        EXPECT_EQ(result.code, 0);
        EXPECT_EQ(result.errors, "");
        EXPECT_EQ(folder.names("tmp"), "");
        return picture();
    }

    // How many icons of a phone's screen that colour fills; an icon's corners are cut off.
    static int icons(const PngPicture& shown, Color color) {
        constexpr int kPixels = 180 * 180;
        return (shown.count(color) + kPixels / 10) / kPixels;
    }
};

TEST_F(PreviewApps, WallpaperOfTheMakersOwnStandsBehind) {
    theme("orange", kOrange);
    fs::rename(folder / "orange/IconBundles/com.apple.Preferences-large.png",
               folder / "work/my picture");
    for (const char* const screen : {"home", "pressed", "notification"}) {
        const std::vector<std::string> words{"--screen", screen, "--wallpaper", "my picture"};
        EXPECT_GT(draw(words).count(kOrange), 500000) << screen;
    }
    EXPECT_GT(draw({"--compare", "--wallpaper", "my picture"}).count(kOrange, 0, 1143), 500000)
        << "the stock screen has it too";
    EXPECT_EQ(draw({}).count(kOrange), 0);
}

TEST_F(PreviewApps, WallpaperThatIsNoneIsOneLine) {
    folder.file("work/text", "a text");
    folder.file("work/large", "");
    fs::resize_file(folder / "work/large", std::uintmax_t{65} * 1024 * 1024);
    const auto refused = [&](const std::string& file, const std::string& why) {
        expectBadInput({"../A.theme", "--wallpaper", file}, file + ": " + why);
    };
    refused("none.jpg", "no such file or directory");
    refused("../A.theme", "is a directory");
    refused("text", "the file is not an image (PNG, JPEG, GIF or TIFF)");
    refused("large", "the file is larger than 64 MiB");
    EXPECT_EQ(folder.names("work"), "large text");
}

TEST_F(PreviewApps, OfTheThemeAreThoseItHasIconsFor) {
    icon("A.theme", "com.example.b", kLime);
    icon("A.theme", "com.example.a", kOrange);
    const PngPicture themed = draw({"--apps", "theme", "--set", "enableIconMask=no"});
    EXPECT_EQ(icons(themed, kMagenta), 1);
    EXPECT_EQ(icons(themed, kOrange), 1);
    EXPECT_EQ(icons(themed, kLime), 1);
    EXPECT_EQ(draw({"--apps", "theme", "--before"}).count(kMagenta), 0);
    EXPECT_EQ(draw({}).count(kLime), 0) << "a fresh device does not have the app";
}

TEST_F(PreviewApps, OfADevicesOwnThemesAreShown) {
    ASSERT_EQ(runCommand({"device", "init", folder / "device"}).code, 0);
    icon("device/Library/Themes/B.theme", "com.example.a", kLime);
    icon("device/Library/Themes/C.theme", "com.example.b", kOrange);
    ASSERT_EQ(runCommand({"settings", "set", "enable=yes", "ActiveThemes=B.theme", "--root",
                          folder / "device"})
                  .code,
              0);
    ASSERT_EQ(preview({"--root", "../device", "--apps", "theme"}).code, 0);
    EXPECT_EQ(icons(picture(), kLime), 1);
    EXPECT_EQ(picture().count(kOrange), 0) << "the theme is not active";
}

TEST_F(PreviewApps, OfAListAreShownInItsOrder) {
    icon("A.theme", "com.example.a", kLime);
    folder.file("work/apps", "# mine\ncom.example.a First\n\ncom.apple.Preferences\n");
    const PngPicture shown = draw({"--apps", "apps", "--device", "phone-667"});
    // Two pixels a point: the first icon lies from 27 to 87 points, the second from 114 to 174.
    EXPECT_GT(shown.count(kLime, 54, 174), 10000);
    EXPECT_EQ(shown.count(kLime, 176), 0);
    EXPECT_GT(shown.count(kMagenta, 228, 348), 10000);
    EXPECT_EQ(shown.count(kMagenta, 0, 228), 0);
    const std::string first = folder.contents("work/preview.png");
    folder.file("work/apps", "com.example.a Other\ncom.apple.Preferences\n");
    draw({"--apps", "apps", "--device", "phone-667"});
    EXPECT_FALSE(folder.contents("work/preview.png") == first) << "its name is another";
}

TEST_F(PreviewApps, OfStandardInputAreShown) {
    const std::string command = "printf 'com.example.a\\ncom.apple.Preferences' | " +
                                std::string(tests::kCommand) + " preview ../A.theme --apps - ";
    EXPECT_EQ(std::system(("cd '" + (folder / "work") + "' && " + command).c_str()), 0);
    EXPECT_EQ(icons(picture(), kMagenta), 1);
    EXPECT_EQ(std::system(("cd '" + (folder / "work") + "' && printf 'a/b' | " +
                           std::string(tests::kCommand) +
                           " preview ../A.theme --apps - 2> errors > /dev/null")
                              .c_str()) >>
                  8,
              3);
    EXPECT_EQ(folder.contents("work/errors").find("velmoranth: error: standard input: line 1: "),
              0U);
}

TEST_F(PreviewApps, TakeAsManyPagesAsTheyNeed) {
    std::string list;
    for (int i = 0; i < 60; ++i) {
        list += "com.example.app" + std::to_string(i) + "\n";
    }
    folder.file("work/apps", list);
    icon("A.theme", "com.example.app59", kLime);
    EXPECT_EQ(icons(draw({"--apps", "apps", "--page", "3"}), kLime), 1);
    const CommandResult result = preview({"../A.theme", "--apps", "apps", "--page", "9"});
    EXPECT_EQ(result.errors, "velmoranth: error: there is no page 9; the last is 3\n");
}

TEST_F(PreviewApps, IconsAndFoldersAreLookedForAmongThem) {
    folder.file("work/apps",
                "com.apple.Preferences\ncom.example.notes My Notes\ncom.burbn.instagram\n");
    draw({"--apps", "apps", "--screen", "pressed", "--icon", "my notes"});
    draw({"--apps", "apps", "--screen", "folder", "--folder", "Social"});
    expectBadInput({"../A.theme", "--apps", "apps", "--screen", "pressed", "--icon", "Mail"},
                   "there is no icon \"Mail\" on the home screen");
    expectBadInput({"../A.theme", "--apps", "apps", "--screen", "pressed", "--icon", "My Note"},
                   "there is no icon \"My Note\" on the home screen; did you mean My Notes?");
    expectBadInput({"../A.theme", "--apps", "apps", "--screen", "folder", "--folder", "Utilities"},
                   "--folder takes Social, not \"Utilities\"");
    folder.file("work/apps", "com.apple.Preferences\n");
    expectBadInput({"../A.theme", "--apps", "apps", "--screen", "folder", "--folder", "Social"},
                   "there is no folder \"Social\": none of these apps lies in one");
    expectBadInput({"../A.theme", "--apps", "apps", "--screen", "folder"},
                   "there is no folder on page 1");
}

TEST_F(PreviewApps, ListThatIsNoneIsOneLine) {
    folder.file("work/bad", "com.example.a\ncom.example.a\n");
    folder.file("work/empty", "#\n");
    expectBadInput({"../A.theme", "--apps", "bad"},
                   "bad: line 2: com.example.a stands on line 1 already");
    expectBadInput({"../A.theme", "--apps", "empty"},
                   "empty: there is no app in it; a line has an identifier and, behind a blank, a "
                   "name, as in com.example.notes Notes");
    expectBadInput({"../A.theme", "--apps", "none"},
                   "none: the list of apps cannot be read: no such file or directory");
    folder.file("B.theme/Info.plist", "x");
    const std::string why =
        "no theme has an app's icon; one is a file IconBundles/IDENTIFIER-large.png";
    expectBadInput({"../B.theme", "--apps", "theme"}, why);
    expectBadInput({"../B.theme", "--screen", "icons"}, why);
    expectBadInput({"--before", "--apps", "theme"}, why);
}

TEST_F(PreviewApps, SheetsHaveEveryIconOfTheThemes) {
    icon("A.theme", "com.example.a", kLime);
    theme("B.theme", kLime);
    icon("B.theme", "net.example.b", kOrange);
    const std::vector<std::string> words{"../B.theme", "--screen", "icons"};
    const PngPicture sheet = draw(words);
    EXPECT_EQ(icons(sheet, kMagenta), 1) << "the first theme's";
    EXPECT_EQ(icons(sheet, kLime), 1);
    EXPECT_EQ(icons(sheet, kOrange), 1);
    EXPECT_EQ(draw({"--screen", "icons", "--before"}).count(kMagenta), 0);
    for (int i = 0; i < 28; ++i) {
        icon("B.theme", "zz.example.app" + std::to_string(i), kOrange);
    }
    // 31 of which 28 have room on the first.
    EXPECT_EQ(icons(draw({"../B.theme", "--screen", "icons", "--page", "2"}), kOrange), 3);
    const CommandResult result =
        preview({"../A.theme", "../B.theme", "--screen", "icons", "--page", "7"});
    EXPECT_EQ(result.errors, "velmoranth: error: there is no page 7; the last is 2\n");
}

TEST_F(PreviewApps, SheetsAreMaskedAndOverlaidAsTheSettingsSay) {
    theme("black", {0, 0, 0});
    theme("overlay", kLime);
    const std::string file = "/IconBundles/com.apple.Preferences-large.png";
    folder.file("A.theme/Velmoranth/iPhoneOverlay.png", folder.contents("overlay" + file));
    const PngPicture covered = draw({"--screen", "icons"});
    EXPECT_EQ(icons(covered, kLime), 1);
    EXPECT_EQ(covered.count(kMagenta), 0);
    EXPECT_EQ(icons(draw({"--screen", "icons", "--set", "enableOverlay=no"}), kMagenta), 1);
}

TEST_F(PreviewApps, IconThatIsNoImageLeavesItsPlaceEmpty) {
    folder.file("A.theme/IconBundles/com.example.broken-large.png", "no image");
    EXPECT_EQ(icons(draw({"--screen", "icons"}), kMagenta), 1);
    EXPECT_EQ(icons(draw({"--apps", "theme"}), kMagenta), 1);
}

}  // namespace
}  // namespace velmoranth::cli::preview_apps_test
