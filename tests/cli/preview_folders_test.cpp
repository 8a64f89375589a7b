// Folders that are no theme, and what a run's own device logs.
#include "tests/cli/preview_fixture.h"

#include <algorithm>
#include <string>

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
