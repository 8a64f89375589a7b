// velmoranth settings set
#include "desktop/notifications/notification_center.h"
#include "tests/cli/ordinary_user.h"
#include "tests/cli/preview_fixture.h"
#include "tests/cli/settings_fixture.h"

#include <signal.h>  // NOLINT(modernize-deprecated-headers): SIGINT

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

namespace velmoranth::cli::settings_set_test {
namespace {

class SettingsSet : public SettingsTest {
  protected:
    [[nodiscard]] std::string get(const char* key) const {
        const std::string text = settings({"get", key}).output;
        return text.empty() ? "<none>" : text.substr(0, text.size() - 1);
    }
};

const std::string kThemeChangedLine = "com.qor.velmoranththemechanged.prefs: 0 processes told\n";
const std::string kPrefsLine = "com.qor.velmoranthprefs.prefs: 0 processes told\n";
const std::string kDevelopingLine = "com.qor.velmoranthdevelopingprefs.prefs: 0 processes told\n";
const std::string kNotWritten = "device/User/Library/Preferences/" + kFileName +
                                ": the preferences cannot be written and are as they were: ";

TEST_F(SettingsSet, ChangesTheKeysAndKeepsTheOthersAndTheMode) {
    folder.file(kLiveFile, plist("<key>mine</key><array><data>AAEC</data><real>0.1</real></array>"
                                 "<key>removeDock</key><true/>"));
    std::filesystem::permissions(folder / kLiveFile, std::filesystem::perms(0640));
    const CommandResult result = settings({"set", "enable=on", "opacityVal=0.25", "removeDock=no"});
    EXPECT_EQ(result.code, 0);
    EXPECT_EQ(result.errors, "");
    EXPECT_EQ(result.output,
              "enable: yes\nopacityVal: 0.25\nremoveDock: no\n" + kPrefsLine + kThemeChangedLine);
    EXPECT_EQ(folder.contents(kLiveFile),
              "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
              "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" "
              "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n"
              "<plist version=\"1.0\">\n<dict>\n\t<key>enable</key>\n\t<true/>\n\t<key>mine</key>\n"
              "\t<array>\n\t\t<data>\n\t\tAAEC\n\t\t</data>\n\t\t<real>0.1</real>\n\t</array>\n"
              "\t<key>opacityVal</key>\n\t<real>0.25</real>\n\t<key>removeDock</key>\n\t<false/>\n"
              "</dict>\n</plist>\n");
    EXPECT_EQ(folder.mode(kLiveFile), 0640U);
    EXPECT_EQ(folder.names("device/var/mobile/Library/Preferences"), kFileName);
}

TEST_F(SettingsSet, EachKeyTellsItsOwnNotificationOnce) {
    folder.file(kLiveFile, plist(""));
    const auto told = [&](const std::vector<std::string>& words) {
        std::vector<std::string> all{"set"};
        all.insert(all.end(), words.begin(), words.end());
        const std::string text = settings(all).output;
        return text.substr(text.find("com."));
    };
    for (const char* const word :
         {"ActiveThemes=A.theme", "enable=no", "enableIconMask=no", "enableOverlay=no"}) {
        EXPECT_EQ(told({word}), kThemeChangedLine) << word;
    }
    for (const char* const word :
         {"enableShadow=1", "dynamicShadow=1", "removeDock=1", "removeFolderBG=1", "removeLabels=1",
          "removeIconBadges=1", "removePageDots=1", "shadowRadiusVal=1", "opacityVal=1",
          "xAxisVal=1", "yAxisVal=1", "shadowWidthVal=1", "shadowHeightVal=1", "enableLogging=1",
          "iconReflection=1", "moreDockIcons=1"}) {
        EXPECT_EQ(told({word}), kPrefsLine) << word;
    }
    EXPECT_EQ(told({"enableImageDump=1"}), kDevelopingLine);
    EXPECT_EQ(
        told({"enableImageDump=1", "enable=1", "xAxisVal=1", "yAxisVal=1", "enableOverlay=1"}),
        kPrefsLine + kThemeChangedLine + kDevelopingLine);
}

TEST_F(SettingsSet, ThemesAreAListOfNames) {
    folder.file(kLiveFile, plist(""));
    folder.folder("device/Library/Themes/C, and D\\E");
    const auto set = [&](std::vector<std::string> words) {
        words.insert(words.begin(), "set");
        const CommandResult result = settings(words);
        EXPECT_EQ(result.code, 0);
        EXPECT_EQ(result.errors, "");
        return get("ActiveThemes");
    };
    EXPECT_EQ(set({"ActiveThemes=B.theme,A.theme"}), "B.theme,A.theme");
    EXPECT_EQ(set({"ActiveThemes=A.theme", "enable=1", "ActiveThemes=B.theme"}), "A.theme,B.theme");
    EXPECT_EQ(set({"ActiveThemes=C\\, and D\\\\E,A.theme"}), "C\\, and D\\\\E,A.theme");
    EXPECT_NE(folder.contents(kLiveFile).find("<string>C, and D\\E</string>"), std::string::npos);
    EXPECT_EQ(set({"ActiveThemes=" + get("ActiveThemes")}), "C\\, and D\\\\E,A.theme");
    EXPECT_EQ(set({"ActiveThemes="}), "");
    EXPECT_NE(folder.contents(kLiveFile).find("<array/>"), std::string::npos);
}

TEST_F(SettingsSet, WarnsOfThemesThatAreNotThere) {
    folder.file("device/Library/Themes/File.theme", "no folder");
    const CommandResult result =
        settings({"set", "ActiveThemes=A.them,File.theme,A.theme,A.theme"});
    EXPECT_EQ(result.code, 0);
    EXPECT_EQ(result.errors,
              "velmoranth: warning: device/Library/Themes: there is no theme \"A.them\"; did you "
              "mean A.theme?\n"
              "velmoranth: warning: device/Library/Themes: there is no theme \"File.theme\"; did "
              "you mean File.theme?\n"
              "velmoranth: warning: \"A.theme\" is in the list twice; the second time changes "
              "nothing\n");
    EXPECT_EQ(get("ActiveThemes"), "A.them,File.theme,A.theme,A.theme");
}

TEST_F(SettingsSet, NothingIsWrittenWhenOneAssignmentIsWrong) {
    folder.file(kLiveFile, plist("<key>enable</key><true/>"));

    struct Wrong {
        std::string word;
        std::string message;
    };

    for (const auto& [word, message] : std::vector<Wrong>{
             {"enabel=no", "there is no preference \"enabel\"; did you mean enable?"},
             {"activethemes=A",
              "there is no preference \"activethemes\"; did you mean ActiveThemes?"},
             {"qqqqqqqq=1",
              "there is no preference \"qqqqqqqq\"; velmoranth settings set --help lists them"},
             {"removeDock=maybe", "removeDock takes yes or no, not \"maybe\""},
             {"removeDock=", "removeDock takes yes or no, not \"\""},
             {"xAxisVal=wide", "xAxisVal takes a number, not \"wide\""},
             {"xAxisVal=nan", "xAxisVal takes a number, not \"nan\""},
             {"xAxisVal=1e39", "xAxisVal takes a number, not \"1e39\""},
             {"removeDock", "velmoranth settings set takes KEY=VALUE, not \"removeDock\""},
             {"=yes", "velmoranth settings set takes KEY=VALUE, not \"=yes\""},
             {"enable=yes", "enable is given more than once"},
             {"ActiveThemes=A,,B",
              "ActiveThemes takes names with commas between, and one of these is empty"},
             {"ActiveThemes=,",
              "ActiveThemes takes names with commas between, and one of these is empty"},
             {"ActiveThemes=../A",
              "ActiveThemes takes the names of folders in /Library/Themes, and \"../A\" is none"},
             {"ActiveThemes=..",
              "ActiveThemes takes the names of folders in /Library/Themes, and \"..\" is none"},
             {"ActiveThemes=A\nB", "ActiveThemes takes names of plain text, not \"A?B\""},
             {"ActiveThemes=\xff", "ActiveThemes takes names of plain text, not \"?\""},
             {"ActiveThemes=A\\B",
              "in a list of themes a backslash goes before a comma or a backslash that belongs to "
              "a name, not as in \"A\\B\""},
             {"ActiveThemes=A\\",
              "in a list of themes a backslash goes before a comma or a backslash that belongs to "
              "a name, not as in \"A\\\""},
         }) {
        expectRefused({"set", "enable=no", word}, 2, message);
    }
}

TEST_F(SettingsSet, BeginsWithTheFactoryPreferencesWhereThereAreNone) {
    folder.file(kFactoryFile, plist("<key>enable</key><true/>"));
    const CommandResult result = settings({"set", "removeDock=yes"});
    EXPECT_EQ(result.code, 0);
    EXPECT_EQ(result.errors,
              "velmoranth: there were no preferences; these begin with the factory's\n");
    EXPECT_EQ(get("enable"), "yes");
    EXPECT_EQ(get("removeDock"), "yes");
    std::filesystem::remove(folder / kLiveFile);
    std::filesystem::remove(folder / kFactoryFile);
    EXPECT_EQ(settings({"set", "removeDock=yes"}).errors, "");
    EXPECT_EQ(get("enable"), "<none>");
}

TEST_F(SettingsSet, ALinkIsReplacedAndWhatItLeadsToStays) {
    const std::string own = plist("<key>enable</key><true/>");
    folder.file("device/var/mobile/own.plist", own);
    folder.link(kLiveFile, "/var/mobile/own.plist");
    const CommandResult result = settings({"set", "removeDock=yes"});
    EXPECT_EQ(result.code, 0);
    EXPECT_EQ(result.errors, "velmoranth: warning: device/User/Library/Preferences/" + kFileName +
                                 ": this was a link; a file takes its place, and what it leads to "
                                 "stays as it is\n");
    EXPECT_EQ(get("enable"), "yes");
    EXPECT_EQ(folder.contents("device/var/mobile/own.plist"), own);
    EXPECT_FALSE(std::filesystem::is_symlink(folder / kLiveFile));
}

TEST_F(SettingsSet, ALinkOutOfTheDeviceIsNotFollowed) {
    folder.file("outside.plist", plist("<key>enable</key><true/>"));
    folder.link(kLiveFile, folder / "outside.plist");
    EXPECT_EQ(settings({"get", "enable"}).code, 1);
    EXPECT_EQ(settings({"set", "removeDock=yes"}).code, 0);
    EXPECT_EQ(folder.contents("outside.plist"), plist("<key>enable</key><true/>"));
}

TEST_F(SettingsSet, WhatCannotBeWrittenLeavesTheFile) {
    folder.file(kLiveFile, plist("<key>a</key><string>" + std::string(200'000, 'x') + "</string>"));
    expectRefused({"set", "enable=yes"}, 3, kNotWritten + "file too large",
                  {.limits = {{RLIMIT_FSIZE, 100'000}}}, Times::mayDiffer);
}

TEST_F(SettingsSet, FolderWithoutTheRightLeavesTheFile) {
    const OrdinaryUser user;
    if (!user.missing().empty()) {
        GTEST_SKIP() << user.missing();
    }
    folder.file(kLiveFile, plist(""));
    const std::filesystem::path preferences = folder / "device/var/mobile/Library/Preferences";
    std::filesystem::permissions(preferences, std::filesystem::perms(0555));
    expectRefused({"set", "enable=yes"}, 3, kNotWritten + "permission denied", user.with());
    std::filesystem::permissions(preferences, std::filesystem::perms(0755));
}

TEST_F(SettingsSet, ValuesThatTextCannotHoldAreNamed) {
    // {"a": the character U+0001}: a binary property list can hold it, and no XML.
    folder.file(kLiveFile,
                std::string("bplist00\xd1\x01\x02\x51\x61\x51\x01\x08\x0b\x0d\0\0\0\0\0\0"
                            "\x01\x01\0\0\0\0\0\0\0\x03\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\x0f",
                            8 + 3 + 2 + 2 + 3 + 32));
    EXPECT_EQ(settings({"get", "a"}).code, 0);
    const CommandResult result = settings({"set", "enable=yes"});
    EXPECT_EQ(result.code, 0);
    EXPECT_EQ(result.errors,
              "velmoranth: warning: the value of \"a\" is not exactly what it was: "
              "the file's text cannot hold it\n");
    EXPECT_EQ(get("enable"), "yes") << "the file is still one";
}

TEST_F(SettingsSet, TwoAtATimeLoseNothing) {
    folder.file(kLiveFile, plist(""));
    const std::vector<std::string> keys{"enable",       "enableIconMask", "enableOverlay",
                                        "enableShadow", "dynamicShadow",  "removeDock",
                                        "removeLabels", "removePageDots"};
    for (int turn = 0; turn < 3; ++turn) {
        const std::string word = turn % 2 == 0 ? "yes" : "no";
        std::vector<std::unique_ptr<RunningCommand>> running;
        for (const std::string& key : keys) {
            running.push_back(std::make_unique<RunningCommand>(std::vector<std::string>{
                "settings", "set", key + "=" + word, "--root", folder / "device"}));
        }
        for (const auto& command : running) {
            EXPECT_EQ(command->finish().code, 0);
        }
        for (const std::string& key : keys) {
            EXPECT_EQ(get(key.c_str()), word) << key;
        }
    }
}

TEST_F(SettingsSet, TellsAProcessThatListens) {
    folder.folder("device/private/var/run/notifications");
    folder.file(kLiveFile, plist(""));
    const auto root = desktop::DeviceRoot::open(folder / "device").value();
    const auto center = desktop::DesktopNotificationCenter::open(*root).value();
    EXPECT_EQ(settings({"set", "xAxisVal=1", "enable=no"}).output,
              "xAxisVal: 1\nenable: no\ncom.qor.velmoranthprefs.prefs: 1 process told\n"
              "com.qor.velmoranththemechanged.prefs: 1 process told\n");
}

class SettingsOnScreen : public PreviewTest {};

TEST_F(SettingsOnScreen, ARunningScreenShowsTheNewThemes) {
    ASSERT_EQ(runCommand({"device", "init", folder / "device"}).code, 0);
    theme("device/Library/Themes/A", kMagenta);
    theme("device/Library/Themes/B", kLime);
    const auto set = [&](std::vector<std::string> words) {
        words.insert(words.begin(), {"settings", "set"});
        words.insert(words.end(), {"--root", folder / "device"});
        return runCommand(words).output;
    };
    set({"ActiveThemes=A", "enable=yes"});
    RunningCommand running(
        {"preview", "--root", "../device", "--follow", "-o", "a.png", "--ios", "12"}, setting());
    const std::string line = "a.png: 1125 × 2436 pixels, iOS 12.4, phone\n";
    ASSERT_TRUE(running.waitForText(line));
    EXPECT_GT(picture("work/a.png").count(kMagenta), 0);

    EXPECT_EQ(set({"ActiveThemes=B"}),
              "ActiveThemes: B\ncom.qor.velmoranththemechanged.prefs: 1 process told\n");
    ASSERT_TRUE(running.waitForText(line + line));
    EXPECT_GT(picture("work/a.png").count(kLime), 0);
    EXPECT_EQ(picture("work/a.png").count(kMagenta), 0);

    set({"enable=no"});
    ASSERT_TRUE(running.waitForText(line + line + line));
    EXPECT_EQ(picture("work/a.png").count(kLime), 0);
    running.signal(SIGINT);
    EXPECT_EQ(running.finish().signal, SIGINT);
}

}  // namespace
}  // namespace velmoranth::cli::settings_set_test
