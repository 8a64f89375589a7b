// Where themes begin in what a user gives.
#include "makers/conversion/found_themes.h"

#include "tests/makers/conversion/theme_fixture.h"
#include "tests/support/archives/archive_writer.h"

#include "makers/conversion/theme_input.h"

namespace velmoranth::makers::found_themes_test {
namespace {

class FoundThemes : public testing::Test {
  protected:
    // "FOLDER: FILE FILE" of each, by its place in the input.
    std::vector<std::string> themesIn(const std::string& input,
                                      Purpose purpose = Purpose::convert) const {
        const auto opened = openInput(folder / input, purpose);
        if (!opened) {
            return {toLine(opened.error())};
        }
        const std::string top = opened->isArchive ? opened->unpacked->path() : folder.path();
        std::vector<std::string> themes;
        for (const FoundTheme& theme : opened->themes) {
            std::string line = theme.folder.substr(top.size() + 1) + ":";
            for (const ThemeFile& file : theme.files) {
                line += " " + file.name;
            }
            themes.push_back(line);
        }
        return themes;
    }

    tests::TemporaryFolder folder;
};

using Themes = std::vector<std::string>;

TEST_F(FoundThemes, aThemeBeginsWhereItsOwnFoldersDo) {
    folder.file("X-master/README.md");
    folder.file("X-master/dist/X/IconBundles/a-large.png", "x");
    folder.file("X-master/dist/X/Info.plist", "x");
    folder.file("X-master/Library/Themes/Y.theme/UISounds/lock.caf", "x");
    folder.file("X-master/Z.theme/Info.plist", "x");
    EXPECT_EQ(themesIn("X-master"),
              (Themes{"X-master/Library/Themes/Y.theme: UISounds/lock.caf",
                      "X-master/Z.theme: Info.plist",
                      "X-master/dist/X: IconBundles/a-large.png Info.plist"}));
}

TEST_F(FoundThemes, aFolderOfIconsIsATheme) {
    folder.file("a/icons/com.apple.Maps.png", "x");
    folder.file("a/docs/screenshot.2.png", "x");
    folder.file("b/maps/COM.APPLE.MAPS@2x.png", "x");
    folder.file("c/pinterest.png", "x");
    folder.file("d/photo.png", "x");
    EXPECT_EQ(themesIn("a"), Themes{"a/icons: com.apple.Maps.png"});
    EXPECT_EQ(themesIn("b"), Themes{"b/maps: COM.APPLE.MAPS@2x.png"});
    EXPECT_EQ(themesIn("c"), Themes{"c: pinterest.png"});
    EXPECT_EQ(themesIn("d"), Themes{(folder / "d") +
                                    ": there is no theme in it: no folder IconBundles, Bundles or "
                                    "UIImages, and no pictures named for apps"});
}

TEST_F(FoundThemes, picturesNamedForAppsAreAThemeWhereNothingElseIsOne) {
    folder.file("a/Safari.png", "x");
    folder.file("a/Phone@3x.png", "x");
    folder.file("a/more/app store-large.png", "x");
    folder.file("a/more/logo.png", "x");
    folder.file("a/other/logo.png", "x");
    EXPECT_EQ(themesIn("a"), (Themes{"a: Phone@3x.png Safari.png other/logo.png",
                                     "a/more: app store-large.png logo.png"}));
    folder.file("a/T.theme/Info.plist", "x");
    EXPECT_EQ(themesIn("a"), Themes{"a/T.theme: Info.plist"});
    folder.file("b/Safari.jpg", "x");
    folder.file("b/__MACOSX/Safari.png", "x");
    folder.file("b/Safari copy.png", "x");
    EXPECT_TRUE(themesIn("b").front().ends_with("and no pictures named for apps"));
}

TEST_F(FoundThemes, aThemeInsideOfAnotherOneIsOneOfItsOwn) {
    folder.file("A.theme/Bundles/b/x.theme/c.png", "x");
    folder.file("A.theme/extras/B.theme/Bundles/a.png", "x");
    folder.file("A.theme/extras/note.txt", "x");
    EXPECT_EQ(themesIn("A.theme"), (Themes{"A.theme: Bundles/b/x.theme/c.png extras/note.txt",
                                           "A.theme/extras/B.theme: Bundles/a.png"}));
}

TEST_F(FoundThemes, clutterHasNoThemes) {
    folder.file("x/__MACOSX/X.theme/IconBundles/._a.png", "x");
    folder.file("x/X.theme/IconBundles/a-large.png", "x");
    EXPECT_EQ(themesIn("x"), Themes{"x/X.theme: IconBundles/a-large.png"});
}

TEST_F(FoundThemes, aPackagesThemesLieBelowLibraryThemes) {
    const std::vector<tests::PackedEntry> entries{
        {"./Library/Themes/A.theme/Info.plist", "x"},
        {"./Library/Themes/B/pack/C.theme/UIImages/a.png", "x"},
        {"./Library/Other/D.theme/Info.plist", "x"},
        {"./var/jb/Library/Themes/E.theme/Info.plist", "x"}};
    folder.file("p.deb", tests::packageOf(entries));
    EXPECT_EQ(themesIn("p.deb"), (Themes{"p/Library/Themes/A.theme: Info.plist",
                                         "p/Library/Themes/B/pack/C.theme: UIImages/a.png",
                                         "p/var/jb/Library/Themes/E.theme: Info.plist"}));
    // As a device has them.
    const Themes shown = themesIn("p.deb", Purpose::show);
    ASSERT_EQ(shown.size(), 3U);
    EXPECT_TRUE(shown[1].starts_with("p/Library/Themes/B: ")) << shown[1];
    folder.file("q.deb", tests::packageOf({{"./usr/lib/a", "x"}}));
    EXPECT_EQ(themesIn("q.deb"), Themes{(folder / "q.deb") + ": there is no theme in the package: "
                                                             "nothing lies below Library/Themes"});
}

TEST_F(FoundThemes, anArchiveMayBeAThemeItself) {
    folder.file("Mine.zip", tests::zipOf({{"com.apple.Maps.png", "x"}, {"Info.plist", "x"}}));
    EXPECT_EQ(themesIn("Mine.zip"), Themes{"Mine: Info.plist com.apple.Maps.png"});
    folder.file("Mine.tar.xz", tests::tarOf({{"M/IconBundles/a.png", "x"}}, tests::Packing::xz));
    EXPECT_EQ(themesIn("Mine.tar.xz"), Themes{"Mine/M: IconBundles/a.png"});
}

TEST_F(FoundThemes, linksAreNotFollowed) {
    folder.file("X.theme/IconBundles/a-large.png", "x");
    folder.link("X.theme/up", "..");
    folder.link("X.theme/gone", "nowhere");
    const auto themes = findThemesIn(folder / "X.theme");
    ASSERT_TRUE(themes && themes->size() == 1);
    EXPECT_EQ(themes->front().leftOut,
              (std::vector<LeftOut>{{"gone", "a link, which is not followed"},
                                    {"up", "a link, which is not followed"}}));
    folder.link("loop", "loop");
    EXPECT_EQ(themesIn("loop"),
              Themes{(folder / "loop") +
                     ": it is a link that leads round to itself; give what it should lead to"});
    EXPECT_EQ(themesIn("none"), Themes{(folder / "none") + ": there is no such theme folder"});
    EXPECT_EQ(openInput("/dev/null", Purpose::convert).error().message,
              "it is neither a folder nor an archive");
}

}  // namespace
}  // namespace velmoranth::makers::found_themes_test
