// Packages and archives in place of theme folders.
#include "tests/cli/preview_fixture.h"
#include "tests/support/archives/archive_writer.h"

namespace velmoranth::cli::preview_archive_test {
namespace {

class PreviewArchive : public PreviewTest {
  protected:
    // A theme of one icon, as an entry of an archive.
    [[nodiscard]] tests::PackedEntry icon(const std::string& place, Color color,
                                          const std::string& ending = "-large.png") const {
        theme("made", color);
        return {place + "/IconBundles/com.apple.Preferences" + ending,
                folder.contents("made/IconBundles/com.apple.Preferences-large.png")};
    }

    // How many pixels of the drawn screen have the colour.
    int shows(const std::string& archive, Color color) const {
        const CommandResult result = preview({archive});
        EXPECT_EQ(result.code, 0) << result.errors;
        EXPECT_EQ(result.errors, "");
        EXPECT_EQ(folder.names("tmp"), "");
        return picture().count(color);
    }
};

TEST_F(PreviewArchive, aPackageShowsWhatLiesBelowLibraryThemes) {
    folder.file("a.deb", tests::packageOf({icon("./Library/Themes/A.theme", kMagenta),
                                           icon("./Library/Other/B.theme", kLime)},
                                          tests::Packing::zstd));
    EXPECT_GT(shows("../a.deb", kMagenta), 1000);
    // Where no phone finds it, though it is a theme.
    folder.file("a.deb", tests::packageOf({icon("./Library/Themes/pack/A.theme", kMagenta)}));
    EXPECT_EQ(shows("../a.deb", kMagenta), 0);
}

TEST_F(PreviewArchive, anArchiveShowsItsThemesTheFirstBeforeTheOthers) {
    folder.file("a.zip",
                tests::zipOf({icon("deep/down/A.theme", kMagenta), icon("deep/Z.theme", kLime)}));
    const CommandResult result = preview({"../a.zip"});
    EXPECT_EQ(result.code, 0) << result.errors;
    EXPECT_EQ(picture().count(kMagenta), 0);
    EXPECT_GT(picture().count(kLime), 1000);
    folder.file("b.tar.xz", tests::tarOf({icon("A.theme", kMagenta)}, tests::Packing::xz));
    EXPECT_GT(shows("../b.tar.xz", kMagenta), 1000);
}

TEST_F(PreviewArchive, whatConvertWouldBringToLightIsSaidWhereNoAppHasAnIcon) {
    folder.file("a.zip", tests::zipOf({icon("A.theme", kMagenta, "@3x.png")}));
    const CommandResult result = runCommand({"preview", "../a.zip", "--apps", "theme"}, setting());
    EXPECT_EQ(result.code, 3);
    EXPECT_EQ(result.errors,
              "velmoranth: error: no theme has an app's icon; one is a file "
              "IconBundles/IDENTIFIER-large.png\n"
              "velmoranth: A.theme: 1 icon lies under a name that nothing looks for; velmoranth "
              "convert ../a.zip -o FOLDER makes a theme that shows it\n");
    folder.file("b.zip", tests::zipOf({icon("A.theme", kMagenta)}));
    EXPECT_EQ(
        runCommand({"preview", "../b.zip", "--apps", "none"}, setting()).errors.find("convert"),
        std::string::npos);
}

TEST_F(PreviewArchive, whatConvertWouldBringToLightIsOneLine) {
    folder.file("a b.zip", tests::zipOf({icon("A.theme", kMagenta, "@3x.png")}));
    const CommandResult result = runCommand({"preview", "../a b.zip"}, setting());
    EXPECT_EQ(result.code, 0);
    const std::string line =
        "\nvelmoranth: A.theme: 1 icon lies under a name that nothing looks for; velmoranth "
        "convert '../a b.zip' -o FOLDER makes a theme that shows it\n";
    EXPECT_TRUE(result.errors.ends_with(line)) << result.errors;
    EXPECT_EQ(picture().count(kMagenta), 0);
    ASSERT_EQ(runCommand({"convert", "../a b.zip", "-o", "out"}, setting()).code, 0);
    const CommandResult converted = runCommand({"preview", "out/A.theme"}, setting());
    EXPECT_EQ(converted.errors.find("convert"), std::string::npos) << converted.errors;
    EXPECT_GT(picture().count(kMagenta), 1000);
}

TEST_F(PreviewArchive, archivesThatAreNoneAreALine) {
    folder.file("up.tar", tests::tarOf({{"../x", "x"}}));
    expectBadInput({"../up.tar"}, "../up.tar: it has a name with \"..\", ../x");
    folder.file("q.deb", tests::packageOf({{"./usr/a", "x"}}));
    expectBadInput({"../q.deb"},
                   "../q.deb: there is no theme in the package: nothing lies below "
                   "Library/Themes");
    folder.file("t.zip", tests::zipOf({icon("A.theme", kLime)}));
    theme("A.theme", kMagenta);
    expectBadInput({"../A.theme", "../t.zip"},
                   "../t.zip: a theme of this name is given before (../A.theme); a device has one "
                   "folder of a name");
}

}  // namespace
}  // namespace velmoranth::cli::preview_archive_test
