// velmoranth device install
#include "tests/cli/preview_fixture.h"
#include "tests/support/archives/archive_writer.h"

#include <filesystem>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace velmoranth::cli::device_install_test {
namespace {

namespace fs = std::filesystem;

constexpr const char* kIcon = "/IconBundles/com.apple.Preferences-large.png";

class DeviceInstall : public PreviewTest {
  protected:
    DeviceInstall() {
        EXPECT_EQ(runCommand({"device", "init", folder / "device"}).code, 0);
        theme("A.theme", kMagenta);
    }

    [[nodiscard]] CommandResult install(std::vector<std::string> words) const {
        words.insert(words.begin(), {"device", "install"});
        words.insert(words.end(), {"--root", "../device"});
        return runCommand(words, setting());
    }

    // How many pixels of the device's screen have the colour once these themes are active.
    [[nodiscard]] int shows(const std::string& themes, Color color) const {
        const CommandResult set = runCommand(
            {"settings", "set", "ActiveThemes=" + themes, "--root", "../device"}, setting());
        EXPECT_EQ(set.errors.find("warning"), std::string::npos) << set.errors;
        const CommandResult drawn = preview({"--root", "../device"});
        EXPECT_EQ(drawn.code, 0);
        EXPECT_EQ(drawn.errors, "");
        return picture().count(color);
    }
};

TEST_F(DeviceInstall, ProgressIsShownOnATerminalOnceCopyingTakesLong) {
    const std::string place = "Many.theme/Bundles/com.example.many/";
    std::optional<std::string> shown;
    int files = 4000;
    // The work is doubled until it takes this machine long.
    do {
        fs::remove_all(folder / "device/Library/Themes/Many.theme");
        for (int i = files == 4000 ? 0 : files; i < 2 * files; ++i) {
            folder.file(place + std::to_string(i), "x");
        }
        files *= 2;
        shown = errorsOnTerminal({"device", "install", "../Many.theme", "--root", "../device"},
                                 setting());
        if (!shown) {
            GTEST_SKIP() << "no pseudo-terminal is to be had";
        }
    } while (shown->find(" of ") == std::string::npos && files < 90000);
    EXPECT_NE(shown->find(" of " + std::to_string(files) + " files"), std::string::npos) << *shown;
    EXPECT_NE(shown->find("\r\033[K"), std::string::npos) << "the line stays";
    EXPECT_EQ(folder.count("device/Library/Themes/" + place), files);
}

TEST_F(DeviceInstall, WhatAKilledRunHasLeftIsInNobodysWay) {
    folder.file("device/Library/Themes/.A.theme.new/IconBundles/half.png", "x");
    EXPECT_EQ(install({"../A.theme"}).code, 0);
    EXPECT_EQ(folder.names("device/Library/Themes"), "A.theme");
    EXPECT_EQ(folder.names("device/Library/Themes/A.theme/IconBundles"),
              "com.apple.Preferences-large.png");
    folder.file("device/Library/Themes/.A.theme.new/IconBundles/half.png", "x");
    EXPECT_EQ(install({"../A.theme", "--link", "--force"}).code, 0);
    EXPECT_EQ(folder.names("device/Library/Themes"), "A.theme");
}

TEST_F(DeviceInstall, AThemeIsCopied) {
    const CommandResult result = install({"../A.theme"});
    EXPECT_EQ(result.code, 0) << result.errors;
    EXPECT_EQ(result.output, "../device/Library/Themes: A.theme is installed\n");
    theme("A.theme", kLime);
    EXPECT_GT(shows("A.theme", kMagenta), 1000);
    EXPECT_EQ(folder.names("device/Library/Themes"), "A.theme");
}

TEST_F(DeviceInstall, AThemeIsReadWhereItLies) {
    const CommandResult result = install({"../A.theme", "--link"});
    EXPECT_EQ(result.code, 0) << result.errors;
    EXPECT_EQ(result.output, "../device/Library/Themes: A.theme is linked\n");
    EXPECT_EQ(fs::read_symlink(folder / "device/Library/Themes/A.theme"),
              fs::canonical(folder / "A.theme"));
    EXPECT_GT(shows("A.theme", kMagenta), 1000);
    theme("A.theme", kLime);
    EXPECT_GT(shows("A.theme", kLime), 1000);
    // With what is said about it, as of any theme.
    const CommandResult told = runCommand({"preview", "--root", "../device"}, setting());
    EXPECT_NE(told.errors.find("1 of 46 apps has an icon of the theme"), std::string::npos)
        << told.errors;
}

TEST_F(DeviceInstall, LinksOutOfALinkedThemeLeadNowhere) {
    ASSERT_EQ(install({"../A.theme", "--link"}).code, 0);
    fs::rename(folder / (std::string("A.theme") + kIcon), folder / "away.png");
    for (const std::string& target : {folder / "away.png", std::string("../../away.png")}) {
        fs::remove(folder / (std::string("A.theme") + kIcon));
        folder.link(std::string("A.theme") + kIcon, target);
        EXPECT_EQ(shows("A.theme", kMagenta), 0) << target;
    }
    fs::rename(folder / "away.png", folder / "A.theme/own.png");
    fs::remove(folder / (std::string("A.theme") + kIcon));
    folder.link(std::string("A.theme") + kIcon, "/Library/Themes/A.theme/own.png");
    EXPECT_GT(shows("A.theme", kMagenta), 1000);
}

TEST_F(DeviceInstall, ALinkThatLeadsNowhereIsTold) {
    folder.link("device/Library/Themes/B.theme", "../../../A.theme");
    const CommandResult set =
        runCommand({"settings", "set", "ActiveThemes=B.theme", "--root", "../device"}, setting());
    EXPECT_NE(set.errors.find("../device/Library/Themes: \"B.theme\" is a link that leads to no "
                              "folder on the device; velmoranth device install THEME --root DIR "
                              "--link makes one that does\n"),
              std::string::npos)
        << set.errors;
    // One of the device's own stays that.
    ASSERT_EQ(install({"../A.theme"}).code, 0);
    folder.link("device/Library/Themes/C.theme", "/Library/Themes/A.theme");
    EXPECT_GT(shows("C.theme", kMagenta), 1000);
}

TEST_F(DeviceInstall, PackagesAndArchivesAreCopied) {
    const std::string png = folder.contents(std::string("A.theme") + kIcon);
    folder.file("a.deb",
                tests::packageOf({{std::string("./Library/Themes/P.theme") + kIcon, png}}));
    folder.file("a.zip", tests::zipOf({{std::string("X.theme") + kIcon, png},
                                       {std::string("Y.theme") + kIcon, png}}));
    EXPECT_EQ(install({"../a.deb", "../a.zip"}).output,
              "../device/Library/Themes: P.theme is installed\n"
              "../device/Library/Themes: X.theme is installed\n"
              "../device/Library/Themes: Y.theme is installed\n");
    EXPECT_GT(shows("Y.theme", kMagenta), 1000);
    EXPECT_EQ(folder.names("tmp"), "");
}

TEST_F(DeviceInstall, WhatCannotBeInstalledIsALine) {
    const auto refusal = [&](const std::vector<std::string>& words) {
        const CommandResult result = install(words);
        EXPECT_EQ(result.code, 3);
        return result.errors;
    };
    folder.file("a.zip", tests::zipOf({{std::string("X.theme") + kIcon, "x"}}));
    EXPECT_EQ(refusal({"../a.zip", "--link"}),
              "velmoranth: error: ../a.zip: only a folder can be linked; without --link what is in "
              "this is copied\n");
    EXPECT_TRUE(refusal({"../none"}).starts_with("velmoranth: error: ../none: "));
    ASSERT_EQ(install({"../A.theme"}).code, 0);
    for (const char* const option : {"--", "--link"}) {
        EXPECT_EQ(
            refusal(option == std::string("--link")
                        ? std::vector<std::string>{"../A.theme", "--link"}
                        : std::vector<std::string>{"../A.theme"}),
            "velmoranth: error: ../A.theme: the device has a theme \"A.theme\" already; "
            "--force replaces it, velmoranth device uninstall A.theme --root ../device removes "
            "it\n");
    }
    EXPECT_EQ(folder.names("device/Library/Themes"), "A.theme");
    const CommandResult noRoot = runCommand({"device", "install", "x"});
    EXPECT_EQ(noRoot.code, 2);
    EXPECT_EQ(noRoot.errors,
              "velmoranth: error: velmoranth device install needs --root DIR, the device that gets "
              "the theme\n");
}

std::string notActive(const std::string& what, const std::string& keys,
                      const std::string& them = "it") {
    return "velmoranth: " + what + " not active yet; velmoranth settings set " + keys +
           " --root ../device has " + them + " shown\n";
}

TEST_F(DeviceInstall, WhatMakesItActiveIsSaid) {
    EXPECT_EQ(install({"../A.theme"}).errors, notActive("A.theme is", "ActiveThemes=A.theme"));
    EXPECT_GT(shows("A.theme", kMagenta), 1000);
    EXPECT_EQ(install({"../A.theme", "--force"}).errors, "") << "it is active";
    theme("My, own.theme", kLime);
    theme("C.theme", kLime);
    EXPECT_EQ(install({"../My, own.theme", "../C.theme"}).errors,
              notActive("My, own.theme, C.theme are",
                        "'ActiveThemes=My\\, own.theme,C.theme,A.theme'", "them"));
    // The command does what is said of it.
    ASSERT_EQ(runCommand({"settings", "set", "ActiveThemes=My\\, own.theme,C.theme,A.theme",
                          "--root", "../device"},
                         setting())
                  .code,
              0);
    ASSERT_EQ(preview({"--root", "../device"}).code, 0);
    EXPECT_GT(picture().count(kLime), 1000);
    EXPECT_EQ(install({"../C.theme", "--force"}).errors, "");
    ASSERT_EQ(runCommand({"settings", "set", "enable=no", "--root", "../device"}, setting()).code,
              0);
    EXPECT_EQ(
        install({"../C.theme", "--force"}).errors,
        "velmoranth: theming is off on this device; velmoranth settings set enable=yes --root "
        "../device has it on\n");
    theme("E.theme", kLime);
    EXPECT_EQ(install({"../E.theme"}).errors,
              notActive("E.theme is",
                        "'ActiveThemes=E.theme,My\\, own.theme,C.theme,A.theme' enable=yes"));
}

TEST_F(DeviceInstall, ThemesThatAreGoneAreLeftOutOfTheListThatIsSaid) {
    theme("B.theme", kLime);
    theme("C.theme", kLime);
    ASSERT_EQ(install({"../B.theme"}).code, 0);
    ASSERT_EQ(install({"../C.theme", "--link"}).code, 0);
    const auto activate = [&] {
        static_cast<void>(runCommand(
            {"settings", "set", "ActiveThemes=Old.theme,B.theme,C.theme", "--root", "../device"},
            setting()));
    };
    folder.folder("device/Library/Themes/Old.theme");
    activate();
    fs::remove_all(folder / "device/Library/Themes/Old.theme");
    EXPECT_EQ(install({"../A.theme"}).errors,
              notActive("A.theme is", "ActiveThemes=A.theme,B.theme,C.theme"));
    // A linked one whose folder is gone is none either.
    fs::rename(folder / "C.theme", folder / "D.theme");
    EXPECT_EQ(install({"../A.theme", "--force"}).errors,
              notActive("A.theme is", "ActiveThemes=A.theme,B.theme"));
}

TEST_F(DeviceInstall, ForceReplacesWhatIsThere) {
    ASSERT_EQ(install({"../A.theme"}).code, 0);
    folder.file("device/Library/Themes/A.theme/left.over", "x");
    theme("A.theme", kLime);
    EXPECT_EQ(
        install({"../A.theme", "--force"}).output,
        "../device/Library/Themes: A.theme is installed in place of the one that was there\n");
    EXPECT_EQ(folder.names("device/Library/Themes/A.theme"), "IconBundles");
    EXPECT_GT(shows("A.theme", kLime), 1000);
    // A link in the place of a copy, and the other way round; the maker's folder stays whole.
    EXPECT_EQ(install({"../A.theme", "--link", "--force"}).output,
              "../device/Library/Themes: A.theme is linked in place of the one that was there\n");
    EXPECT_TRUE(fs::is_symlink(folder / "device/Library/Themes/A.theme"));
    EXPECT_EQ(install({"../A.theme", "--link", "--force"}).code, 0);
    EXPECT_EQ(install({"../A.theme", "--force"}).code, 0);
    EXPECT_FALSE(fs::is_symlink(folder / "device/Library/Themes/A.theme"));
    EXPECT_EQ(folder.names("A.theme"), "IconBundles");
    EXPECT_EQ(folder.names("device/Library/Themes"), "A.theme");
    EXPECT_EQ(folder.names("tmp"), "");
}

// It would be replaced by itself, or by a link to itself.
TEST_F(DeviceInstall, TheDevicesOwnThemeStaysAsItIs) {
    ASSERT_EQ(install({"../A.theme"}).code, 0);
    for (const std::vector<std::string>& options :
         std::vector<std::vector<std::string>>{{"--force"}, {"--force", "--link"}, {}}) {
        std::vector<std::string> words{"../device/User/../../../Library/Themes/A.theme/"};
        words.insert(words.end(), options.begin(), options.end());
        const CommandResult result = install(words);
        EXPECT_EQ(result.code, 3);
        EXPECT_EQ(result.errors, "velmoranth: error: " + words.front() +
                                     ": this is the device's own theme already\n");
    }
    EXPECT_GT(shows("A.theme", kMagenta), 1000);
}

TEST_F(DeviceInstall, WhatConvertingWouldShowIsSaid) {
    const std::string png = folder.contents(std::string("A.theme") + kIcon);
    folder.file("A.theme/Icons/com.apple.Maps.png", png);
    const std::string hidden = runCommand({"preview", "../A.theme"}, setting()).errors;
    const std::size_t begin = hidden.find("velmoranth: A.theme: 1 icon lies under a name");
    ASSERT_NE(begin, std::string::npos) << hidden;
    const std::string line = hidden.substr(begin, hidden.find('\n', begin) + 1 - begin);
    EXPECT_TRUE(install({"../A.theme"}).errors.starts_with(line));
    EXPECT_TRUE(install({"../A.theme", "--link", "--force"}).errors.starts_with(line));
}

class DeviceUninstall : public DeviceInstall {
  protected:
    [[nodiscard]] CommandResult uninstall(std::vector<std::string> words) const {
        words.insert(words.begin(), {"device", "uninstall"});
        words.insert(words.end(), {"--root", "../device"});
        return runCommand(words, setting());
    }
};

TEST_F(DeviceUninstall, ThemesAreTakenOff) {
    theme("B.theme", kLime);
    ASSERT_EQ(install({"../A.theme"}).code, 0);
    ASSERT_EQ(install({"../B.theme", "--link"}).code, 0);
    const CommandResult result = uninstall({"A.theme", "B.theme", "A.theme"});
    EXPECT_EQ(result.code, 0);
    EXPECT_EQ(result.errors, "");
    EXPECT_EQ(result.output,
              "../device/Library/Themes: A.theme is removed\n"
              "../device/Library/Themes: B.theme is removed\n");
    EXPECT_EQ(folder.names("device/Library/Themes"), "");
    EXPECT_EQ(folder.names("B.theme/IconBundles"), "com.apple.Preferences-large.png");
}

TEST_F(DeviceUninstall, NeitherAClosedFolderNorAKilledRunIsInTheWay) {
    ASSERT_EQ(install({"../A.theme"}).code, 0);
    fs::permissions(folder / "device/Library/Themes/A.theme/IconBundles", fs::perms::none);
    folder.file("device/Library/Themes/.A.theme.new/IconBundles/half.png", "x");
    const CommandResult result = uninstall({"A.theme"});
    EXPECT_EQ(result.code, 0) << result.errors;
    EXPECT_EQ(folder.names("device/Library/Themes"), "");
}

TEST_F(DeviceUninstall, OneThatIsActiveIsTold) {
    theme("B.theme", kLime);
    ASSERT_EQ(install({"../A.theme", "../B.theme"}).code, 0);
    EXPECT_GT(shows("A.theme,B.theme", kMagenta), 1000);
    EXPECT_EQ(uninstall({"A.theme"}).errors,
              "velmoranth: it is still among the active themes, where nothing comes of it; "
              "velmoranth settings set ActiveThemes=B.theme --root ../device tidies up\n");
    EXPECT_GT(shows("B.theme", kLime), 1000);
}

TEST_F(DeviceUninstall, WhatIsNotThereIsNamedNearby) {
    ASSERT_EQ(install({"../A.theme"}).code, 0);
    const std::string error = "velmoranth: error: ../device/Library/Themes: there is no theme ";
    for (const auto& [name, more] : std::vector<std::pair<std::string, std::string>>{
             {"B.theme", "; did you mean A.theme?\n"},
             {"a", "; did you mean A.theme?\n"},
             {"Quartz.theme", "\n"},
             {"../device/Library/Themes/A.theme", "; give a theme's name, as in A.theme\n"},
             {"..", "; give a theme's name, as in A.theme\n"},
             {"", "; give a theme's name, as in A.theme\n"}}) {
        const CommandResult result = uninstall({"A.theme", name});
        EXPECT_EQ(result.code, 3);
        EXPECT_EQ(result.errors, error + "\"" + name + "\"" + more);
        EXPECT_EQ(result.output, "");
    }
    EXPECT_EQ(folder.names("device/Library/Themes"), "A.theme") << "all are looked for first";
    const CommandResult noRoot = runCommand({"device", "uninstall", "x"});
    EXPECT_EQ(noRoot.code, 2);
    EXPECT_EQ(
        noRoot.errors,
        "velmoranth: error: velmoranth device uninstall needs --root DIR, the device that has "
        "the theme\n");
}

}  // namespace
}  // namespace velmoranth::cli::device_install_test
