#include "tests/cli/command.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

namespace velmoranth::cli::usage_test {
namespace {

std::ptrdiff_t lineCount(const std::string& text) {
    return std::count(text.begin(), text.end(), '\n');
}

struct Misuse {
    std::vector<std::string> words;
    std::string message;
};

TEST(Usage, EveryMisuseIsOneLineAndExitCode2) {
    const std::vector<Misuse> misuses{
        {{}, "a command is missing; velmoranth --help lists them"},
        {{"hoks"}, "there is no command \"hoks\"; did you mean hooks?"},
        {{"qqqqqqq"}, "there is no command \"qqqqqqq\"; velmoranth --help lists what there is"},
        {{"--vrsion"}, "there is no option \"--vrsion\"; did you mean --version?"},
        {{"device", "int", "x"}, "there is no command \"device int\"; did you mean device init?"},
        {{"device", "init"}, "velmoranth device init needs DIR; velmoranth device init --help"},
        {{"device", "init", "a", "b"},
         "velmoranth device init does not know what to do with \"b\""},
        {{"extract"}, "velmoranth extract needs INPUT [OUTPUT-DIR]; velmoranth extract --help"},
        {{"extract", "a.car"}, "OUTPUT-DIR is missing (or --list); velmoranth extract --help"},
        {{"extract", "a.car", ""}, "INPUT and OUTPUT-DIR take a name, and this one is empty"},
        {{"extract", "a.car", "b", "c"}, "velmoranth extract does not know what to do with \"c\""},
        {{"extract", "a.car", "b", "--list"},
         "--list does not go with OUTPUT-DIR: it writes nothing"},
        {{"extract", "a.car", "--json"},
         "OUTPUT-DIR is missing (or --list); velmoranth extract --help"},
        {{"extract", "a.car", "b", "--flat", "--system-names"},
         "--flat does not go with --system-names: the system has folders of its own"},
        {{"extract", "a.car", "b", "--scale", "1.5"},
         "--scale takes a number from 1 to 100, not \"1.5\""},
        {{"extract", "a.car", "b", "--idiom", "pda"},
         "--idiom takes universal, phone, pad, tv, car, watch, marketing or a number, not "
         "\"pda\"; did you mean pad?"},
        {{"extract", "a.car", "-", "--json"},
         "--json does not go with -: standard output has the picture"},
        {{"extract", "a.car", "-", "--system-names"},
         "--system-names does not go with -: a picture on standard output has no name"},
        {{"extract", "a.car", "b", "--idiom", "65536"},
         "--idiom takes universal, phone, pad, tv, car, watch, marketing or a number, not "
         "\"65536\""},
        {{"extract", "a.car", "b", "--appearance", "UIAppearance"},
         "--appearance takes a name such as dark, not \"UIAppearance\""},
        {{"extract", "a.car", "--list", "--jobs", "2"},
         "--list does not go with --jobs: it writes no pictures"},
        {{"extract", "a.car", "b", "--jobs", "0"},
         "--jobs takes a number from 1 to 256, not \"0\""},
        {{"extract", "a.car", "b", "--jobs", "two"},
         "--jobs takes a number from 1 to 256, not \"two\""},
        {{"extract", "a.car", "b", "--jobs"}, "--jobs needs a value: --jobs N"},
        {{"extract", "a.car", "--list=yes"}, "--list takes no value"},
        {{"preview", "T", "-o"}, "--output needs a value: --output FILE"},
        {{"preview", "T", "--folder-page"}, "--folder-page needs a value: --folder-page N"},
        {{"extract", "a.car", "b", "--name", "x", "--name", ""},
         "--name takes a pattern, and this one is empty"},
        {{"hooks", "--jsn"}, "velmoranth hooks has no option \"--jsn\"; did you mean --json?"},
        {{"hooks", "x"}, "velmoranth hooks does not know what to do with \"x\""},
        {{"hooks", "--version-number", "nan"}, "--version-number takes a number, not \"nan\""},
        {{"hooks", "--version-number", "inf"}, "--version-number takes a number, not \"inf\""},
        {{"hooks", "--version-number", "1e999"}, "--version-number takes a number, not \"1e999\""},
        {{"hooks", "--version-number", "1x"}, "--version-number takes a number, not \"1x\""},
        {{"hooks", "--version-number", ""}, "--version-number takes a number, not \"\""},
        {{"notify", "prfs", "--root", "."},
         "there is no notification \"prfs\"; did you mean prefs?"},
        {{"notify", "prefs"}, "velmoranth notify needs --root DIR, the device to tell"},
        {{"settings", "qqqqqqqqqqqqq"},
         "there is no command \"settings qqqqqqqqqqqqq\"; velmoranth settings --help lists what "
         "there "
         "is"},
        {{"settings", "sett", "enable=no"},
         "there is no command \"settings sett\"; did you mean settings set?"},
        {{"settings", "list"}, "velmoranth settings list needs --root DIR, the device"},
        {{"settings", "list", "x"}, "velmoranth settings list does not know what to do with \"x\""},
        {{"settings", "get", "--root", "d"},
         "velmoranth settings get needs KEY; velmoranth settings get --help"},
        {{"settings", "set", "--root", "d"},
         "velmoranth settings set needs KEY=VALUE...; velmoranth settings set --help"},
        {{"settings", "set", "enable=yes"}, "velmoranth settings set needs --root DIR, the device"},
        {{"settings", "unset", "--root", "d"},
         "velmoranth settings unset needs KEY...; velmoranth settings unset --help"},
        {{"settings", "unset", "enable"}, "velmoranth settings unset needs --root DIR, the device"},
        {{"device", "respring"},
         "velmoranth device respring needs --root DIR, the device to start again"},
        {{"device", "respring", "x"},
         "velmoranth device respring does not know what to do with \"x\""},
        {{"settings", "rename", "Night", "--root", "d"},
         "velmoranth settings rename needs OLD NEW; velmoranth settings rename --help"},
        {{"settings", "save", "Night", "Day", "--root", "d"},
         "velmoranth settings save does not know what to do with \"Day\""},
        {{"settings", "restore", "--jsn"},
         "velmoranth settings restore has no option \"--jsn\"; velmoranth settings restore --help "
         "lists them"},
        {{"sound"}, "velmoranth sound needs EVENT THEME...; velmoranth sound --help"},
        {{"sound", "lock"}, "a THEME folder is missing (or --root DIR); velmoranth sound --help"},
        {{"sound", "lcok", "T"}, "there is no sound \"lcok\"; did you mean lock?"},
        {{"sound", "panel:eror"}, "there is no sound \"panel:eror\"; did you mean panel:error?"},
        {{"sound", "bell tower", "T"},
         "there is no sound \"bell tower\"; velmoranth sound --help lists them"},
        {{"sound", "", "T"}, "there is no sound \"\"; velmoranth sound --help lists them"},
        {{"sound", "event:", "T"},
         "there is no sound \"event:\"; velmoranth sound --help lists them"},
        {{"sound", "4294967296", "T"},
         "a system sound's number has 32 bits, and \"4294967296\" is larger"},
        {{"sound", "-1", "T"},
         "velmoranth sound has no option \"-1\"; velmoranth sound --help lists them"},
        {{"sound", "lock", "T", "--root", "d"},
         "--root does not go with THEME: a device has its own themes"},
        {{"sound", "lock", "T", "-o", ""}, "--output takes a name, and this one is empty"},
        {{"sound", "lock", "T", "-o", "-"},
         "--output takes a file's name: standard output says what is played"},
        {{"preview"}, "a THEME folder is missing (or --root DIR); velmoranth preview --help"},
        {{"preview", "T", "--outptu", "x"},
         "velmoranth preview has no option \"--outptu\"; did you mean --output?"},
        {{"preview", "T", "-o", "a", "-o", "b"}, "--output is given more than once"},
        {{"preview", "T", "-o", ""}, "--output takes a name, and this one is empty"},
        {{"preview", "--root", "d", "T"},
         "--root does not go with THEME: a device has its own themes"},
        {{"preview", "--root", "d", "--set", "enable=no"},
         "--root does not go with --set: a device has its own preferences; change those, or give "
         "THEME"},
        {{"preview", "T", "--before", "--compare"},
         "--before does not go with --compare: --compare shows both"},
        {{"preview", "T", "--follow", "--compare"},
         "--follow does not go with --compare: follow the themed screen alone"},
        {{"preview", "T", "--follow", "-o", "-"},
         "--follow does not go with --output -: give a file, which is written again"},
        {{"preview", "T", "--set", "enable"}, "--set takes KEY=VALUE, not \"enable\""},
        {{"preview", "T", "--set", "=yes"}, "--set takes KEY=VALUE, not \"=yes\""},
        {{"preview", "T", "--set", "enableicnmask=1"},
         "there is no preference \"enableicnmask\"; did you mean enableIconMask?"},
        {{"preview", "T", "--set", "qqqqqqqq=1"},
         "there is no preference \"qqqqqqqq\"; velmoranth preview --help lists them"},
        {{"preview", "T", "--set", "enable=maybe"}, "--set enable takes yes or no, not \"maybe\""},
        {{"preview", "T", "--set", "enable="}, "--set enable takes yes or no, not \"\""},
        {{"preview", "T", "--set", "opacityVal=half"},
         "--set opacityVal takes a number from 0 to 1, not \"half\""},
        {{"preview", "T", "--set", "xAxisVal=1e39"}, "--set xAxisVal takes a number, not \"1e39\""},
        {{"preview", "T", "--ios", "14"}, "--ios takes 12 or 13, not \"14\""},
        {{"preview", "T", "--device", "phon"},
         "--device takes phone, phone-667 or pad, not \"phon\"; did you mean phone?"},
        {{"preview", "T", "--screen", "lock"},
         "--screen takes home, folder, pressed, today, switcher, notification, settings, "
         "panel-error, "
         "panel-success, weather, controls, gallery or icons, not \"lock\""},
        {{"preview", "T", "--screen", "settings", "--page", "2"},
         "--page needs a screen that has pages: home, folder, pressed, gallery or icons"},
        {{"preview", "T", "--screen", "gallery", "--wallpaper", "w.png"},
         "--wallpaper needs a screen that has the home screen in it: home, folder, pressed, today, "
         "switcher or notification"},
        {{"preview", "T", "--screen", "icons", "--apps", "theme"},
         "--apps needs a screen that has the home screen in it: home, folder, pressed, today, "
         "switcher or notification"},
        {{"preview", "T", "--wallpaper", ""}, "--wallpaper takes a name, and this one is empty"},
        {{"preview", "T", "--apps", ""}, "--apps takes a name, and this one is empty"},
        {{"preview", "T", "--wallpaper", "a", "--wallpaper", "b"},
         "--wallpaper is given more than once"},
        {{"preview", "T", "--apps", "theme", "--screen", "pressed", "--icon", ""},
         "there is no icon \"\" on the home screen"},
        {{"preview", "T", "--folder", "Utilities"}, "--folder needs --screen folder"},
        {{"preview", "T", "--screen", "pressed", "--folder-page", "2"},
         "--folder-page needs --screen folder"},
        {{"preview", "T", "--steps"}, "--steps needs --screen folder or panel-success"},
        {{"preview", "T", "--screen", "folder", "--icon", "Mail"}, "--icon needs --screen pressed"},
        {{"preview", "T", "--screen", "folder", "--folder", "Games"},
         "--folder takes Utilities or Social, not \"Games\""},
        {{"preview", "T", "--screen", "folder", "--folder", "Utilties"},
         "--folder takes Utilities or Social, not \"Utilties\"; did you mean Utilities?"},
        {{"preview", "T", "--screen", "hmoe"},
         "--screen takes home, folder, pressed, today, switcher, notification, settings, "
         "panel-error, panel-success, weather, controls, gallery or icons, not \"hmoe\"; did you "
         "mean home?"},
        {{"preview", "T", "--orientation", "lanscape"},
         "--orientation takes portrait or landscape, not \"lanscape\"; did you mean landscape?"},
        {{"preview", "T", "--color", "alway"},
         "--color takes auto, always or never, not \"alway\"; did you mean always?"},
        {{"preview", "T", "--screen", "folder", "--folder", "Social", "--page", "1"},
         "--page does not go with --folder: the page is the one where that lies"},
        {{"preview", "T", "--screen", "folder", "--folder-page", "x"},
         "--folder-page takes a number from 1 to 1000, not \"x\""},
        {{"preview", "T", "--screen", "pressed", "--icon", "Mial"},
         "there is no icon \"Mial\" on the home screen; did you mean Mail?"},
        {{"preview", "T", "--screen", "folder", "--steps", "-o", "-"},
         "--steps does not go with --output -: give a file, which the steps' are named for"},
        {{"preview", "T", "--screen", "folder", "--steps", "--follow"},
         "--steps does not go with --follow: the steps have an end"},
        {{"preview", "T", "--screen", "folder", "--steps", "--compare"},
         "--steps does not go with --compare: take --before for the stock screen's steps"},
        {{"preview", "T", "--all-screens", "--sheet"},
         "--all-screens does not go with --sheet: take one after the other"},
        {{"preview", "T", "--all-screens", "--screen", "home"},
         "--all-screens does not go with --screen: all are drawn"},
        {{"preview", "T", "--all-screens", "--page", "2"},
         "--all-screens does not go with --page: every page is drawn"},
        {{"preview", "T", "--sheet", "--page", "2"},
         "--sheet does not go with --page: of each screen the first page is drawn"},
        {{"preview", "T", "--sheet", "--compare"},
         "--sheet does not go with --compare: take one after the other"},
        {{"preview", "T", "--all-screens", "--follow"},
         "--all-screens does not go with --follow: it is of one screen"},
        {{"preview", "T", "--sheet", "--screen", "folder", "--folder", "Social"},
         "--sheet does not go with --folder: it is of one screen"},
        {{"preview", "T", "--sheet", "--screen", "home,lock"},
         "--screen takes home, folder, pressed, today, switcher, notification, settings, "
         "panel-error, panel-success, weather, controls, gallery or icons, not \"lock\""},
        {{"preview", "T", "--screen", "home,weather"},
         "--screen takes home, folder, pressed, today, switcher, notification, settings, "
         "panel-error, panel-success, weather, controls, gallery or icons, not "
         "\"home,weather\"; several go with --sheet"},
        {{"preview", "T", "--screen", "pressed", "--icon", "com.apple.maps"},
         "there is no icon \"com.apple.maps\" on the home screen; did you mean com.apple.Maps?"},
        {{"preview", "T", "--sheet", "--device", "phone,pod"},
         "--device takes phone, phone-667 or pad, not \"pod\"; did you mean pad?"},
        {{"preview", "T", "--sheet", "--ios", "13,14"}, "--ios takes 12 or 13, not \"14\""},
        {{"preview", "T", "--sheet", "--device", ""},
         "--device takes phone, phone-667 or pad, not \"\""},
        {{"preview", "T", "--sheet", "--screen", ""},
         "--screen takes home, folder, pressed, today, switcher, notification, settings, "
         "panel-error, panel-success, weather, controls, gallery or icons, not \"\""},
        {{"names", "icons"},
         "names takes apps, settings, weather, images, chrome or sounds, not \"icons\""},
        {{"names", "aps"},
         "names takes apps, settings, weather, images, chrome or sounds, not \"aps\"; did you mean "
         "apps?"},
        {{"names", "--ios", "11"}, "--ios takes 12 or 13, not \"11\""},
        {{"preview", "T", "--sheet", "--device", "phone,"},
         "--device takes phone, phone-667 or pad, not \"\""},
        {{"preview", "T", "--sheet", "--screen", "settings,controls", "--apps", "theme"},
         "--apps needs a screen that has the home screen in it: home, folder, pressed, today, "
         "switcher or notification"},
        {{"preview", "T", "--all-screens", "-o", "-"},
         "--all-screens does not go with --output -: give a folder, which the pictures go to"},
        {{"preview", "T", "--json", "-o", "-"},
         "--json does not go with --output -: give a file, since standard output has the JSON"},
        {{"preview", "T", "--json", "--follow"},
         "--json does not go with --follow: nothing says where one ends"},
        {{"preview", "T", "--expect", "e.png", "-o", "-"},
         "--expect does not go with --output -: give a file, beside which the difference goes"},
        {{"preview", "T", "--expect", "e.png", "--follow"},
         "--expect does not go with --follow: the picture is to change"},
        {{"preview", "T", "--expect", ""}, "--expect takes a name, and this one is empty"},
        {{"preview", "T", "--tolerance", "1"}, "--tolerance needs --expect FILE"},
        {{"preview", "T", "--expect", "e.png", "--tolerance", "256"},
         "--tolerance takes a whole number from 0 to 255, not \"256\""},
        {{"preview", "T", "--expect", "e.png", "--tolerance", "-1"},
         "--tolerance takes a whole number from 0 to 255, not \"-1\""},
        {{"preview", "T", "--orientation", "landscape"},
         "the home screen of a phone does not turn to landscape; take a pad"},
        {{"preview", "T", "--orientation", "up"},
         "--orientation takes portrait or landscape, not \"up\""},
        {{"preview", "T", "--page", "0"}, "--page takes a number from 1 to 1000, not \"0\""},
        {{"preview", "T", "--locale", "../x"},
         "--locale takes a name like en_US or de, not \"../x\""},
        {{"explain", "T", "--locale", "xx_DE", "--", "dock"},
         "--locale takes a language that is known, and \"xx_DE\" is none; did you mean "
         "de_DE?"},
        {{"preview", "T", "--locale", "dee_DE"},
         "--locale takes a language that is known, and \"dee_DE\" is none; did you mean de_DE?"},
        {{"preview", "T", "-o", "x.jpg"},
         "--output writes a PNG file, and the name x.jpg is another format's"},
        {{"preview", "T", "-o", "x.WAV"},
         "--output writes a PNG file, and the name x.WAV is another format's"},
        {{"explain", "T", "-o", "a/x.jpg", "--", "dock"},
         "--output writes a PNG file, and the name a/x.jpg is another format's"},
        {{"sound", "lock", "T", "-o", "l.mp3"},
         "--output writes a WAV file, and the name l.mp3 is another format's"},
        {{"sound", "lock", "T", "-o", "l.png"},
         "--output writes a WAV file, and the name l.png is another format's"},
        {{"preview", "T", "-o", "deep/X.TIFF"},
         "--output writes a PNG file, and the name deep/X.TIFF is another format's"},
        {{"preview", "T", "--date", "2019-02-30"},
         "--date takes a date like 2019-12-24 or 2019-12-24T18:30, or now, not \"2019-02-30\""},
        {{"preview", "T", "--date", "2019-12-24T25:00"},
         "--date takes a date like 2019-12-24 or 2019-12-24T18:30, or now, not "
         "\"2019-12-24T25:00\""},
    };
    for (const Misuse& misuse : misuses) {
        const CommandResult result = runCommand(misuse.words);
        EXPECT_EQ(result.code, 2) << misuse.message;
        EXPECT_EQ(result.errors, "velmoranth: error: " + misuse.message + "\n");
        EXPECT_EQ(result.output, "");
    }
}

// Which one that is, is the tables' affair.
TEST(Usage, ALocaleLikeNoneIsToldTheNearest) {
    const CommandResult result = runCommand({"preview", "T", "--locale", "xx_YY"});
    const std::string start =
        "velmoranth: error: --locale takes a language that is known, and \"xx_YY\" is none; the "
        "nearest that is known is ";
    EXPECT_EQ(result.code, 2);
    ASSERT_TRUE(result.errors.starts_with(start)) << result.errors;
    const std::string nearest =
        result.errors.substr(start.size(), result.errors.size() - start.size() - 1);
    EXPECT_EQ(nearest.size(), 5U) << nearest;
    EXPECT_EQ(runCommand({"preview", "T", "--locale", nearest}).code, 3) << "no such theme";
}

TEST(Usage, HelpOfHelpIsTheProgramsOwn) {
    const std::string whole = runCommand({"--help"}).output;
    EXPECT_TRUE(whole.starts_with("usage: velmoranth COMMAND"));
    for (const std::vector<std::string>& words : std::vector<std::vector<std::string>>{
             {"help"}, {"help", "--help"}, {"help", "-h"}, {"-h"}}) {
        const CommandResult result = runCommand(words);
        EXPECT_EQ(result.code, 0) << result.errors;
        EXPECT_EQ(result.output, whole);
    }
    EXPECT_EQ(runCommand({"help", "--hlp"}).code, 2);
}

TEST(Usage, AGroupAloneListsItsCommands) {
    for (const std::string group : {"device", "settings"}) {
        const CommandResult help = runCommand({"help", group});
        EXPECT_EQ(help.code, 0);
        for (const std::vector<std::string>& words :
             std::vector<std::vector<std::string>>{{group}, {group, "--root", "d"}}) {
            const CommandResult result = runCommand(words);
            EXPECT_EQ(result.code, 2);
            EXPECT_EQ(result.errors,
                      "velmoranth: error: velmoranth " + group + " needs one of these commands\n");
            EXPECT_EQ(result.output, help.output);
        }
    }
    const std::string devices = runCommand({"device"}).output;
    EXPECT_TRUE(
        devices.starts_with("usage: velmoranth device COMMAND ...\n\ncommands:\n"
                            "  device init DIR            Lay out the file system of a "))
        << devices;
    for (const std::string line :
         {"  device install THEME...    Put themes on a device.\n",
          "  device uninstall THEME...  Take themes off a device.\n",
          "  device respring            Start the running screens of a device again.\n"}) {
        EXPECT_NE(devices.find(line), std::string::npos) << devices;
    }
}

TEST(Usage, OptionWithoutItsValueIsOneLine) {
    const CommandResult result = runCommand({"preview", "T", "--set"});
    EXPECT_EQ(result.code, 2);
    EXPECT_NE(result.errors.find("--set"), std::string::npos);
    EXPECT_EQ(lineCount(result.errors), 1);
}

TEST(Usage, ControlCharactersOfAWordDoNotReachTheTerminal) {
    const CommandResult result = runCommand({"a\x1b[31m\nb\xff\xc2\x9b", "x"});
    EXPECT_EQ(result.code, 2);
    EXPECT_EQ(result.errors,
              "velmoranth: error: there is no command \"a?[31m?b??\"; velmoranth --help lists what "
              "there is\n");
}

TEST(Usage, HelpOfEveryCommandHasItsOptionsAndExamples) {
    for (const std::vector<std::string>& command :
         std::vector<std::vector<std::string>>{{"preview"},
                                               {"extract"},
                                               {"device", "init"},
                                               {"hooks"},
                                               {"notify"},
                                               {"sound"},
                                               {"settings", "list"},
                                               {"settings", "get"},
                                               {"settings", "set"},
                                               {"settings", "save"},
                                               {"settings", "rename"},
                                               {"settings", "delete"},
                                               {"settings", "restore"}}) {
        std::string name = "velmoranth";
        for (const std::string& word : command) {
            name += " " + word;
        }
        std::vector<std::string> words = command;
        words.emplace_back("--help");
        const CommandResult result = runCommand(words);
        EXPECT_EQ(result.code, 0);
        EXPECT_EQ(result.errors, "");
        EXPECT_TRUE(result.output.starts_with("usage: " + name)) << result.output;
        EXPECT_NE(result.output.find("\noptions:\n"), std::string::npos);
        EXPECT_NE(result.output.find("--help"), std::string::npos);
        EXPECT_NE(result.output.find("\nexamples:\n  "), std::string::npos);
        EXPECT_NE(runCommand({"--help"}).output.find(name.substr(11)), std::string::npos);
    }
}

TEST(Usage, HelpWinsOverWhatIsMissing) {
    EXPECT_EQ(runCommand({"device", "init", "--help"}).code, 0);
    EXPECT_EQ(runCommand({"notify", "-h"}).code, 0);
}

TEST(Usage, AGroupsHelpListsItsCommands) {
    const CommandResult result = runCommand({"settings", "--help"});
    EXPECT_EQ(result.code, 0);
    EXPECT_EQ(result.errors, "");
    EXPECT_TRUE(result.output.starts_with("usage: velmoranth settings COMMAND ...\n"));
    for (const char* const row :
         {"settings list ", "settings get KEY ", "settings set KEY=VALUE... ",
          "settings save NAME ", "settings rename OLD NEW ", "settings delete NAME ",
          "settings restore [NAME] ", "settings unset KEY... "}) {
        EXPECT_NE(result.output.find(std::string("\n  ") + row), std::string::npos) << row;
    }
    const std::string device = runCommand({"device", "--help"}).output;
    for (const char* const row : {"device init DIR ", "device install THEME... "}) {
        EXPECT_NE(device.find(std::string("\n  ") + row), std::string::npos) << row;
    }
}

TEST(Usage, SettingsHelpListsEveryKey) {
    const std::string help = runCommand({"settings", "set", "--help"}).output;
    for (const char* const key :
         {"ActiveThemes=A,B", "enable=yes|no", "opacityVal=NUMBER", "moreDockIcons=yes|no"}) {
        EXPECT_NE(help.find(std::string("  ") + key + " "), std::string::npos) << key;
    }
    EXPECT_EQ(help.find("unless set"), std::string::npos) << "that is a preview's";
}

TEST(Usage, PreviewHelpListsEveryPreference) {
    const std::string help = runCommand({"preview", "--help"}).output;
    for (const char* const key :
         {"enable=yes|no", "enableIconMask=yes|no", "enableOverlay=yes|no", "enableShadow=yes|no",
          "dynamicShadow=yes|no", "removeDock=yes|no", "removeFolderBG=yes|no",
          "removeLabels=yes|no", "removeIconBadges=yes|no", "removePageDots=yes|no",
          "shadowRadiusVal=NUMBER", "opacityVal=NUMBER", "xAxisVal=NUMBER", "yAxisVal=NUMBER",
          "shadowWidthVal=NUMBER", "shadowHeightVal=NUMBER", "enableLogging=yes|no",
          "enableImageDump=yes|no"}) {
        EXPECT_NE(help.find(std::string("  ") + key + " "), std::string::npos) << key;
    }
}

TEST(Usage, VersionIsOneLine) {
    const CommandResult result = runCommand({"--version"});
    EXPECT_EQ(result.code, 0);
    EXPECT_TRUE(result.output.starts_with("velmoranth ")) << result.output;
    EXPECT_EQ(lineCount(result.output), 1);
}

}  // namespace
}  // namespace velmoranth::cli::usage_test
