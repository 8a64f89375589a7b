// Where pictures go, and what happens when they cannot.
#include "tests/cli/ordinary_user.h"
#include "tests/cli/preview_fixture.h"

#include <filesystem>

namespace velmoranth::cli::preview_output_test {
namespace {

namespace fs = std::filesystem;

class PreviewOutput : public PreviewTest {
  protected:
    PreviewOutput() { theme("A.theme", kMagenta); }
};

TEST_F(PreviewOutput, ExistingPictureIsReplacedAsAWhole) {
    folder.file("work/preview.png", "old");
    fs::create_hard_link(folder / "work/preview.png", folder / "witness");
    ASSERT_EQ(preview({"../A.theme"}).code, 0);
    EXPECT_EQ(picture().width, 1125U);
    EXPECT_EQ(folder.contents("witness"), "old") << "the old file was written into";
    EXPECT_EQ(folder.names("work"), "preview.png");
}

TEST_F(PreviewOutput, ExistingPictureStaysWhenThereIsNoNewOne) {
    folder.file("work/preview.png", "old");
    EXPECT_EQ(preview({"../none"}).code, 3);
    EXPECT_EQ(folder.contents("work/preview.png"), "old");
    EXPECT_EQ(folder.names("work"), "preview.png");
}

TEST_F(PreviewOutput, ModeIsThatOfANewFileOrOfTheOldOne) {
    const auto mode = [&] {
        return static_cast<unsigned>(fs::status(folder / "work/preview.png").permissions());
    };
    folder.file("work/other", "");
    ASSERT_EQ(preview({"../A.theme"}).code, 0);
    EXPECT_EQ(mode(), static_cast<unsigned>(fs::status(folder / "work/other").permissions()));
    fs::permissions(folder / "work/preview.png", fs::perms(0640));
    ASSERT_EQ(preview({"../A.theme"}).code, 0);
    EXPECT_EQ(mode(), 0640U);
}

TEST_F(PreviewOutput, LinkIsFollowed) {
    folder.folder("pictures");
    fs::create_symlink("../pictures/a.png", folder / "work/link.png");
    ASSERT_EQ(preview({"../A.theme", "-o", "link.png"}).code, 0);
    EXPECT_TRUE(fs::is_symlink(folder / "work/link.png"));
    EXPECT_EQ(picture("pictures/a.png").width, 1125U);
}

TEST_F(PreviewOutput, PlaceThatCannotBeWrittenIsOneLine) {
    folder.folder("work/folder");
    folder.file("work/file", "text");
    const std::string theme = "../A.theme";
    const std::string why = ": the picture cannot be written: ";
    folder.link("work/away", "no/such/folder");
    expectBadInput({theme, "-o", "away/a.png"}, "away/a.png" + why + "no such file or directory");
    expectBadInput({theme, "-o", "file/b/a.png"}, "file/b/a.png" + why + "not a directory");
    expectBadInput({theme, "-o", "a.png/"}, "a.png/" + why + "no such file or directory");
    expectBadInput({theme, "-o", "folder"}, "folder" + why + "is a directory");
    expectBadInput({theme, "-o", "file/a.png"}, "file/a.png" + why + "not a directory");
    expectBadInput({theme, "-o", "/dev/full"}, "/dev/full" + why + "no space left on device");
    expectBadInput({theme, "--log", "no/log"},
                   "no/log: the log cannot be written: no such file or directory");
    EXPECT_EQ(folder.names("work"), "away file folder");
}

TEST_F(PreviewOutput, FolderWithoutTheRightIsOneLine) {
    const OrdinaryUser user;
    if (!user.missing().empty()) {
        GTEST_SKIP() << user.missing();
    }
    fs::permissions(folder / "work", fs::perms(0555));
    const CommandResult result =
        runCommand({"preview", "../A.theme", "-o", "a.png"}, user.with(setting()));
    EXPECT_EQ(result.code, 3);
    EXPECT_EQ(result.errors,
              "velmoranth: error: a.png: the picture cannot be written: permission denied\n");
}

TEST_F(PreviewOutput, DeviceFileIsWrittenToNotReplaced) {
    ASSERT_EQ(preview({"../A.theme", "-o", "/dev/null"}).code, 0);
    EXPECT_TRUE(fs::is_character_file("/dev/null"));
}

TEST_F(PreviewOutput, TheFolderOfStepsIsMade) {
    theme("A", kMagenta);
    const CommandResult result =
        preview({"../A", "--screen", "panel-success", "--steps", "-o", "steps/panel.png"});
    EXPECT_EQ(result.code, 0) << result.errors;
    EXPECT_EQ(folder.names("work/steps"), "panel-01.png panel-02.png panel-03.png panel-04.png");
    EXPECT_EQ(preview({"../A", "--screen", "panel-success", "--steps", "-o", "no/such/p.png"}).code,
              0);
    EXPECT_EQ(folder.names("work/no/such"), "p-01.png p-02.png p-03.png p-04.png");
}

TEST_F(PreviewOutput, ThePicturesFolderIsMade) {
    theme("A", kMagenta);
    EXPECT_EQ(preview({"../A", "-o", "x/y.png"}).output,
              "x/y.png: 1125 × 2436 pixels, iOS 13.3, phone\n");
    EXPECT_GT(picture("work/x/y.png").count(kMagenta), 0);
    EXPECT_EQ(preview({"../A", "-o", "x/deep/er/y.png"}).code, 0);
    EXPECT_EQ(folder.names("work/x/deep/er"), "y.png");
    EXPECT_EQ(preview({"../A", "--screen", "controls", "--sheet", "-o", "s/t.png"}).code, 0);
    EXPECT_EQ(folder.names("work/s"), "t.png");
    const CommandResult explained = runCommand(
        {"explain", "../A", "-o", "e/icon.png", "--", "icon", "com.apple.Preferences"}, setting());
    EXPECT_EQ(explained.code, 0) << explained.errors;
    EXPECT_EQ(folder.names("work/e"), "icon.png");
    EXPECT_EQ(runCommand({"sound", "panel:success", "-o", "w/s.wav"}, setting()).code, 0);
    EXPECT_EQ(folder.names("work/w"), "s.wav");
    // Nothing is made for a picture that is none.
    EXPECT_EQ(preview({"../none", "-o", "n/y.png"}).code, 3);
    EXPECT_EQ(folder.names("work"), "e s w x");
}

// One moment on every clock, from day to day.
TEST_F(PreviewOutput, ThePictureIsOfOneDayUnlessAskedOtherwise) {
    theme("A", kMagenta);
    const auto pictureOf = [&](std::vector<std::string> words) {
        words.insert(words.end(), {"../A", "-o", "-"});
        const CommandResult result = preview(words);
        EXPECT_EQ(result.code, 0) << result.errors;
        return result.output;
    };
    const std::string usual = pictureOf({});
    EXPECT_TRUE(usual == pictureOf({"--date", "2019-09-10T09:41"}));
    EXPECT_TRUE(usual == pictureOf({"--date", "2019-09-10"}));
    EXPECT_FALSE(usual == pictureOf({"--date", "2019-09-10T09:42"}));
    EXPECT_FALSE(usual == pictureOf({"--date", "2019-09-11"}));
    EXPECT_FALSE(usual == pictureOf({"--date", "now"}));
}

}  // namespace
}  // namespace velmoranth::cli::preview_output_test
