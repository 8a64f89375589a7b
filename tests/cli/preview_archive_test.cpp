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

    // What is said of conversions, in the lines that name one.
    static std::string linesOfConvert(const CommandResult& result) {
        EXPECT_EQ(result.code, 0);
        std::string lines;
        for (std::size_t start = 0; start < result.errors.size();) {
            const std::size_t end = result.errors.find('\n', start) + 1;
            const std::string line = result.errors.substr(start, end - start);
            lines += line.find("velmoranth convert ") == std::string::npos ? "" : line;
            start = end == 0 ? result.errors.size() : end;
        }
        return lines;
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
    EXPECT_EQ(linesOfConvert(result),
              "velmoranth: A.theme: 1 icon lies under a name that nothing looks for; velmoranth "
              "convert '../a b.zip' -o FOLDER makes a theme that shows it\n");
    EXPECT_EQ(picture().count(kMagenta), 0);
    ASSERT_EQ(runCommand({"convert", "../a b.zip", "-o", "out"}, setting()).code, 0);
    const CommandResult converted = runCommand({"preview", "out/A.theme"}, setting());
    EXPECT_EQ(converted.errors.find("convert"), std::string::npos) << converted.errors;
    EXPECT_GT(picture().count(kMagenta), 1000);
}

TEST_F(PreviewArchive, whatConvertWouldBringToLightIsOneLineForEachThemeThatHidesSome) {
    const std::string png = icon("", kMagenta).contents;
    folder.file("s.zip", tests::zipOf({icon("A.theme", kMagenta, "@3x.png"),
                                       {"A.theme/Icons/com.apple.Maps.png", png},
                                       icon("B.theme", kMagenta),
                                       icon("C.theme", kMagenta, "@3x.png"),
                                       {"C.theme/AnemoneEffects/iPhoneOverlay@3x~ipad.png", png},
                                       {"D.theme/UIImages/UIPageIndicator@2x.png", png}}));
    const std::string rest =
        " nothing looks for; velmoranth convert ../s.zip -o FOLDER makes a theme that shows ";
    EXPECT_EQ(linesOfConvert(runCommand({"preview", "../s.zip"}, setting())),
              "velmoranth: A.theme: 2 icons lie under names that" + rest + "them\n" +
                  "velmoranth: C.theme: 1 icon and 1 other image lie under names that" + rest +
                  "them\n" + "velmoranth: D.theme: 1 image lies under a name that" + rest + "it\n")
        << "of one picture both dots are made";
    EXPECT_EQ(runCommand({"preview", "../s.zip", "--quiet"}, setting()).errors, "");
    EXPECT_EQ(folder.names("tmp"), "");
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

// Cut between two entries it is whole as far as it goes.
TEST_F(PreviewArchive, aTarWithoutItsEndIsTakenWithAWarningByEveryCommand) {
    const std::string whole = tests::tarOf({icon("A.theme", kMagenta)});
    const std::string warning =
        "velmoranth: warning: ../cut.tar: it ends without the mark that ends a tar, so files may "
        "be missing; if any are, get it again\n";
    ASSERT_EQ(runCommand({"device", "init", "../device"}, setting()).code, 0);
    for (const bool isCut : {true, false}) {
        folder.file("cut.tar", whole.substr(0, whole.size() - (isCut ? 1024 : 0)));
        for (const std::vector<std::string>& words :
             {std::vector<std::string>{"preview", "../cut.tar", "--quiet"},
              {"lint", "../cut.tar"},
              {"convert", "../cut.tar", "-o", "out", "--force"},
              {"device", "install", "../cut.tar", "--root", "../device", "--force"}}) {
            const CommandResult result = runCommand(words, setting());
            EXPECT_EQ(result.code, 0) << words.front();
            // Of an installation more is told.
            const std::size_t end = result.errors.find("velmoranth: A.theme is not active yet");
            EXPECT_EQ(result.errors.substr(0, end), isCut ? warning : "") << words.front();
        }
    }
    // In a package, which says how large its members are.
    folder.file("a.deb", tests::arOf({{"debian-binary", "2.0\n"},
                                      {"control.tar", tests::tarOf({{"control", ""}})}}));
    expectBadInput({"../a.deb"},
                   "../a.deb: it is no package: the member data.tar is missing; it may be cut "
                   "short, get it again");
}

}  // namespace
}  // namespace velmoranth::cli::preview_archive_test
