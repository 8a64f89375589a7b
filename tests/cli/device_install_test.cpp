// velmoranth device install
#include "tests/cli/preview_fixture.h"
#include "tests/support/archives/archive_writer.h"

#include <filesystem>

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
        EXPECT_EQ(refusal(option == std::string("--link")
                              ? std::vector<std::string>{"../A.theme", "--link"}
                              : std::vector<std::string>{"../A.theme"}),
                  "velmoranth: error: ../A.theme: the device has a theme \"A.theme\" already; "
                  "remove that first\n");
    }
    EXPECT_EQ(folder.names("device/Library/Themes"), "A.theme");
    const CommandResult noRoot = runCommand({"device", "install", "x"});
    EXPECT_EQ(noRoot.code, 2);
    EXPECT_EQ(noRoot.errors,
              "velmoranth: error: velmoranth device install needs --root DIR, the device that gets "
              "the theme\n");
}

}  // namespace
}  // namespace velmoranth::cli::device_install_test
