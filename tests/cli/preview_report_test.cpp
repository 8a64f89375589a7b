// What velmoranth preview says of the themes below the picture's line.
#include "tests/cli/preview_report_fixture.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace velmoranth::cli::preview_report_test {
namespace {

constexpr const char* kMask = "work/A/Bundles/com.apple.mobileicons.framework/AppIconMask.png";

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

// The clock has a face on iOS 13, and an icon like others before.
TEST_F(PreviewReportTest, TheListOfIconsHasTheAppsThatTheHomeScreenCounts) {
    picture("work/A/IconBundles/com.apple.Maps-large.png");
    picture("work/A/IconBundles/com.apple.mobiletimer-large.png");
    picture("work/A/Bundles/com.apple.SpringBoardHome/ClockIconBackgroundSquare@3x.png");
    const auto list = [&](const std::string& system) {
        return report({"--screen", "icons", "--ios", system});
    };
    for (const std::string system : {"12", "13"}) {
        EXPECT_TRUE(report({"--ios", system}).starts_with("velmoranth: 2 of 46 apps have an icon "))
            << system;
        EXPECT_TRUE(list(system).starts_with("velmoranth: 2 of 2 apps have an icon of the theme\n"))
            << list(system);
    }
    std::filesystem::remove_all(folder / "work/A/Bundles");
    EXPECT_TRUE(report().starts_with("velmoranth: 1 of 46 apps has an icon "));
    EXPECT_TRUE(list("13").starts_with("velmoranth: 1 of 1 app has an icon of the theme\n"))
        << list("13");
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
    EXPECT_NE(
        text.find("\nvelmoranth: 2 files lie where nothing looks, "
                  "A/IconBundles/com.apple.maps.png first, which would be "
                  "IconBundles/com.apple.Maps-large.png (velmoranth explain A -- file '*')\n"),
        std::string::npos)
        << text;
}

// A phone takes the one of its screen's scale, and another device the others.
TEST_F(PreviewReportTest, FilesBesideTheOneOfTheScreensScaleAreNotLost) {
    for (const char* const name :
         {"AnemoneEffects/iPhoneOverlay", "Bundles/com.apple.springboard/SBBadgeBG",
          "Bundles/com.apple.springboard/SBPageDotCurrent", "IconBundles/com.apple.Maps-large",
          "IconBundles/org.mine.notes-large"}) {
        for (const char* const ending : {".png", "@2x.png", "@3x.png"}) {
            picture("work/A/" + std::string(name) + ending);
        }
    }
    EXPECT_EQ(report().find("where nothing looks"), std::string::npos) << report();
    EXPECT_NE(report().find("; 1 icon of apps that are not shown"), std::string::npos) << report();
    // Where only the other device's is there, this one shows nothing of it.
    for (const char* const ending : {".png", "@2x.png"}) {
        std::filesystem::remove(folder /
                                ("work/A/AnemoneEffects/iPhoneOverlay" + std::string(ending)));
    }
    EXPECT_EQ(report().find("where nothing looks"), std::string::npos) << report();
    const std::string smaller = report({"--device", "phone-667"});
    EXPECT_NE(smaller.find("1 file lies where nothing looks, A/AnemoneEffects/iPhoneOverlay@3x.png "
                           "first, which would be "),
              std::string::npos)
        << smaller;
}

TEST_F(PreviewReportTest, FilesThatAnotherThemeHidesAreNotMisnamed) {
    for (const char* const theme : {"A", "B"}) {
        picture(std::string("work/") + theme + "/Bundles/com.apple.Preferences/WiFi@3x.png");
        picture(std::string("work/") + theme + "/IconBundles/com.apple.Maps-large.png");
    }
    EXPECT_EQ(report({"B"}).find("where nothing looks"), std::string::npos) << report({"B"});
}

TEST_F(PreviewReportTest, FilesThatGiveNoPictureAreNamed) {
    folder.file("work/A/IconBundles/com.apple.Maps-large.png");
    picture("work/A/IconBundles/com.apple.Preferences-large.png");
    EXPECT_NE(
        report().find("\nvelmoranth: A/IconBundles/com.apple.Maps-large.png is there and gives "
                      "nothing: the file is empty\n"),
        std::string::npos);
}

// Of both systems.
TEST_F(PreviewReportTest, AMaskThatHidesEverythingOrNothingIsTold) {
    picture("work/A/IconBundles/com.apple.Maps-large.png");
    const std::string mask = "\nvelmoranth: " + std::string(kMask).substr(5);
    for (const std::string system : {"12", "13"}) {
        const auto said = [&] { return report({"--ios", system}); };
        picture(kMask, {255, 255, 255});
        EXPECT_NE(said().find(mask + " hides everything: where it is light the icon is hidden\n"),
                  std::string::npos)
            << said();
        picture(kMask, {0, 0, 0}, 128);
        EXPECT_NE(
            said().find(mask + " hides nothing: it is dark all over, and its transparency does not "
                               "count\n"),
            std::string::npos)
            << said();
        folder.file(kMask, deepGrayPng());
        EXPECT_NE(
            said().find(mask + " hides everything: nothing comes of an icon that is cut out by it; "
                               "write it with 8 bits a channel\n"),
            std::string::npos)
            << said();
    }
    const std::string off = report({"--set", "enableIconMask=no"});
    EXPECT_EQ(off.find("AppIconMask.png hides"), std::string::npos) << off;
}

TEST_F(PreviewReportTest, AFolderThatNothingLooksIntoIsTold) {
    folder.file("work/A/uisounds/lock.caf");
    EXPECT_NE(report().find("\nvelmoranth: 1 file lies where nothing looks, A/uisounds/lock.caf "
                            "first, which would be UISounds/lock.caf (velmoranth explain A -- file "
                            "uisounds/lock.caf)\n"),
              std::string::npos)
        << report();
    folder.folder("work/A/UISounds");
    picture("work/A/IconBundles/com.apple.Maps-large.png");
    EXPECT_NE(report().find("which would be UISounds/lock.caf"), std::string::npos) << "also empty";
}

TEST_F(PreviewReportTest, AMaskIsJudgedWithoutAnOpaqueIconOfATheme) {
    picture(kMask, {0, 0, 0}, 128);
    EXPECT_NE(report().find("AppIconMask.png hides nothing"), std::string::npos) << "no icon";
    picture("work/A/IconBundles/com.apple.Maps-large.png", kMagenta, 128);
    EXPECT_NE(report().find("AppIconMask.png hides nothing"), std::string::npos) << "clear icon";
}

TEST_F(PreviewReportTest, TheAppsThatAreShownAreCounted) {
    picture("work/A/IconBundles/com.apple.Maps-large.png");
    picture("work/A/IconBundles/com.example.mine-large.png");
    folder.file("work/A/IconBundles/com.example.empty-large.png");
    const std::string all = report();
    EXPECT_NE(all.find(" apps has an icon of the theme; 1 icon of apps that are not shown; "
                       "nothing for "),
              std::string::npos)
        << all;
    EXPECT_NE(all.find("A/IconBundles/com.example.empty-large.png is there and gives nothing"),
              std::string::npos)
        << all;
    const std::string themed = report({"--apps", "theme"});
    EXPECT_TRUE(
        themed.starts_with("velmoranth: 2 of 3 apps have an icon of the theme; nothing "
                           "for 1 app "))
        << themed;
    folder.file("work/apps", "com.example.mine Mine\n");
    const std::string listed = report({"--apps", "apps"});
    EXPECT_TRUE(
        listed.starts_with("velmoranth: 1 of 1 app has an icon of the theme; 1 icon of "
                           "apps that are not shown\n"))
        << listed;
}

TEST_F(PreviewReportTest, IconsOfOtherAppsAreCountedAndTheirMistakesTold) {
    picture("work/A/IconBundles/com.apple.maps-large.png");
    picture("work/A/IconBundles/org.mine.notes-large.png");
    picture("work/A/IconBundles/org.mine.mail.png");
    picture("work/A/org.mine.news.png");
    folder.file("work/A/IconBundles/read me.txt", "text");
    const std::string text = report();
    EXPECT_NE(text.find(" of the theme; 1 icon of apps that are not shown; nothing for "),
              std::string::npos)
        << text;
    EXPECT_NE(text.find("\nvelmoranth: 2 files lie where nothing looks, "
                        "A/IconBundles/com.apple.maps-large.png first, which would be "
                        "IconBundles/com.apple.Maps-large.png "),
              std::string::npos)
        << text;
    for (int i = 0; i < 60; ++i) {
        picture("work/A/IconBundles/com.example." + std::to_string(i) + "-large.png");
    }
    EXPECT_NE(report().find("; at least 50 icons of apps that are not shown; "), std::string::npos);
}

TEST_F(PreviewReportTest, FilesThatOtherScreensLookForAreCounted) {
    picture("work/A/UIImages/UISwitchknob@3x.png");
    EXPECT_NE(report().find("\nvelmoranth: 1 file lies where nothing looks, "
                            "A/UIImages/UISwitchknob@3x.png first, which would be "
                            "UIImages/UISwitchKnob@3x.png "),
              std::string::npos);
}

TEST_F(PreviewReportTest, AFileWithoutANameIsNoRequest) {
    picture("work/A/IconBundles/com.apple.Maps-large.png");
    picture("work/A/IconBundles/.png");
    picture("work/A/IconBundles/-large.png");
    EXPECT_TRUE(report().starts_with("velmoranth: 1 of 46 apps has an icon of the theme"))
        << report();
    EXPECT_EQ(report().find("error"), std::string::npos) << report();
}

TEST_F(PreviewReportTest, OfAProcessThatEndsEarlyIsToldWhatItFound) {
    picture("work/A/IconBundles/com.apple.Maps-large.png");
    picture("work/A/IconBundles/com.example.last-large.png");
    // No app of the screen: it is asked for once the picture is drawn.
    const CommandResult result = runCommand({"preview", "A"}, endingSetting("com.example.last"));
    EXPECT_EQ(result.code, 3) << result.errors;
    EXPECT_TRUE(result.output.starts_with("preview.png: ")) << "the picture is there";
    EXPECT_TRUE(result.errors.starts_with("velmoranth: 1 of 46 apps has an icon of the theme; "))
        << result.errors;
    EXPECT_NE(result.errors.find("\nvelmoranth: error: not all that the themes did could be found "
                                 "out: the simulated process crashed with SIGABRT"),
              std::string::npos)
        << result.errors;
}

// Of the user's own device.
class DeviceReportTest : public PreviewReportTest {
  protected:
    DeviceReportTest() {
        EXPECT_EQ(runCommand({"device", "init", folder / "device"}).code, 0);
        set({"enable=yes", "ActiveThemes=A,B"});
    }

