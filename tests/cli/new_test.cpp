// velmoranth new: a theme to begin with.
#include "tests/cli/preview_fixture.h"

namespace velmoranth::cli::new_test {
namespace {

namespace fs = std::filesystem;

class New : public PreviewTest {
  protected:
    [[nodiscard]] CommandResult run(const std::vector<std::string>& words) const {
        return runCommand(words, setting());
    }

    void expectRefused(std::vector<std::string> words, int code, const std::string& line) const {
        words.insert(words.begin(), "new");
        const CommandResult result = run(words);
        EXPECT_EQ(result.code, code) << line;
        EXPECT_EQ(result.errors, "velmoranth: error: " + line + "\n");
        EXPECT_EQ(result.output, "");
    }

    // All files below a folder, in order.
    [[nodiscard]] std::vector<std::string> filesOf(const std::string& name) const {
        std::vector<std::string> files;
        for (const auto& entry : fs::recursive_directory_iterator(folder / name)) {
            if (entry.is_regular_file()) {
                files.push_back(entry.path().lexically_relative(folder / name));
            }
        }
        std::ranges::sort(files);
        return files;
    }
};

TEST_F(New, aThemeWithEveryKindOfFileOnce) {
    const CommandResult result = run({"new", "Sunset", "--author", "Ann"});
    EXPECT_EQ(result.code, 0);
    EXPECT_EQ(result.errors, "");
    EXPECT_EQ(result.output,
              "Sunset.theme: a new theme; velmoranth preview Sunset.theme draws it\n");
    EXPECT_EQ(folder.names("work"), "Sunset.theme");
    EXPECT_EQ(folder.names("tmp"), "");
    const std::vector<std::string> files{
        "Bundles/com.apple.Preferences/WiFi@3x.png",
        "Bundles/com.apple.SpringBoardHome/ClockIconBackgroundSquare@3x.png",
        "Bundles/com.apple.mobileicons.framework/AppIconMask.png",
        "Bundles/com.apple.springboard/ANEMFolderBackground.png",
        "Bundles/com.apple.springboard/SBBadgeBG.png",
        "Bundles/com.apple.springboard/SBPageDot.png",
        "Bundles/com.apple.springboard/SBPageDot@2x.png",
        "Bundles/com.apple.springboard/SBPageDot@3x.png",
        "Bundles/com.apple.springboard/SBPageDotCurrent.png",
        "Bundles/com.apple.springboard/SBPageDotCurrent@2x.png",
        "Bundles/com.apple.springboard/SBPageDotCurrent@3x.png",
        "Bundles/com.apple.springboard/Spotlight_Pages.png",
        "Bundles/com.apple.springboard/Spotlight_Pages@2x.png",
        "Bundles/com.apple.springboard/Spotlight_Pages@3x.png",
        "Bundles/com.apple.weather-framework/clear-day@3x.png",
        "IconBundles/com.apple.mobilecal-large.png",
        "IconBundles/com.apple.mobilesafari-large.png",
        "Info.plist",
        "README.md",
        "UIImages/UISwitchKnob.png",
        "UIImages/UISwitchKnob@2x.png",
        "UIImages/UISwitchKnob@3x.png",
        "UIImages/chevron.right@3x.png",
        "UISounds/lock.caf",
        "Velmoranth/Folder.png",
        "Velmoranth/SBDockBGipad.png",
        "Velmoranth/SBDockBGiphone.png",
        "Velmoranth/iPadOverlay.png",
        "Velmoranth/iPadShadow~ipad.png",
        "Velmoranth/iPhoneOverlay.png",
        "Velmoranth/iPhoneShadow.png",
        "Velmoranth/ipadFolder.png"};
    EXPECT_EQ(filesOf("work/Sunset.theme"), files);
    EXPECT_EQ(folder.mode("work/Sunset.theme"), 0755U);
    EXPECT_EQ(folder.mode("work/Sunset.theme/Info.plist"), 0644U);
    // The page inside names every file, those of other scales by the plain one.
    const std::string page = folder.contents("work/Sunset.theme/README.md");
    EXPECT_EQ(page.find("# Sunset\n"), 0U);
    for (const std::string& file : files) {
        if (file != "README.md" && file.find("@2x") == std::string::npos &&
            (file.find("@3x") == std::string::npos ||
             !fs::exists(folder / ("work/Sunset.theme/" +
                                   std::string(file).replace(file.find("@3x"), 3, ""))))) {
            EXPECT_NE(page.find("| `" + file + "` | "), std::string::npos) << file;
        }
    }
}

TEST_F(New, everythingInItShows) {
    EXPECT_EQ(run({"new", "Sunset"}).code, 0);
    const CommandResult lint = run({"lint", "Sunset.theme"});
    EXPECT_EQ(lint.code, 0);
    EXPECT_EQ(lint.output, "Sunset.theme: 32 files, nothing found\n");
    const std::vector<std::string> settings{"--set", "removeDock=yes", "--set", "enableShadow=yes"};
    for (const std::string device : {"phone", "pad"}) {
        std::vector<std::string> words{"preview", "Sunset.theme", "--device", device};
        words.insert(words.end(), settings.begin(), settings.end());
        const CommandResult result = run(words);
        EXPECT_EQ(result.code, 0);
        EXPECT_EQ(result.errors.find("velmoranth: 3 of "), 0U) << result.errors;
        EXPECT_NE(result.errors.find(" apps have an icon of the theme; mask, overlay, shadow, "
                                     "folder, open folder, dock, badges, dots; nothing for "),
                  std::string::npos)
            << result.errors;
        EXPECT_EQ(std::ranges::count(result.errors, '\n'), 1) << result.errors;
    }
    EXPECT_EQ(
        run({"sound", "lock", "Sunset.theme", "-o", "lock.wav"})
            .output.find("lock.caf of Sunset.theme: 0.12 s, linear PCM, 1 channel, 44100 Hz\n"),
        0U);
}

TEST_F(New, theMakersColorIsEverywhere) {
    EXPECT_EQ(run({"new", "A", "--tint", "FF00FE"}).code, 0);
    EXPECT_EQ(run({"new", "B.theme", "--tint", "#ff00fe"}).code, 0);
    EXPECT_EQ(folder.names("work"), "A.theme B.theme");
    for (const std::string& file : filesOf("work/A.theme")) {
        EXPECT_EQ(
            folder.contents("work/A.theme/" + file) == folder.contents("work/B.theme/" + file),
            file != "Info.plist" && file != "README.md")
            << file;
    }
    const PngPicture calendar = picture("work/A.theme/IconBundles/com.apple.mobilecal-large.png");
    EXPECT_EQ(calendar.width, 180U);
    EXPECT_EQ(calendar.height, 180U);
    EXPECT_EQ(calendar.count(kMagenta), 180 * 57);
}

TEST_F(New, theNameAndTheAuthorStandInTheThemesList) {
    EXPECT_EQ(run({"new", "in/Red Sky/", "--author", "A&B <a@b>"}).code, 3);  // there is no "in"
    folder.folder("work/in");
    EXPECT_EQ(run({"new", "in/Red Sky/", "--author", "A&B <a@b>"}).output,
              "in/Red Sky.theme: a new theme; velmoranth preview 'in/Red Sky.theme' draws it\n");
    const CommandResult packed = run({"pack", "in/Red Sky.theme"});
    EXPECT_EQ(packed.errors, "");
    const CommandResult control =
        runCommand({"--field", "themes.red-sky_1.0_iphoneos-arm.deb", "Name", "Version", "Author"},
                   {.folder = folder / "work", .variables = {}, .program = "/usr/bin/dpkg-deb"});
    EXPECT_EQ(control.output, "Name: Red Sky\nVersion: 1.0\nAuthor: A&B <a@b>\n");
}

TEST_F(New, whatIsThereStaysAndWrongNamesAreRefused) {
    folder.file("work/A.theme/mine", "mine");
    expectRefused({"A"}, 3, "A.theme: it is there already");
    EXPECT_EQ(folder.names("work/A.theme"), "mine");
    folder.link("work/B.theme", "nowhere");
    expectRefused({"B"}, 3, "B.theme: it is there already");
    expectRefused({"none/C"}, 3, "none/C.theme: no such file or directory");
    for (const std::string name : {"", "/", ".theme", "..", "a\nb"}) {
        std::string shownName = name;
        std::ranges::replace(shownName, '\n', '?');
        expectRefused({name}, 2,
                      "NAME is the new theme's name, and \"" + shownName + "\" can be none");
    }
    for (const std::string color : {"", "red", "12345", "1234567", "#12345", "-12345", "0x1234"}) {
        expectRefused({"D", "--tint", color}, 2,
                      "--tint takes six hexadecimal digits, not \"" + color + "\"");
    }
    expectRefused({"D", "--author", "a\nb"}, 2, "--author takes a line of text");
    EXPECT_EQ(folder.names("work"), "A.theme B.theme");
    EXPECT_EQ(folder.names("tmp"), "");
}

TEST_F(New, aThemeThatCannotBeFinishedIsNotThere) {
    CommandSetting limited = setting();
    limited.limits = {{RLIMIT_FSIZE, 3000}};
    const CommandResult result = runCommand({"new", "A"}, limited);
    EXPECT_EQ(result.code, 3) << result.signal;
    EXPECT_EQ(result.errors,
              "velmoranth: error: A.theme: the theme cannot be written: file too large\n");
    EXPECT_EQ(folder.names("work"), "");
}

}  // namespace
}  // namespace velmoranth::cli::new_test
