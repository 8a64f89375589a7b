// velmoranth settings set
#include "desktop/notifications/notification_center.h"
#include "tests/cli/ordinary_user.h"
#include "tests/cli/preview_fixture.h"
#include "tests/cli/settings_fixture.h"

#include <signal.h>  // NOLINT(modernize-deprecated-headers): SIGINT

#include <filesystem>
#include <memory>
#include <string>
#include <utility>
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
    EXPECT_EQ(result.errors,
              "velmoranth: opacityVal, removeDock: a screen that is running shows this after a "
              "respring (velmoranth device respring --root device)\n");
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
    folder.file("device/Library/Themes/File.zip", "no folder");
    const CommandResult result =
        settings({"set", "ActiveThemes=Elsewhere,File.zip,A.theme,A.theme"});
    EXPECT_EQ(result.code, 0);
    EXPECT_EQ(
        result.errors,
        "velmoranth: warning: device/Library/Themes: there is no theme \"Elsewhere\"\n"
        "velmoranth: warning: device/Library/Themes: there is no theme \"File.zip\"\n"
        "velmoranth: warning: \"A.theme\" is in the list twice; the second time changes nothing\n");
    EXPECT_EQ(get("ActiveThemes"), "Elsewhere,File.zip,A.theme,A.theme");
}

