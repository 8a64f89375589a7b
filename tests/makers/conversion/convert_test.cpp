// Whole conversions: where themes go, under which names, and that nothing else is touched.
#include "tests/makers/conversion/theme_fixture.h"
#include "tests/support/archives/archive_writer.h"

#include <sys/resource.h>

#include <csignal>

namespace velmoranth::makers::convert_test {
namespace {

class ConvertTest : public ThemeTest {
  protected:
    static std::vector<std::string> namesOf(const std::vector<ConvertedTheme>& themes) {
        std::vector<std::string> names;
        for (const ConvertedTheme& theme : themes) {
            names.push_back(theme.name);
        }
        return names;
    }

    void expectRefused(const Conversion& conversion, const std::string& line) const {
        const auto before = filesIn(folder.path());
        const auto themes = convertThemes(conversion);
        ASSERT_FALSE(themes);
        EXPECT_EQ(toLine(themes.error()), line);
        EXPECT_EQ(filesIn(folder.path()), before);
    }

    [[nodiscard]] Conversion conversion() const {
        return {.inputs = {folder / "in/T.theme"}, .output = folder / "out"};
    }

    void maps(const std::string& theme) const {
        folder.file(theme + "/IconBundles/com.apple.Maps.png", png(60));
    }
};

TEST_F(ConvertTest, aThemeThatIsRightStaysByteForByteWithAllItHas) {
    file("IconBundles/com.apple.Maps-large.png", png(60));
    file("Bundles/\xFF odd/na me@3x.png", png(20));
    file("LICENSE", "text");
    const Plan plan = converted();
    EXPECT_TRUE(plan.changesNothing());
    EXPECT_EQ(filesIn(folder / "out/T.theme"), filesIn(folder / "in/T.theme"));
}

TEST_F(ConvertTest, themesOfSeveralInputsKeepTheirNamesOrGetNumbers) {
    maps("a/X.theme");
    maps("b/x.theme");
    maps("c/Plain");
    const auto themes = convert({folder / "a", folder / "b", folder / "c"});
    ASSERT_TRUE(themes);
    EXPECT_EQ(namesOf(*themes), (std::vector<std::string>{"X.theme", "x 2.theme", "Plain"}));
    EXPECT_EQ((*themes)[0].source, "X.theme");
    EXPECT_EQ((*themes)[0].input, folder / "a");
    EXPECT_EQ(folder.names("out"), "Plain X.theme x 2.theme");
}

TEST_F(ConvertTest, anArchiveThatIsOneThemeIsNamedByItsListOrItself) {
    const std::string list =
        "<plist version=\"1.0\"><dict><key>PackageName</key><string>/My: Theme</string></dict>"
        "</plist>";
    folder.file("a.zip", tests::zipOf({{"com.apple.Maps.png", png(60)}, {"Info.plist", list}}));
    folder.file("b.tar.gz", tests::tarOf({{"com.apple.Maps.png", png(60)}}, tests::Packing::gzip));
    folder.file("c.deb", tests::packageOf({{"./Library/Themes/C.theme/Info.plist", list}}));
    const auto themes = convert({folder / "a.zip", folder / "b.tar.gz", folder / "c.deb"});
    ASSERT_TRUE(themes) << toLine(themes.error());
    EXPECT_EQ(namesOf(*themes), (std::vector<std::string>{"_My: Theme", "b", "C.theme"}));
    EXPECT_EQ((*themes)[0].source, "");
    EXPECT_EQ((*themes)[2].source, "Library/Themes/C.theme");
    EXPECT_EQ(folder.contents("out/b/IconBundles/com.apple.Maps-large.png"), png(60));
}

// The folder that a theme lies in may say only what kind of things are in it.
TEST_F(ConvertTest, aThemeIsNamedByTheNearestFolderThatSaysMoreThanItsKind) {
    const auto archive = [&](const std::string& file, const std::string& theme) {
        folder.file(file, tests::zipOf({{theme + "/com.apple.Maps.png", png(60)}}));
        return folder / file;
    };
    const std::vector<std::string> inputs{
        archive("a.zip", "Flat-master/dist"), archive("Sea.zip", "src/Icons"),
        archive("b.zip", "Sky-main"),         archive("c.zip", "Sun/Library/Themes/build"),
        archive("Moon-main.zip", "icons"),    archive("d.zip", "distant"),
        archive("e.zip", "-master")};
    const auto themes = convert(inputs);
    ASSERT_TRUE(themes) << toLine(themes.error());
    EXPECT_EQ(namesOf(*themes), (std::vector<std::string>{"Flat", "Sea", "Sky", "Sun", "Moon",
                                                          "distant", "-master"}));
    EXPECT_EQ((*themes)[0].source, "Flat-master/dist");
    // In a package the folder is what the phone would have called the theme; a folder that is given
    // by itself is called as it is, and no folder above it is looked at.
    folder.file("p.deb",
                tests::packageOf({{"./Library/Themes/icons/com.apple.Maps.png", png(60)}}));
    maps("Earth/dist");
    const auto others = convert({folder / "p.deb", folder / "Earth/dist"}, "others");
    ASSERT_TRUE(others) << toLine(others.error());
    EXPECT_EQ(namesOf(*others), (std::vector<std::string>{"icons", "dist"}));
}

TEST_F(ConvertTest, whatIsThereStaysUnlessItMayBeReplaced) {
    maps("in/T.theme");
    folder.file("out/T.theme/old", "old");
    folder.file("out/other", "kept");
    expectRefused(conversion(),
                  (folder / "out/T.theme") + ": it is there already; --force replaces it");
    Conversion replacing = conversion();
    replacing.replacesThemes = true;
    ASSERT_TRUE(convertThemes(replacing));
    EXPECT_EQ(folder.names("out/T.theme"), "IconBundles");
    EXPECT_EQ(folder.names("out"), "T.theme other");
    std::filesystem::remove_all(folder / "out/T.theme");
    folder.file("out/T.theme", "a file");
    expectRefused(replacing, (folder / "out/T.theme") + ": it is there already, and is no folder");
}

TEST_F(ConvertTest, noInputIsWrittenIntoOrReplaced) {
    maps("in/T.theme");
    for (const std::string output : {"in", "in/T.theme", "in/T.theme/IconBundles/new"}) {
        Conversion into = conversion();
        into.output = folder / output;
        into.replacesThemes = true;
        expectRefused(into, (folder / output) +
                                "/T.theme: the theme would be put into an input or "
                                "in its place; choose another folder");
    }
}

TEST_F(ConvertTest, aDryRunWritesNothing) {
    maps("in/T.theme");
    Conversion dry = conversion();
    dry.isDryRun = true;
    const auto themes = convertThemes(dry);
    ASSERT_TRUE(themes);
    EXPECT_EQ(themes->front().plan.files.size(), 1U);
    EXPECT_EQ(folder.names("."), "in");
}

TEST_F(ConvertTest, oneBadInputStopsAllBeforeAnythingIsWritten) {
    maps("in/T.theme");
    folder.file("bad.zip", "no archive");
    Conversion two = conversion();
    two.inputs.push_back(folder / "bad.zip");
    expectRefused(two, (folder / "bad.zip") +
                           ": it is no .deb, .zip or .tar archive; give one of these, or a folder");
    EXPECT_EQ(folder.names("."), "bad.zip in");
}

TEST_F(ConvertTest, aDiskThatFillsLeavesNothingBehind) {
    maps("in/T.theme");
    file("Bundles/large", std::string(50000, 'x'));
    std::signal(SIGXFSZ, SIG_IGN);
    rlimit limit{};
    ::getrlimit(RLIMIT_FSIZE, &limit);
    const rlimit before = limit;
    limit.rlim_cur = 20000;
    ::setrlimit(RLIMIT_FSIZE, &limit);
    const auto themes = convertThemes(conversion());
    ::setrlimit(RLIMIT_FSIZE, &before);
    ASSERT_FALSE(themes);
    EXPECT_EQ(toLine(themes.error()), (folder / "out/T.theme/Bundles/large") +
                                          ": the theme cannot be written: file too large");
    EXPECT_EQ(folder.names("."), "in");
}

TEST_F(ConvertTest, anOutputThatIsNoFolderIsRefused) {
    maps("in/T.theme");
    folder.file("out", "a file");
    const auto themes = convertThemes(conversion());
    ASSERT_FALSE(themes);
    EXPECT_EQ(folder.contents("out"), "a file");
}

TEST_F(ConvertTest, whatNothingLooksForIsCountedByItsName) {
    FoundTheme theme{.folder = folder / "none", .name = "T"};
    theme.files = {{"IconBundles/com.apple.Maps@3x.png", 1},
                   {"IconBundles/com.apple.tv-large.png", 1},
                   {"Icons/Music.png", 1},
                   {"Bundles/com.apple.springboard/sbbadgebg.png", 1}};
    const HiddenPictures hidden = hiddenPictures(theme);
    EXPECT_EQ(hidden.icons, 2U);
    EXPECT_EQ(hidden.others, 1U);
    // Found by the loader, on devices of that scale at least.
    theme.files = {{"Bundles/com.apple.springboard/SBBadgeBG@2x.png", 1},
                   {"Bundles/com.apple.springboard/SBPageDot@3x.png", 1}};
    EXPECT_EQ(hiddenPictures(theme).all(), 0U);
    theme.files = {{"IconBundles/com.apple.tv-large.png", 1}, {"README", 1}};
    EXPECT_EQ(hiddenPictures(theme).all(), 0U);
}

}  // namespace
}  // namespace velmoranth::makers::convert_test
