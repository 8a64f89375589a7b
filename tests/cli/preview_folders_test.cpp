// Folders that are no theme, and what a run's own device logs.
#include "tests/cli/preview_fixture.h"

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

namespace velmoranth::cli::preview_folders_test {
namespace {

using PreviewFolders = PreviewTest;

TEST_F(PreviewFolders, AFolderOfThemesSaysWhereTheyLie) {
    theme("H1/Library/Themes/B.theme", kLime);
    expectBadInput({"../H1"},
                   "../H1: this is no theme, but holds ../H1/Library/Themes/B.theme; give that");
    theme("H1/Library/Themes/A", kMagenta);
    expectBadInput({"../H1"},
                   "../H1: this is no theme, but holds ../H1/Library/Themes/A, "
                   "../H1/Library/Themes/B.theme; give one of them, or for preview --all, which "
                   "draws them together");
    theme("Collection/One.theme", kLime);
    theme("Collection/Two.theme", kLime);
    theme("Collection/more/Three", kLime);
    theme("Collection/more/Four", kLime);
    expectBadInput({"../H1/Library/Themes/A", "../Collection"},
                   "../Collection: this is no theme, but holds ../Collection/One.theme, "
                   "../Collection/Two.theme, ../Collection/more/Four and 1 more; give one of them, "
                   "or for preview --all, which draws them together");
}

TEST_F(PreviewFolders, EveryOtherCommandSaysItToo) {
    theme("H1/Library/Themes/B.theme", kLime);
    theme("H1/Library/Themes/A", kMagenta);
    ASSERT_EQ(runCommand({"device", "init", folder / "device"}).code, 0);
    const std::string both =
        "velmoranth: error: ../H1: this is no theme, but holds ../H1/Library/Themes/A, "
        "../H1/Library/Themes/B.theme; give one of them";
    const std::string more = ", or for preview --all, which draws them together\n";
    for (const auto& [words, error] : std::vector<std::pair<std::vector<std::string>, std::string>>{
             {{"explain", "../H1", "--", "dock"}, both + more},
             {{"sound", "lock", "../H1", "-o", "s.wav"}, both + more},
             {{"pack", "../H1"}, both + "\n"},
             {{"pack", "../H1", "--no-lint"}, both + "\n"},
             {{"device", "install", "../H1", "--root", "../device"}, both + "\n"},
             {{"device", "install", "../H1", "--link", "--root", "../device"}, both + "\n"}}) {
        const CommandResult result = runCommand(words, setting());
        EXPECT_EQ(result.code, 3) << words.front();
        EXPECT_EQ(result.errors, error);
        EXPECT_EQ(result.output, "");
    }
    EXPECT_EQ(folder.names("work"), "");
    EXPECT_EQ(folder.names("device/Library/Themes"), "");
}

TEST_F(PreviewFolders, AFolderOfAThemeNamesTheTheme) {
    theme("A.theme", kLime);
    theme("Plain", kLime);
    theme("Alone", kLime);
    for (const char* const name :
         {"A.theme/Bundles/com.example/a.png", "A.theme/IconBundles/more/deep/a.png",
          "A.theme/Icons/a.png", "Plain/UIImages/a.png", "Alone/Other/a.png"}) {
        folder.file(name, "");
    }
    for (const std::string name : {"A.theme/IconBundles", "A.theme/IconBundles/", "A.theme/Bundles",
                                   "A.theme/Bundles/com.example", "A.theme/IconBundles/more"}) {
        expectBadInput({"../" + name},
                       "../" + name + ": this is a folder of the theme A.theme; give that");
    }
    expectBadInput({"../Plain/UIImages"},
                   "../Plain/UIImages: this is a folder of the theme Plain; give that");
    CommandSetting within = setting();
    within.folder = folder / "A.theme/Bundles";
    EXPECT_EQ(runCommand({"preview", "."}, within).errors,
              "velmoranth: error: .: this is a folder of the theme A.theme; give that\n");
    // A theme may be called so, and hold what it likes.
    for (const char* const name : {"../A.theme/Icons", "../Alone/IconBundles",
                                   "../A.theme/IconBundles/more/deep", "../Alone"}) {
        EXPECT_EQ(preview({name}).code, 0) << name;
    }
    theme("A.theme/IconBundles", kMagenta);
    EXPECT_EQ(preview({"../A.theme/IconBundles"}).code, 0) << "with such folders itself";
}

TEST_F(PreviewFolders, APlaceOfThemesWithNoneSaysSo) {
    folder.folder("H2/Library/Themes");
    const std::string why = "../H2: this is no theme, and no theme is in its Library/Themes";
    expectBadInput({"../H2"}, why);
    folder.file("H2/readme", "");
    expectBadInput({"../H2"}, why);
    theme("H2", kLime);
    EXPECT_EQ(preview({"../H2"}).code, 0) << "with icons of its own";
}

TEST_F(PreviewFolders, ADeviceInPlaceOfAThemeIsToldApart) {
    ASSERT_EQ(runCommand({"device", "init", folder / "my device"}).code, 0);
    theme("my device/Library/Themes/B.theme", kLime);
    for (const std::vector<std::string>& words :
         std::vector<std::vector<std::string>>{{"preview", "../my device"},
                                               {"explain", "../my device", "--", "dock"},
                                               {"sound", "lock", "../my device", "-o", "s.wav"}}) {
        const CommandResult result = runCommand(words, setting());
        EXPECT_EQ(result.code, 3) << words.front();
        EXPECT_EQ(result.errors,
                  "velmoranth: error: ../my device: this is a device and no theme; --root "
                  "'../my device' is for its own themes\n");
    }
    EXPECT_EQ(folder.names("work"), "");
}

// A slip of the keyboard, or the ending left out.
TEST_F(PreviewFolders, AThemeThatIsNotThereIsNamedNearby) {
    theme("Sunset.theme", kLime);
    ASSERT_EQ(runCommand({"device", "init", folder / "device"}).code, 0);
    const auto errors = [&](const std::vector<std::string>& words) {
        const CommandResult result = runCommand(words, setting());
        EXPECT_EQ(result.code, 3) << words.front();
        return result.errors;
    };
    const std::string error = "velmoranth: error: ";
    const std::string near = "; did you mean ../Sunset.theme?\n";
    EXPECT_EQ(errors({"preview", "../Sunste.theme"}),
              error + "../Sunste.theme: there is no such theme folder" + near);
    EXPECT_EQ(errors({"preview", "../sunset"}),
              error + "../sunset: there is no such theme folder" + near);
    EXPECT_EQ(errors({"explain", "../Sunset", "--", "dock"}),
              error + "../Sunset: there is no such theme folder" + near);
    EXPECT_EQ(errors({"sound", "lock", "../Sunset.theme1"}),
              error + "../Sunset.theme1: there is no such theme folder" + near);
    const std::string none = "../Sunset/: there is no such theme folder" + near;
    EXPECT_EQ(errors({"lint", "../Sunset/"}), error + none);
    EXPECT_EQ(errors({"convert", "../Sunset/", "-o", "out"}), error + none);
    EXPECT_EQ(errors({"pack", "../Sunset/"}), error + none);
    EXPECT_TRUE(errors({"device", "install", "../Sunset/", "--root", "../device"}).ends_with(near));
    EXPECT_EQ(errors({"preview", "../Quartz.theme"}),
              error + "../Quartz.theme: there is no such theme folder\n");
}

TEST_F(PreviewFolders, AllDrawsEveryThemeOfTheFolder) {
    theme("H1/Library/Themes/A", kMagenta);
    theme("H1/Library/Themes/B.theme", kLime);
    const auto png = folder.contents(
        "H1/Library/Themes/B.theme/IconBundles/"
        "com.apple.Preferences-large.png");
    folder.file("H1/Library/Themes/B.theme/IconBundles/com.apple.Maps-large.png", png);
    const CommandResult result = preview({"../H1", "--all"});
    EXPECT_EQ(result.code, 0);
    EXPECT_EQ(result.errors, "");
    EXPECT_GT(picture().count(kMagenta), 0) << "the first one's, where both have the icon";
    EXPECT_GT(picture().count(kLime), 0);

    // A theme is one with it as well.
    theme("C", kLime);
    EXPECT_EQ(preview({"../C", "--all"}).code, 0);
    EXPECT_GT(picture().count(kLime), 0);
    expectBadInput({"../none", "--all"}, "../none: there is no such theme folder");
}

TEST_F(PreviewFolders, AThemeWithFoldersOfItsOwnIsOne) {
    theme("Mine", kLime);
    theme("Mine/old/Before.theme", kMagenta);
    const CommandResult result = preview({"../Mine"});
    EXPECT_EQ(result.code, 0);
    EXPECT_GT(picture().count(kLime), 0);
    EXPECT_EQ(picture().count(kMagenta), 0);
    // Pictures in a folder of any name may be a part of the theme around it.
    folder.file("Loose/120/com.apple.Maps.png", "no picture");
    EXPECT_EQ(preview({"../Loose"}).code, 0);
}

TEST_F(PreviewFolders, AFolderNameInWrongCaseIsNamed) {
    theme("T", kLime);
    folder.file("T/VelMoranth/iPhoneOverlay.png", deepGrayPng());
    const CommandResult result = runCommand({"preview", "../T"}, setting());
    EXPECT_EQ(result.code, 0);
    EXPECT_NE(result.errors.find("1 file lies where nothing looks, T/VelMoranth/"
                                 "iPhoneOverlay.png first, which would be "
                                 "Velmoranth/iPhoneOverlay.png"),
              std::string::npos)
        << result.errors;
}

// A start asks for the factory preferences and logs that there are others: of a device alone.
TEST_F(PreviewFolders, ARunsOwnDeviceLogsNothingOfTheFactoryPreferences) {
    theme("A", kLime);
    const CommandResult result = preview({"../A", "--log", "-"});
    EXPECT_EQ(result.code, 0);
    EXPECT_GT(std::count(result.errors.begin(), result.errors.end(), '\n'), 1);
    EXPECT_EQ(result.errors.find("Failed to move"), std::string::npos) << result.errors;

    ASSERT_EQ(runCommand({"device", "init", folder / "device"}).code, 0);
    const auto linesOfStart = [&] {
        const std::string log = preview({"--root", "../device", "--log", "-"}).errors;
        std::size_t lines = 0;
        for (std::size_t at = log.find("Failed to move"); at != std::string::npos;
             at = log.find("Failed to move", at + 1)) {
            ++lines;
        }
        return lines;
    };
    EXPECT_EQ(linesOfStart(), 2U) << "they are put in place, and asked for again";
    EXPECT_EQ(linesOfStart(), 2U) << "they are asked for twice";
}

}  // namespace
}  // namespace velmoranth::cli::preview_folders_test
