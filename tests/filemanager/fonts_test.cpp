// Putting a theme's fonts into place.
#include "success_view_fixture.h"

namespace velmoranth::filemanager::fonts_test {
namespace {

const std::string kTheirs = "/Library/Themes/A/Fonts";
const std::string kPlace = "/Library/Fonts/VelMoranth";

Lines copyLines(const std::string& destination, const std::string& source) {
    return {"log VELMORANTH FILE MANAGER: overwriteFontFilesInDir: " + destination +
                " fromThemeDir: " + source,
            tests::copyLine(source, destination)};
}

class Fonts : public SuccessImages {
  protected:
    Fonts() {
        device.file(kTheirs + "/Regular.ttf", "regular");
        device.file(kTheirs + "/deep/er/Bold.ttf", "bold");
        device.file(kTheirs + "/.hidden", "hidden");
        device.folder(kTheirs + "/empty");
        device.folder("/Library/Fonts");
    }

    bool copy(const platform::NullableString& destination, const platform::NullableString& source) {
        device.journal.clear();
        return VelmoranthFileManager::overwriteFontFilesInDirFromTheme(destination, source);
    }

    // It failed, and said why in an alert, and nothing was shown.
    void expectAlert(const std::string& destination, const std::string& source,
                     const std::string& message) {
        EXPECT_FALSE(copy(destination, source));
        EXPECT_EQ(device.journal.lines(),
                  joined({copyLines(destination, source), alertLines(message)}));
        EXPECT_TRUE(rootView->subviews().empty());
        EXPECT_TRUE(device.libSystem.mainQueue.empty());
    }
};

TEST_F(Fonts, AreCopiedWholeAndAnEmptyViewTellsOfIt) {
    setMode(kTheirs + "/Regular.ttf", 0640);
    link(kTheirs + "/link.ttf", "Regular.ttf");
    EXPECT_TRUE(copy(kPlace, kTheirs));
    EXPECT_EQ(device.journal.lines(),
              joined({copyLines(kPlace, kTheirs), showLines(1, "Applied Fonts", false)}));
    EXPECT_EQ(device.contents(kPlace + "/Regular.ttf"), "regular");
    EXPECT_EQ(device.contents(kPlace + "/deep/er/Bold.ttf"), "bold");
    EXPECT_EQ(device.contents(kPlace + "/.hidden"), "hidden");
    EXPECT_TRUE(device.exists(kPlace + "/empty"));
    EXPECT_TRUE(std::filesystem::is_symlink(device.hostFolder() + kPlace + "/link.ttf"));
    EXPECT_EQ(device.mode(kPlace + "/Regular.ttf"), 0640U);
    // The theme keeps them.
    EXPECT_EQ(names(kTheirs), (Lines{".hidden", "Regular.ttf", "deep", "empty", "link.ttf"}));
    // One empty view, grown, and gone 0.6 seconds later.
    ASSERT_EQ(rootView->subviews().size(), 1U);
    EXPECT_EQ(views.made[0]->image(), nullptr);
    EXPECT_EQ(rootView->subviews()[0]->frame(), (platform::Rect{{147.5, 366}, {200, 200}}));
    ASSERT_EQ(device.libSystem.mainQueue.size(), 1U);
    EXPECT_EQ(device.libSystem.mainQueue[0].first, 600'000'000);
    runMainQueue();
    EXPECT_TRUE(rootView->subviews().empty());
}

TEST_F(Fonts, ASingleFileCanBeCopied) {
    EXPECT_TRUE(copy("/Library/Fonts/R.ttf", kTheirs + "/Regular.ttf"));
    EXPECT_EQ(device.contents("/Library/Fonts/R.ttf"), "regular");
}

TEST_F(Fonts, AnExistingPlaceIsNotReplaced) {
    device.file(kPlace + "/Regular.ttf", "old");
    expectAlert(kPlace, kTheirs,
                "“Fonts” couldn’t be copied to “Fonts” because an item with the same name already "
                "exists.");
    EXPECT_EQ(device.contents(kPlace + "/Regular.ttf"), "old");
    EXPECT_EQ(names(kPlace), (Lines{"Regular.ttf"}));
}

TEST_F(Fonts, TheSecondTimeFails) {
    EXPECT_TRUE(copy(kPlace, kTheirs));
    runMainQueue();
    device.file(kTheirs + "/Regular.ttf", "newer");
    expectAlert(kPlace, kTheirs,
                "“Fonts” couldn’t be copied to “Fonts” because an item with the same name already "
                "exists.");
    EXPECT_EQ(device.contents(kPlace + "/Regular.ttf"), "regular");
}

TEST_F(Fonts, ThatAreMissing) {
    expectAlert(kPlace, "/Library/Themes/B/Schriften ö",
                "The file “Schriften ö” couldn’t be opened because there is no such file.");
    EXPECT_FALSE(device.exists(kPlace));
}

TEST_F(Fonts, AMissingFolderAroundThePlace) {
    expectAlert("/Library/None/VelMoranth", kTheirs, "The file “Fonts” doesn’t exist.");
}

TEST_F(Fonts, AFullDiskLeavesThePartThatWasCopied) {
    fillDisk();
    expectAlert(kPlace, kTheirs,
                "You can’t save the file “Fonts” because the volume “/” is out of space.");
    EXPECT_TRUE(device.exists(kPlace));
    EXPECT_EQ(device.contents(kTheirs + "/Regular.ttf"), "regular");
}

TEST_F(Fonts, APlaceThatCannotBeWritten) {
    forbidChanges(EACCES);
    expectAlert(kPlace, kTheirs,
                "“Fonts” couldn’t be copied because you don’t have permission to access “Fonts”.");
}

TEST_F(Fonts, NilIsPrintedAndCopiesNothing) {
    EXPECT_FALSE(copy(std::nullopt, std::nullopt));
    EXPECT_EQ(device.journal.log(),
              (Lines{"VELMORANTH FILE MANAGER: overwriteFontFilesInDir: (null) fromThemeDir: "
                     "(null)"}));
    EXPECT_EQ(device.journal.count(kAlert), 1U);
}

}  // namespace
}  // namespace velmoranth::filemanager::fonts_test
