// velmoranth settings list and get
#include "tests/cli/ordinary_user.h"
#include "tests/cli/settings_fixture.h"

#include <nlohmann/json.hpp>

#include <string>

namespace velmoranth::cli::settings_list_test {
namespace {

using nlohmann::json;

class SettingsList : public SettingsTest {};

class SettingsGet : public SettingsTest {};

constexpr const char* kEntries =
    "<key>enable</key><true/><key>removeDock</key><false/><key>opacityVal</key><real>0.4</real>"
    "<key>xAxisVal</key><integer>-3</integer>"
    "<key>ActiveThemes</key><array><string>A.theme</string><string>C,D\\E</string></array>"
    "<key>enableOverlay</key><string>YES</string><key>enableShadow</key><string>on</string>"
    "<key>yAxisVal</key><string> 2.5pt</string><key>mine</key><data>AAEC</data>";

// The line of a key.
std::string lineOf(const std::string& text, const std::string& key) {
    const std::size_t start = ("\n" + text).find("\n" + key + " ");
    return start == std::string::npos ? "<none>"
                                      : text.substr(start, text.find('\n', start) - start);
}

TEST_F(SettingsList, ShowsEveryKeyWithWhatTheSystemTakesItFor) {
    folder.file(kLiveFile, plist(kEntries));
    folder.file(kSaved + "/ Night " + kFileName);
    folder.file(kSaved + "/ With  blanks " + kFileName);
    folder.file(kSaved + "/No blank " + kFileName);
    folder.file(kSaved + "/ o blank " + kFileName);
    folder.file(kSaved + "/ " + kFileName, "one blank for two");
    folder.file(kSaved + "/Cal.plist");
    folder.folder(kSaved + "/ Folder " + kFileName);
    const Tree before = tree();
    const CommandResult result = settings({"list"});
    EXPECT_EQ(result.code, 0);
    EXPECT_EQ(result.errors, "");
    const auto line = [&](const char* key) { return lineOf(result.output, key); };
    EXPECT_EQ(
        line("ActiveThemes"),
        "ActiveThemes      names       A.theme,C\\,D\\\\E  the themes in use, by the names of "
        "their folders; the first that has a picture wins");
    EXPECT_EQ(line("enable"), "enable            yes|no      yes             theming as a whole");
    EXPECT_EQ(line("removeDock"),
              "removeDock        yes|no      no              the theme's dock picture in place of "
              "the dock's own background");
    EXPECT_EQ(line("removeLabels"),
              "removeLabels      yes|no      not set: no     icons without labels");
    EXPECT_EQ(line("opacityVal"),
              "opacityVal        number      0.4             opacity of the drawn shadow, 0 to 1");
    EXPECT_EQ(line("shadowWidthVal"),
              "shadowWidthVal    number      not set: 0      width of the drawn shadow, points");
    EXPECT_NE(line("enableOverlay").find(" yes, from a text (YES)  "), std::string::npos);
    EXPECT_NE(line("enableShadow").find(" no, from a text (on)  "), std::string::npos);
    EXPECT_NE(line("yAxisVal").find(" 2.5, from a text ( 2.5pt)  "), std::string::npos);
    EXPECT_TRUE(result.output.ends_with(
        "\n\nother keys of the file, which the system does not know:\n  mine  data (<000102>)\n"
        "\nsaved copies:\n  Night\n  With  blanks\n  o blank\n"))
        << result.output;
    EXPECT_EQ(tree(), before);
}

TEST_F(SettingsList, HasALineForEachOfThe21Keys) {
    folder.file(kLiveFile, plist(""));
    const std::string text = settings({"list"}).output;
    for (const char* const key :
         {"ActiveThemes",    "enable",           "enableIconMask",  "enableOverlay",
          "enableShadow",    "dynamicShadow",    "removeDock",      "removeFolderBG",
          "removeLabels",    "removeIconBadges", "removePageDots",  "shadowRadiusVal",
          "opacityVal",      "xAxisVal",         "yAxisVal",        "shadowWidthVal",
          "shadowHeightVal", "enableLogging",    "enableImageDump", "iconReflection",
          "moreDockIcons"}) {
        EXPECT_NE(lineOf(text, key), "<none>") << key;
        EXPECT_NE(lineOf(text, key).find("not set"), std::string::npos) << key;
    }
    EXPECT_TRUE(text.ends_with("\n\nsaved copies: none\n"));
}

TEST_F(SettingsList, JsonHasValuesAsTheFileHasThemAndAsTheyAreTaken) {
    folder.file(kLiveFile, plist(kEntries));
    folder.file(kSaved + "/ Night " + kFileName);
    const CommandResult result = settings({"list", "--json"});
    EXPECT_EQ(result.code, 0);
    const json list = json::parse(result.output);
    ASSERT_EQ(list["settings"].size(), 21U);
    const auto row = [&](const char* key) {
        for (const json& candidate : list["settings"]) {
            if (candidate["key"] == key) {
                return candidate;
            }
        }
        return json();
    };
    EXPECT_EQ(row("ActiveThemes")["value"], json({"A.theme", "C,D\\E"}));
    EXPECT_EQ(row("ActiveThemes")["type"], "themes");
    EXPECT_EQ(row("enable")["value"], true);
    EXPECT_EQ(row("enable")["type"], "yesOrNo");
    EXPECT_EQ(row("xAxisVal")["value"], -3);
    EXPECT_EQ(row("xAxisVal")["type"], "number");
    EXPECT_EQ(row("enableShadow")["value"], "on");
    EXPECT_EQ(row("enableShadow")["taken"], false);
    EXPECT_EQ(row("enableOverlay")["taken"], true);
    EXPECT_EQ(row("yAxisVal")["taken"], 2.5);
    EXPECT_EQ(row("removeLabels")["set"], false);
    EXPECT_EQ(row("removeLabels")["value"], nullptr);
    EXPECT_EQ(row("removeLabels")["taken"], false);
    EXPECT_EQ(row("removeLabels")["summary"], "icons without labels");
    EXPECT_EQ(row("removeLabels")["shows"], "atOnceWhenOn");
    EXPECT_EQ(row("enableShadow")["shows"], "afterRespring");
    EXPECT_EQ(row("removeFolderBG")["shows"], "atOnce");
    EXPECT_EQ(row("ActiveThemes")["shows"], "iconsAtOnce");
    EXPECT_EQ(list["other"], json::parse(R"([{"key": "mine", "type": null, "set": true,
                                             "value": "<000102>"}])"));
    EXPECT_EQ(list["saved"], json({"Night"}));
}

TEST_F(SettingsList, ThemesThatAreNoListAreNone) {
    folder.file(kLiveFile, plist("<key>ActiveThemes</key><string>A.theme</string>"));
    EXPECT_NE(
        lineOf(settings({"list"}).output, "ActiveThemes").find(" none, from a text (A.theme)  "),
        std::string::npos);
}

TEST_F(SettingsList, NoPreferencesIsANoteAndNothingSet) {
    const CommandResult result = settings({"list"});
    EXPECT_EQ(result.code, 0);
    EXPECT_EQ(result.errors, "velmoranth: device/User/Library/Preferences/" + kFileName +
                                 ": there are no preferences, so theming is off\n");
    EXPECT_NE(lineOf(result.output, "enable").find("not set: no"), std::string::npos);
}

const std::string kFreshNote =
    "velmoranth: device/User/Library/Preferences/" + kFileName +
    ": there are no preferences; the next process that starts puts the factory's in place\n";
constexpr const char* kFactoryEntries =
    "<key>enable</key><true/><key>opacityVal</key><real>0.4</real><key>ActiveThemes</key><array/>";

TEST_F(SettingsList, AFreshDeviceHasWhatTheNextStartMakesOfIt) {
    folder.file(kFactoryFile, plist(kFactoryEntries));
    const CommandResult result = settings({"list"});
    EXPECT_EQ(result.code, 0);
    EXPECT_EQ(result.errors, kFreshNote);
    const auto line = [&](const char* key) { return lineOf(result.output, key); };
    EXPECT_EQ(line("enable"),
              "enable            yes|no      at next start: yes   theming as a whole");
    EXPECT_NE(line("ActiveThemes").find("names       at next start: none  the themes"),
              std::string::npos);
    EXPECT_NE(line("opacityVal").find(" at next start: 0.4 "), std::string::npos);
    EXPECT_NE(line("removeDock").find(" not set: no  "), std::string::npos);

    const json list = json::parse(settings({"list", "--json"}).output)["settings"];
    EXPECT_EQ(list[1]["key"], "enable");
    EXPECT_EQ(list[1]["set"], false);
    EXPECT_EQ(list[1]["taken"], false) << "as long as nothing has started";
    EXPECT_EQ(list[1]["atNextStart"], true);
    EXPECT_FALSE(list[2].contains("atNextStart"));
}

TEST_F(SettingsList, FactoryPreferencesThatAreNoneChangeNothing) {
    folder.file(kFactoryFile, "<plist><array/></plist>");
    const CommandResult result = settings({"list"});
    EXPECT_EQ(result.code, 0);
    EXPECT_EQ(result.errors, kFreshNote);
    EXPECT_NE(lineOf(result.output, "enable").find("not set: no"), std::string::npos);
}

TEST_F(SettingsList, FilesThatAreNoPreferencesAreNamedWithTheReason) {
    const std::string place = "device/User/Library/Preferences/" + kFileName + ": ";
    folder.file(kLiveFile, "<plist><array/></plist>");
    expectRefused({"list"}, 3,
                  place + "preferences are a dictionary, and this property list is none");
    folder.file(kLiveFile, std::string(50'000'000, ' '));
    expectRefused({"list"}, 3, place + "the file is larger than 16777216 bytes");
    expectRefused({"set", "enable=yes"}, 3,
                  place +
                      "the file is larger than 16777216 bytes; nothing is changed (velmoranth "
                      "settings restore puts saved preferences or the factory's in its place)");
    folder.file(kLiveFile, "bplist00 and no more");
    const CommandResult broken = settings({"get", "enable"});
    EXPECT_EQ(broken.code, 3);
    EXPECT_TRUE(broken.errors.starts_with("velmoranth: error: " + place)) << broken.errors;
    std::filesystem::remove(folder / kLiveFile);
    folder.folder(kLiveFile);
    expectRefused({"list"}, 3, place + "not a regular file");
    std::filesystem::remove(folder / kLiveFile);
    folder.link(kLiveFile, kFileName);
    EXPECT_EQ(settings({"list"}).code, 3) << "a link to itself";
}

TEST_F(SettingsList, RootsThatAreNoDevicesAreRefused) {
    folder.folder("empty");
    const auto list = [&](const std::string& root) {
        return runCommand({"settings", "list", "--root", root}, {.folder = folder.path()});
    };
    EXPECT_EQ(list("empty").errors,
              "velmoranth: error: empty: this is no device: it has no folder "
              "User/Library/Preferences; velmoranth device init makes one\n");
    EXPECT_EQ(list("empty").code, 3);
    EXPECT_EQ(list("missing").errors, "velmoranth: error: missing: no such file or directory\n");
}

TEST_F(SettingsList, RootThatCannotBeEnteredIsRefused) {
    const OrdinaryUser user;
    if (!user.missing().empty()) {
        GTEST_SKIP() << user.missing();
    }
    std::filesystem::permissions(folder / "device/var/mobile", std::filesystem::perms(0));
    const CommandResult closed =
        runCommand({"settings", "list", "--root", "device"}, user.with({.folder = folder.path()}));
    EXPECT_EQ(closed.code, 3);
    EXPECT_EQ(closed.errors,
              "velmoranth: error: device/User/Library/Preferences: permission denied\n");
    std::filesystem::permissions(folder / "device/var/mobile", std::filesystem::perms(0777));
}

TEST_F(SettingsGet, PrintsTheValueAlone) {
    folder.file(kLiveFile, plist(kEntries));
    const auto get = [&](const char* key) { return settings({"get", key}).output; };
    EXPECT_EQ(get("enable"), "yes\n");
    EXPECT_EQ(get("removeDock"), "no\n");
    EXPECT_EQ(get("opacityVal"), "0.4\n");
    EXPECT_EQ(get("xAxisVal"), "-3\n");
    EXPECT_EQ(get("ActiveThemes"), "A.theme,C\\,D\\\\E\n");
    EXPECT_EQ(get("mine"), "<000102>\n");
    EXPECT_EQ(settings({"get", "enable"}).code, 0);
    EXPECT_EQ(settings({"get", "enable"}).errors, "");
}

TEST_F(SettingsGet, SaysWhatAValueOfAnotherKindIsTakenFor) {
    folder.file(kLiveFile, plist(kEntries));
    const CommandResult result = settings({"get", "enableShadow"});
    EXPECT_EQ(result.code, 0);
    EXPECT_EQ(result.output, "no\n");
    EXPECT_EQ(result.errors,
              "velmoranth: warning: enableShadow is a text (on) in place of yes or no\n");
}

TEST_F(SettingsGet, ExitCodeIs1WhenNotSet) {
    folder.file(kLiveFile, plist(""));
    expectRefused({"get", "removeLabels"}, 1,
                  "removeLabels is not set, which the system takes as no");
    expectRefused({"get", "opacityVal"}, 1, "opacityVal is not set, which the system takes as 0");
    expectRefused({"get", "ActiveThemes"}, 1,
                  "ActiveThemes is not set, which the system takes as no theme at all");
    const CommandResult result = settings({"get", "removeLabels", "--json"});
    EXPECT_EQ(result.code, 1);
    EXPECT_EQ(json::parse(result.output)["set"], false);
}

TEST_F(SettingsGet, SaysWhatTheNextStartOfAFreshDeviceDoes) {
    folder.file(kFactoryFile, plist(kFactoryEntries));
    const auto errors = [&](const char* key) {
        const CommandResult result = settings({"get", key});
        EXPECT_EQ(result.code, 1);
        EXPECT_EQ(result.output, "");
        return result.errors;
    };
    EXPECT_EQ(errors("enable"), kFreshNote +
                                    "velmoranth: error: enable is not set; the next process that "
                                    "starts makes it yes\n");
    EXPECT_EQ(errors("opacityVal"), kFreshNote +
                                        "velmoranth: error: opacityVal is not set; the next "
                                        "process that starts makes it 0.4\n");
    EXPECT_EQ(errors("ActiveThemes"), kFreshNote +
                                          "velmoranth: error: ActiveThemes is not set; the next "
                                          "process that starts makes it none\n");
    EXPECT_EQ(
        errors("removeDock"),
        kFreshNote + "velmoranth: error: removeDock is not set, which the system takes as no\n");
    EXPECT_EQ(json::parse(settings({"get", "enable", "--json"}).output)["atNextStart"], true);
    // It is as good as its word.
    ASSERT_EQ(settings({"restore"}).code, 0);
    EXPECT_EQ(settings({"get", "enable"}).output, "yes\n");
}

TEST_F(SettingsGet, UnknownKeyIsWrongUsageWithTheNearest) {
    folder.file(kLiveFile, plist(""));
    expectRefused({"get", "removelables"}, 2,
                  "there is no preference \"removelables\"; did you mean removeLabels?");
    expectRefused({"get", "qqqqqqq"}, 2,
                  "there is no preference \"qqqqqqq\"; velmoranth settings list lists them");
}

TEST_F(SettingsGet, ReadsBinaryPropertyLists) {
    // {"enable": true}
    folder.file(kLiveFile,
                std::string("bplist00\xd1\x01\x02\x56"
                            "enable\x09\x08\x0b\x12\0\0\0\0\0\0"
                            "\x01\x01\0\0\0\0\0\0\0\x03\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\x13",
                            8 + 3 + 7 + 1 + 3 + 32));
    EXPECT_EQ(settings({"get", "enable"}).output, "yes\n");
}

}  // namespace
}  // namespace velmoranth::cli::settings_list_test
