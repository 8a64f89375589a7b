// Themes and devices that are not what they should be.
#include "tests/cli/ordinary_user.h"
#include "tests/cli/preview_fixture.h"

#include <sys/stat.h>

#include <algorithm>
#include <filesystem>
#include <string>

namespace velmoranth::cli::preview_input_test {
namespace {

namespace fs = std::filesystem;

using PreviewInput = PreviewTest;

constexpr const char* kPreferences = "/User/Library/Preferences/com.qor.velmoranthprefs.plist";

TEST_F(PreviewInput, ThemeThatIsNoneIsOneLine) {
    folder.file("work/file", "text");
    folder.folder("work/empty");
    folder.folder("work/pipes");
    ::mkfifo((folder / "work/pipes/p").c_str(), 0600);
    expectBadInput({"none"}, "none: there is no such theme folder");
    expectBadInput({"no/such/../place"}, "no/such/../place: there is no such theme folder");
    expectBadInput({"/no/such/theme"}, "/no/such/theme: there is no such theme folder");
    expectBadInput({"größe"}, "größe: there is no such theme folder");
    expectBadInput({"file"},
                   "file: it is no .deb, .zip or .tar archive; give one of these, or a folder");
    expectBadInput({"/dev/null"}, "/dev/null: this is neither a folder nor an archive");
    expectBadInput({"file/x"}, "file/x: not a directory");
    expectBadInput({"empty"}, "empty: the theme folder is empty");
    expectBadInput({"pipes"},
                   "pipes/p: a theme holds files, folders and links, and this is none of them");
    const std::string longPath(4200, 'a');
    expectBadInput({longPath},
                   longPath.substr(0, 70) + "…" + longPath.substr(0, 70) + ": file name too long");
}

TEST_F(PreviewInput, AnEmptyNameIsWrongUsage) {
    ASSERT_EQ(runCommand({"device", "init", "../device"}, setting()).code, 0);
    for (const std::vector<std::string>& words :
         {std::vector<std::string>{"preview", ""},
          {"preview", "A", ""},
          {"explain", "", "--", "dock"},
          {"sound", "lock", ""},
          {"device", "install", "", "--root", "../device"}}) {
        const CommandResult result = runCommand(words, setting());
        EXPECT_EQ(result.code, 2) << words.front();
        EXPECT_EQ(result.errors, "velmoranth: error: THEME takes a name, and this one is empty\n");
        EXPECT_EQ(result.output, "");
    }
}

// Whatever command it is given to.
TEST_F(PreviewInput, WhatIsNotThereIsALineThatSaysWhatItIs) {
    const std::filesystem::path work = folder / "work";
    std::filesystem::create_symlink("round", work / "round");
    std::filesystem::create_symlink("../gone", work / "dead.theme");
    ASSERT_EQ(runCommand({"device", "init", "../device"}, setting()).code, 0);
    for (const auto& [path, why] : std::vector<std::pair<std::string, std::string>>{
             {"round", "it is a link that leads round to itself; give what it should lead to"},
             {"dead.theme",
              "it is a link to ../gone, which is not there; give what it should lead to"},
             {"quartz.deb", "there is no such archive"},
             {"quartz.tar.xz", "there is no such archive"},
             {"quartz.theme", "there is no such theme folder"},
             {"quartz/", "there is no such theme folder"}}) {
        for (const std::vector<std::string>& words :
             {std::vector<std::string>{"preview", path},
              {"lint", path},
              {"convert", path, "-o", "out"},
              {"explain", path, "--", "dock"},
              {"pack", path},
              {"device", "install", path, "--root", "../device"}}) {
            const CommandResult result = runCommand(words, setting());
            EXPECT_EQ(result.code, 3) << words.front();
            EXPECT_EQ(result.errors, "velmoranth: error: " + path + ": " + why + "\n")
                << words.front();
        }
    }
}

TEST_F(PreviewInput, ThemesOfOneNameAreRefused) {
    theme("one/A", kMagenta);
    theme("two/A", kLime);
    expectBadInput({"../one/A", "../two/A"},
                   "../two/A: a theme of this name is given before (../one/A); a device has one "
                   "folder of a name");
}

TEST_F(PreviewInput, NameThatPreferencesCannotHoldIsRefused) {
    theme("bad\xff", kMagenta);
    theme("line\nend", kMagenta);
    const std::string why = ": the folder's name can be no theme's: it has none, or not plain text";
    expectBadInput({"../bad\xff"}, "../bad?" + why);
    expectBadInput({"../line\nend"}, "../line?end" + why);
    expectBadInput({"/"}, "/" + why);
}

// The limits of every command.
TEST_F(PreviewInput, ThemeThatIsTooLargeIsRefused) {
    theme("A", kMagenta);
    folder.file("A/large", "");
    fs::resize_file(folder / "A/large", std::uintmax_t{600} * 1024 * 1024);
    EXPECT_EQ(preview({"../A"}).code, 0);
    fs::resize_file(folder / "A/large", std::uintmax_t{2} * 1024 * 1024 * 1024);
    expectBadInput({"../A"}, "../A: it holds more than 2147483648 bytes");
    for (const char* const command : {"explain", "sound", "convert"}) {
        std::vector<std::string> words{command, "../A"};
        if (command == std::string("explain")) {
            words.insert(words.end(), {"--", "mask"});
        } else {
            words.insert(words.end(), {"-o", "out"});
        }
        if (command == std::string("sound")) {
            words.insert(words.begin() + 1, "lock");
        }
        EXPECT_NE(
            runCommand(words, setting()).errors.find("../A: it holds more than 2147483648 bytes\n"),
            std::string::npos)
            << command;
    }
}

// What a theme has and the screen does not ask for is listed and nothing else: the theme is read
// where it lies.
TEST_F(PreviewInput, AThemeIsReadWhereItLiesAndIsNotCopied) {
    theme("A", kMagenta);
    for (int i = 0; i < 300; ++i) {
        folder.file("A/IconBundles/com.example.app" + std::to_string(i) + "-large.png",
                    std::string(100'000, 'x'));
    }
    // A file system of its own would be full: no file may be larger than one of these.
    CommandSetting limited = setting();
    limited.limits[RLIMIT_FSIZE] = 99'000;
    const CommandResult result = runCommand({"preview", "--quiet", "../A", "-o", "-"}, limited);
    EXPECT_EQ(result.code, 0) << result.errors;
    EXPECT_GT(PngPicture(result.output).count(kMagenta), 1000);
    EXPECT_EQ(folder.names("tmp"), "");
}

TEST_F(PreviewInput, LinksOfAThemeMeanWhatTheyMeanOnADevice) {
    theme("A", kMagenta);
    theme("B", kLime);
    theme("away", kLime);
    const std::string icon = "/IconBundles/com.apple.Preferences-large.png";
    fs::remove(folder / ("A" + icon));
    const auto lime = [&](const std::string& target) {
        fs::remove(folder / ("A" + icon));
        folder.link("A" + icon, target);
        EXPECT_EQ(preview({"../A"}).code, 0);
        return picture().count(kLime);
    };
    EXPECT_EQ(lime(folder / ("away" + icon)), 0) << "a place of this machine";
    EXPECT_EQ(lime("../../away" + icon), 0) << "a place beside the theme";
    EXPECT_EQ(lime("../../B" + icon), 0) << "a theme that is not given";
    folder.file("A/own.png", folder.contents("away" + icon));
    EXPECT_GT(lime("../own.png"), 1000);
    EXPECT_GT(lime("/Library/Themes/A/own.png"), 1000);
    // Across the edge, to another theme of the run, which is behind this one.
    const auto magenta = [&] {
        EXPECT_EQ(preview({"../A", "../C"}).code, 0);
        return picture().count(kMagenta);
    };
    theme("C", kMagenta);
    fs::rename(folder / "C/IconBundles/com.apple.Preferences-large.png", folder / "C/own.png");
    EXPECT_EQ(magenta(), 0);
    fs::remove(folder / ("A" + icon));
    folder.link("A" + icon, "../../C/own.png");
    EXPECT_GT(magenta(), 1000);
}

TEST_F(PreviewInput, ThemeThatCannotBeReadIsOneLine) {
    const OrdinaryUser user;
    if (!user.missing().empty()) {
        GTEST_SKIP() << user.missing();
    }
    theme("A", kMagenta);
    fs::permissions(folder / "A/IconBundles", fs::perms::none);
    fs::permissions(folder / "work", fs::perms(0777));
    const CommandResult result = runCommand({"preview", "../A"}, user.with(setting()));
    fs::permissions(folder / "A/IconBundles", fs::perms::owner_all);
    EXPECT_EQ(result.code, 3);
    EXPECT_EQ(result.errors.find("velmoranth: error: ../A"), 0U) << result.errors;
    EXPECT_NE(result.errors.find("ermission denied\n"), std::string::npos) << result.errors;
    EXPECT_EQ(folder.names("tmp"), "");
}

TEST_F(PreviewInput, DeviceThatIsNoneIsOneLine) {
    folder.file("work/file", "text");
    expectBadInput({"--root", "none"}, "none: no such file or directory");
    expectBadInput({"--root", "file"}, "file: not a directory");
}

TEST_F(PreviewInput, DeviceThatCannotBeWrittenToIsOneLine) {
    const OrdinaryUser user;
    if (!user.missing().empty()) {
        GTEST_SKIP() << user.missing();
    }
    ASSERT_EQ(runCommand({"device", "init", folder / "device"}).code, 0);
    fs::permissions(folder / "device", fs::perms(0555));
    fs::permissions(folder / "work", fs::perms(0777));
    const CommandResult result =
        runCommand({"preview", "--root", "../device"}, user.with(setting()));
    fs::permissions(folder / "device", fs::perms(0755));
    EXPECT_EQ(result.code, 3);
    EXPECT_EQ(result.errors,
              "velmoranth: error: ../device: the device cannot be written to; a device writes to "
              "its own files\n");
}

TEST_F(PreviewInput, OddPreferencesAreOneWarningAndTheStockScreen) {
    ASSERT_EQ(runCommand({"device", "init", folder / "device"}).code, 0);
    const std::string start = "velmoranth: warning: ../device" + std::string(kPreferences) + ": ";
    const std::string on = "<plist><dict><key>enable</key><true/><key>ActiveThemes</key>";
    const std::string end = "</dict></plist>";
    const auto warningFor = [&](const std::string& contents) {
        folder.file("device" + std::string(kPreferences), contents);
        const CommandResult result = preview({"--root", "../device"});
        EXPECT_EQ(result.code, 0) << contents;
        EXPECT_EQ(picture().width, 1125U);
        EXPECT_TRUE(result.errors.starts_with(start)) << result.errors;
        EXPECT_EQ(std::count(result.errors.begin(), result.errors.end(), '\n'), 1) << result.errors;
        return result.errors.substr(std::min(start.size(), result.errors.size()));
    };

    fs::remove(folder /
               "device/var/mobile/Library/VelMoranth/DefaultSettings/"
               "com.qor.velmoranthprefs.plist");
    EXPECT_EQ(preview({"--root", "../device"}).errors,
              start + "there are no preferences, so theming is off\n");
    const std::string unreadable = "no readable preferences, so theming is off: ";
    EXPECT_EQ(warningFor(""), unreadable + "the file is empty\n");
    EXPECT_TRUE(warningFor("<plist><dict><key>ena").starts_with(unreadable));
    EXPECT_TRUE(warningFor("bplist00\x01").starts_with(unreadable));
    EXPECT_EQ(warningFor("<plist><array/></plist>"),
              "preferences are a dictionary, and this is a list, so theming is off\n");
    EXPECT_EQ(warningFor("<plist><dict/></plist>"), "\"enable\" is not on, so theming is off\n");
    EXPECT_EQ(warningFor("<plist><dict><key>enable</key><true/></dict></plist>"),
              "\"ActiveThemes\" is missing, so no theme is active\n");
    EXPECT_EQ(warningFor(on + "<array/>" + end),
              "\"ActiveThemes\" is empty, so no theme is active\n");
    EXPECT_EQ(warningFor(on + "<string>A</string>" + end),
              "\"ActiveThemes\" is a text in place of a list of names, so no theme is active\n");
    EXPECT_EQ(warningFor(on + "<array><integer>3</integer><true/></array>" + end),
              "\"ActiveThemes\" holds what is no theme's name: entry 1 is an integer, entry 2 is a "
              "boolean\n");
    EXPECT_EQ(
        warningFor(on + "<array><string>../../etc</string><string>/etc</string></array>" + end),
        "\"ActiveThemes\" holds what is no theme's name: \"../../etc\" is no folder's name, "
        "\"/etc\" is no folder's name\n");
    EXPECT_EQ(warningFor(on + "<array><string>Ü</string></array>" + end),
              "active themes that are not in Library/Themes: \"Ü\"\n");
    const std::string longName(4096, 'a');
    EXPECT_EQ(warningFor(on + "<array><string>" + longName + "</string></array>" + end),
              "active themes that are not in Library/Themes: \"" + longName.substr(0, 70) + "…" +
                  longName.substr(0, 70) + "\"\n");
    EXPECT_EQ(folder.names("."), "device tmp work");
}

}  // namespace
}  // namespace velmoranth::cli::preview_input_test