TEST_F(SettingsSet, RefusesANameThatIsAnotherThemesButForASlip) {
    folder.file(kLiveFile, plist("<key>enable</key><true/>"));
    folder.folder("device/Library/Themes/Slate.theme");
    folder.folder("device/Library/Themes/Midnight");
    const std::string place = "device/Library/Themes: there is no theme ";
    for (const auto& [name, near] :
         std::vector<std::pair<std::string, std::string>>{{"Slate", "Slate.theme"},
                                                          {"slate", "Slate.theme"},
                                                          {"Slate.Theme", "Slate.theme"},
                                                          {"A.them", "A.theme"},
                                                          {"Midnigth", "Midnight"}}) {
        expectRefused({"set", "enable=no", "ActiveThemes=B.theme," + name}, 3,
                      place + "\"" + name + "\"; did you mean " + near + "?");
    }
    EXPECT_EQ(settings({"set", "ActiveThemes=Slate.theme"}).errors, "");
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
             {"opacityVal=5", "opacityVal takes a number from 0 to 1, not \"5\""},
             {"opacityVal=1.0001", "opacityVal takes a number from 0 to 1, not \"1.0001\""},
             {"opacityVal=-0.1", "opacityVal takes a number from 0 to 1, not \"-0.1\""},
             {"shadowRadiusVal=-1", "shadowRadiusVal takes a number of 0 or more, not \"-1\""},
             {"shadowRadiusVal=1e39", "shadowRadiusVal takes a number of 0 or more, not \"1e39\""},
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

TEST_F(SettingsSet, BothEndsOfARangeAreInIt) {
    folder.file(kLiveFile, plist(""));
    for (const char* const word : {"opacityVal=0", "opacityVal=1", "shadowRadiusVal=0",
                                   "shadowRadiusVal=3.4e38", "shadowWidthVal=-5"}) {
        EXPECT_EQ(settings({"set", word}).code, 0) << word;
    }
}

// The keys that the note names; "" when there is none.
std::string afterRespring(const CommandResult& result) {
    const std::string end =
        ": a screen that is running shows this after a respring (velmoranth device respring "
        "--root device)\n";
    const std::string start = "velmoranth: ";
    if (!result.errors.ends_with(end) || !result.errors.starts_with(start)) {
        return result.errors;
    }
    return result.errors.substr(start.size(), result.errors.size() - end.size() - start.size());
}

TEST_F(SettingsSet, NamesWhatARunningScreenShowsAfterARespring) {
    folder.file(kLiveFile, plist(""));
    EXPECT_EQ(afterRespring(settings({"set", "dynamicShadow=yes", "opacityVal=0.4",
                                      "ActiveThemes=A.theme", "removeDock=yes"})),
              "dynamicShadow, opacityVal");
    EXPECT_EQ(afterRespring(settings({"set", "opacityVal=0.4", "dynamicShadow=yes"})), "")
        << "nothing has changed";
    EXPECT_EQ(
        afterRespring(settings({"set", "removeDock=no", "removeLabels=no", "enableShadow=1"})),
        "enableShadow, removeDock");
    for (const char* const key :
         {"enable", "removeDock", "removeLabels", "removeIconBadges", "removePageDots"}) {
        EXPECT_EQ(afterRespring(settings({"set", key + std::string("=yes")})), "") << key;
        EXPECT_EQ(afterRespring(settings({"set", key + std::string("=no")})), key);
    }
    for (const char* const key : {"enableIconMask", "enableOverlay", "removeFolderBG",
                                  "enableLogging", "enableImageDump", "iconReflection"}) {
        EXPECT_EQ(afterRespring(settings({"set", key + std::string("=yes")})), "") << key;
        EXPECT_EQ(afterRespring(settings({"set", key + std::string("=no")})), "") << key;
    }
    for (const char* const key :
         {"shadowRadiusVal", "xAxisVal", "yAxisVal", "shadowWidthVal", "shadowHeightVal"}) {
        EXPECT_EQ(afterRespring(settings({"set", key + std::string("=3")})), key);
    }
    const std::string help = runCommand({"settings", "set", "--help"}).output;
    EXPECT_NE(help.find("0 to 1; a running"), std::string::npos) << help;
    EXPECT_NE(help.find("icons at once,"), std::string::npos) << help;
}

class SettingsUnset : public SettingsSet {};

TEST_F(SettingsUnset, TakesKeysOutAndTellsTheProcesses) {
    folder.file(kLiveFile,
                plist("<key>removeDock</key><true/><key>mine</key><true/>"
                      "<key>ActiveThemes</key><array/><key>opacityVal</key><real>1</real>"
                      "<key>other</key><string>stays</string>"));
    const CommandResult result =
        settings({"unset", "removeDock", "mine", "ActiveThemes", "opacityVal", "xAxisVal"});
    EXPECT_EQ(result.code, 0);
    EXPECT_EQ(result.output,
              "removeDock: no longer set, which the system takes as no\n"
              "mine: no longer set\n"
              "ActiveThemes: no longer set, which the system takes as no theme at all\n"
              "opacityVal: no longer set, which the system takes as 0\n"
              "xAxisVal: was not set, which the system takes as 0\n" +
                  kPrefsLine + kThemeChangedLine);
    EXPECT_EQ(afterRespring(result), "opacityVal, removeDock");
    EXPECT_EQ(get("removeDock"), "<none>");
    EXPECT_EQ(get("mine"), "<none>");
    EXPECT_EQ(get("other"), "stays");
}

TEST_F(SettingsUnset, AKeyThatIsNoneIsRefusedBeforeAnythingIsTakenOut) {
    folder.file(kLiveFile, plist("<key>removeDock</key><true/>"));
    expectRefused({"unset", "removeDock", "removeDokc"}, 2,
                  "there is no preference \"removeDokc\"; did you mean removeDock?");
    expectRefused({"unset", "qqqqqqqqqq"}, 2,
                  "there is no preference \"qqqqqqqqqq\"; velmoranth settings list lists them");
}

TEST_F(SettingsUnset, WhatWasNotSetTellsNobody) {
    folder.file(kLiveFile, plist(""));
    EXPECT_EQ(settings({"unset", "removeDock"}).output,
              "removeDock: was not set, which the system takes as no\n");
}

TEST_F(SettingsUnset, BeginsWithTheFactoryPreferencesWhereThereAreNone) {
    folder.file(kFactoryFile, plist("<key>enable</key><true/><key>removeDock</key><true/>"));
    EXPECT_TRUE(settings({"unset", "removeDock"})
                    .errors.starts_with("velmoranth: there were no preferences; these begin with "
                                        "the factory's\n"));
    EXPECT_EQ(get("enable"), "yes");
    EXPECT_EQ(get("removeDock"), "<none>");
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
        return runCommand(words);
    };
    EXPECT_EQ(set({"ActiveThemes=A", "enable=yes"}).errors,
              "velmoranth: there were no preferences; these begin with the factory's\n")
        << "no screen is running";
    RunningCommand running(
        {"preview", "--root", "../device", "--follow", "-o", "a.png", "--ios", "12"}, setting());
    const std::string line = "a.png: 1125 × 2436 pixels, iOS 12.4, phone\n";
    ASSERT_TRUE(running.waitForText(line));
    EXPECT_GT(picture("work/a.png").count(kMagenta), 0);

    const CommandResult told = set({"ActiveThemes=B"});
    EXPECT_EQ(told.output,
              "ActiveThemes: B\ncom.qor.velmoranththemechanged.prefs: 1 process told\n");
    EXPECT_EQ(
        told.errors,
        "velmoranth: ActiveThemes: a screen that is running shows icons at once, and all else "
        "after a respring (velmoranth device respring --root " +
            (folder / "device") + ")\n");
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
