// Links of a theme, as a conversion follows them.
#include "makers/conversion/followed_links.h"

#include "tests/makers/conversion/theme_fixture.h"

#include <gtest/gtest.h>

namespace velmoranth::makers::followed_links_test {
namespace {

using Names = std::map<std::string, std::string>;

class FollowedLinks : public ThemeTest {
  protected:
    void link(const std::string& name, const std::string& end) const {
        folder.folder("in/T.theme/" + std::filesystem::path(name).parent_path().string());
        folder.link("in/T.theme/" + name, end);
    }

    [[nodiscard]] FollowedTheme followed() const {
        const auto theme = themeAsGiven(folder / "in/T.theme");
        return theme ? followLinks(*theme) : FollowedTheme();
    }
};

TEST_F(FollowedLinks, AreTheFilesThatTheyLeadTo) {
    file("art/x.png", "xyz");
    link("a.png", "art/x.png");
    link("b.png", "a.png");
    link("IconBundles/c.png", ".././art//x.png");
    link("IconBundles/d.png", "../../T.theme/art/x.png");
    link("IconBundles/e.png", "/Library/Themes/T.theme/art/x.png");
    const FollowedTheme theme = followed();
    EXPECT_EQ(theme.links, (Names{{"a.png", "art/x.png"},
                                  {"b.png", "art/x.png"},
                                  {"IconBundles/c.png", "art/x.png"},
                                  {"IconBundles/d.png", "art/x.png"},
                                  {"IconBundles/e.png", "art/x.png"}}));
    EXPECT_EQ(theme.theme.leftOut, std::vector<LeftOut>());
    ASSERT_EQ(theme.theme.files.size(), 6U);
    for (const ThemeFile& one : theme.theme.files) {
        EXPECT_EQ(one.size, 3U) << one.name;
    }
    EXPECT_TRUE(std::ranges::is_sorted(theme.theme.files, {}, &ThemeFile::name));
}

TEST_F(FollowedLinks, ToFoldersAreWhatIsInThem) {
    file("art/more/x.png", "x");
    file("y.png", "y");
    link("art/link.png", "../y.png");
    link("art/gone.png", "gone");
    link("Bundles/com.a.b", "../art");
    link("deep.png", "Bundles/com.a.b/more/x.png");
    const FollowedTheme theme = followed();
    EXPECT_EQ(theme.links, (Names{{"art/link.png", "y.png"},
                                  {"Bundles/com.a.b/more/x.png", "art/more/x.png"},
                                  {"Bundles/com.a.b/link.png", "y.png"},
                                  {"deep.png", "art/more/x.png"}}));
    EXPECT_EQ(why(theme.theme.leftOut, "art/gone.png"), "a link that leads nowhere");
    EXPECT_EQ(theme.theme.leftOut.size(), 1U);
}

TEST_F(FollowedLinks, ThatLeadToNothingOfTheThemeSayWhere) {
    file("x.png", "x");
    file("art/x.png", "x");
    folder.file("in/Other.theme/x.png", "x");
    link("up", "..");
    link("out.png", "../Other.theme/x.png");
    link("machine.png", folder / "in/T.theme/x.png");
    link("gone.png", "gone");
    link("file.png", "x.png/../x.png");
    link("self.png", "self.png");
    link("ring1", "ring2");
    link("ring2", "ring1");
    link("top", ".");
    link("art/around", "../art");
    const FollowedTheme theme = followed();
    EXPECT_EQ(theme.links, Names());
    const Names expected{{"up", "a link that leads out of the theme"},
                         {"out.png", "a link that leads out of the theme"},
                         {"machine.png", "a link that leads out of the theme"},
                         {"gone.png", "a link that leads nowhere"},
                         {"file.png", "a link that leads nowhere"},
                         {"self.png", "a link that leads back to itself"},
                         {"ring1", "a link that leads back to itself"},
                         {"ring2", "a link that leads back to itself"},
                         {"top", "a link that leads back to itself"},
                         {"art/around", "a link that leads back to itself"}};
    EXPECT_EQ(theme.theme.leftOut.size(), expected.size());
    for (const auto& [name, reason] : expected) {
        EXPECT_EQ(why(theme.theme.leftOut, name), reason) << name;
    }
}

// Each folder has two links to the next one: more ways through them than can be counted.
TEST_F(FollowedLinks, ThatMultiplyComeToAnEnd) {
    for (int i = 0; i < 36; ++i) {
        for (const char* const name : {"a", "b"}) {
            link("f" + std::to_string(i) + "/" + name, "../f" + std::to_string(i + 1));
        }
    }
    file("f36/x.png", "x");
    EXPECT_LE(followed().links.size(), 100000U);
}

TEST_F(FollowedLinks, BecomeFilesOfTheThemeThatIsMade) {
    const std::string picture = png(60);
    file("art/x.png", picture);
    file("IconBundles/com.a.b-large.png", png(60, kBlue));
    link("IconBundles/com.a.c@3x.png", "../art/x.png");
    link("Bundles/com.a.b", "../art");
    link("iconbundles", "IconBundles");
    link("IconBundles/com.a.d-large.png", "/etc/passwd");
    const Plan plan = converted();
    EXPECT_EQ(names(),
              (std::vector<std::string>{"Bundles/com.a.b/x.png", "IconBundles/com.a.b-large.png",
                                        "IconBundles/com.a.c-large.png", "art/x.png"}));
    EXPECT_EQ(made("IconBundles/com.a.c-large.png"), picture);
    EXPECT_EQ(made("Bundles/com.a.b/x.png"), picture);
    const MadeFile& icon = plan.files.at("IconBundles/com.a.c-large.png");
    EXPECT_EQ(icon.source, "art/x.png");
    EXPECT_EQ(icon.link, "IconBundles/com.a.c@3x.png");
    EXPECT_EQ(icon.why,
              "a link becomes the file that it leads to\n"
              "an app's icon is looked for under that name");
    EXPECT_EQ(why(plan.leftOut, "IconBundles/com.a.d-large.png"),
              "a link that leads out of the theme");
}

}  // namespace
}  // namespace velmoranth::makers::followed_links_test