    void set(std::vector<std::string> words) const {
        words.insert(words.begin(), {"settings", "set"});
        words.insert(words.end(), {"--root", folder / "device"});
        EXPECT_EQ(runCommand(words).code, 0);
    }

    [[nodiscard]] std::string reportOfDevice() const {
        const CommandResult result = runCommand({"preview", "--root", "../device"}, setting());
        EXPECT_EQ(result.code, 0);
        EXPECT_EQ(folder.names("tmp"), "") << "the copy is gone";
        return result.errors;
    }

    // Every file but the sockets of processes.
    [[nodiscard]] std::string contents() const {
        std::string all;
        for (const auto& entry : std::filesystem::recursive_directory_iterator(folder / "device")) {
            const std::string name = entry.path().lexically_relative(folder.path()).string();
            if (entry.is_regular_file() && !entry.is_symlink()) {
                all += name + "\n" + folder.contents(name);
            }
        }
        return all;
    }
};

constexpr const char* kThemes = "device/Library/Themes/";

TEST_F(DeviceReportTest, WhatConvertWouldBringToLightIsSaid) {
    picture(std::string(kThemes) + "A/com.apple.Maps@3x.png");
    picture(std::string(kThemes) + "B/IconBundles/com.apple.news-large.png");
    picture(std::string(kThemes) + "C/com.apple.Maps@3x.png");
    const std::string line =
        "velmoranth: A: 1 icon lies under a name that nothing looks for; velmoranth convert "
        "../device/Library/Themes/A -o FOLDER makes a theme that shows it\n";
    const std::string all = reportOfDevice();
    EXPECT_NE(all.find(line), std::string::npos) << all;
    EXPECT_EQ(all.find("convert"), all.rfind("convert")) << "of no other theme";
    set({"ActiveThemes=B"});
    EXPECT_EQ(reportOfDevice().find("velmoranth convert"), std::string::npos);
    set({"ActiveThemes=A", "enable=no"});
    EXPECT_EQ(reportOfDevice().find("velmoranth convert"), std::string::npos);
}

TEST_F(DeviceReportTest, ItsActiveThemesAreReportedWithItsSettings) {
    picture(std::string(kThemes) + "A/IconBundles/com.apple.Maps-large.png");
    picture(std::string(kThemes) + "B/IconBundles/com.apple.news-large.png");
    picture(std::string(kThemes) + "C/IconBundles/com.apple.Home-large.png");
    picture(std::string(kThemes) + "B/Bundles/com.apple.mobileicons.framework/AppIconMask.png",
            {255, 255, 255});
    // A preview without --root has the mask on where nothing is said; a device has it off then.
    folder.file("device/private/var/mobile/Library/Preferences/com.qor.velmoranthprefs.plist",
                "<plist><dict><key>enable</key><true/><key>ActiveThemes</key><array><string>A"
                "</string><string>B</string><string>A</string></array></dict></plist>");
    const std::string plain = reportOfDevice();
    EXPECT_TRUE(plain.starts_with("velmoranth: 2 of ")) << plain;
    EXPECT_NE(plain.find(" apps have an icon of the themes; off: mask (enableIconMask); nothing "
                         "for "),
              std::string::npos)
        << plain;
    EXPECT_TRUE(plain.ends_with(" apps (velmoranth explain --root ../device -- icon '*')\n"))
        << plain;
    set({"enableIconMask=yes"});
    const std::string masked = reportOfDevice();
    EXPECT_NE(masked.find(" of the themes; mask; nothing for "), std::string::npos) << masked;
    EXPECT_NE(masked.find("\nvelmoranth: B/Bundles/com.apple.mobileicons.framework/"
                          "AppIconMask.png hides everything"),
              std::string::npos)
        << masked;
}

TEST_F(DeviceReportTest, NothingOfItChanges) {
    picture(std::string(kThemes) + "A/IconBundles/com.apple.Maps-large.png");
    picture(std::string(kThemes) + "A/Bundles/com.apple.mobileicons.framework/AppIconMask.png");
    set({"enableIconMask=yes", "ActiveThemes=A"});
    ASSERT_EQ(runCommand({"preview", "--quiet", "--root", "../device"}, setting()).code, 0);
    const std::string before = contents();
    EXPECT_TRUE(reportOfDevice().starts_with("velmoranth: 1 of "));
    EXPECT_TRUE(contents() == before);
}

TEST_F(DeviceReportTest, ThemesBehindLinksCountAndThoseThatAreNotThereDoNot) {
    picture(std::string(kThemes) + "A/IconBundles/com.apple.Maps-large.png");
    picture("elsewhere/IconBundles/com.apple.news-large.png");
    folder.link(std::string(kThemes) + "B", folder / "elsewhere");
    EXPECT_NE(reportOfDevice().find("velmoranth: 2 of "), std::string::npos);
    set({"ActiveThemes=B"});
    EXPECT_NE(reportOfDevice().find("velmoranth: 1 of "), std::string::npos);
    set({"ActiveThemes=C"});
    EXPECT_EQ(reportOfDevice().find(" apps "), std::string::npos);
    set({"ActiveThemes=A", "enable=no"});
    const std::string off = reportOfDevice();
    EXPECT_NE(off.find("so theming is off\n"), std::string::npos);
    EXPECT_EQ(std::ranges::count(off, '\n'), 1) << off;
}

}  // namespace
}  // namespace velmoranth::cli::preview_report_test
