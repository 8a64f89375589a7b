// The lists of apps behind --apps: a file of the user's, and what themes have icons for.
#include "cli/app_list.h"

#include "cli/preferences.h"
#include "desktop/plist/property_lists.h"
#include "tests/support/temporary_folder.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

namespace velmoranth::cli::app_list_test {
namespace {

using simulator::NamedApp;
using Apps = std::vector<NamedApp>;

class AppList : public testing::Test {
  public:
    [[nodiscard]] desktop::Result<Apps> read(const std::string& contents) const {
        folder.file("list", contents);
        return readAppList(folder / "list");
    }

    void expectRefused(const std::string& contents, const std::string& message) const {
        const auto apps = read(contents);
        ASSERT_FALSE(apps) << message;
        EXPECT_EQ(apps.error().message, message);
        EXPECT_EQ(apps.error().path, folder / "list");
    }

    void icon(const std::string& theme, const std::string& name) const {
        folder.file("Library/Themes/" + theme + "/IconBundles/" + name, "not looked at");
    }

    // Of themes in that order; the message of a problem in place of the identifiers.
    [[nodiscard]] std::string ofThemes(
        const std::vector<std::string>& names,
        const simulator::SystemVersion& system = simulator::kSystem12) const {
        const platform::Data preferences =
            desktop::writeXmlPropertyList(platform::PropertyList(previewPreferences(names)));
        folder.file("User/Library/Preferences/com.qor.velmoranthprefs.plist",
                    std::string(preferences.begin(), preferences.end()));
        const auto root = desktop::DeviceRoot::open(folder.path());
        EXPECT_TRUE(root) << toLine(root.error());
        const auto apps = themedApps(**root, system);
        if (!apps) {
            return apps.error().message;
        }
        std::string text;
        for (const NamedApp& app : *apps) {
            EXPECT_EQ(app.name, "");
            text += (text.empty() ? "" : " ") + app.identifier;
        }
        return text;
    }

    tests::TemporaryFolder folder;
};

// The home screen of iOS 13 draws that icon over a face of another name.
TEST_F(AppList, TheClockIsThereForWhatItsSystemShowsOfIt) {
    icon("A", "com.apple.Maps-large.png");
    icon("A", "com.apple.mobiletimer-large.png");
    EXPECT_EQ(ofThemes({"A"}, simulator::kSystem12), "com.apple.mobiletimer com.apple.Maps");
    EXPECT_EQ(ofThemes({"A"}, simulator::kSystem13), "com.apple.Maps");
    for (const std::string bundle : {"com.apple.SpringBoardHome", "com.apple.springboard"}) {
        for (const std::string ending : {"@3x.png", ".png", ""}) {
            const std::string theme = bundle + ending;
            folder.file("Library/Themes/" + theme + "/Bundles/" + bundle +
                            "/ClockIconBackgroundSquare" + ending,
                        "not looked at");
            EXPECT_EQ(ofThemes({"A", theme}, simulator::kSystem13),
                      "com.apple.mobiletimer com.apple.Maps")
                << theme;
            EXPECT_EQ(ofThemes({theme}, simulator::kSystem12),
                      "no theme has an app's icon; one is a file IconBundles/IDENTIFIER-large.png");
        }
    }
    folder.file(
        "Library/Themes/B/Bundles/com.apple.SpringBoardHome/"
        "ClockIconBackgroundSquare~iphone.png",
        "not looked for");
    EXPECT_EQ(ofThemes({"A", "B"}, simulator::kSystem13), "com.apple.Maps");
}

TEST_F(AppList, HasAnIdentifierALineAndAName) {
    EXPECT_EQ(read("com.example.a\ncom.example.b Notes\n"),
              (Apps{{"com.example.a", ""}, {"com.example.b", "Notes"}}));
    EXPECT_EQ(read("# a comment\n\n  \t\n\tcom.example.a \t  My  Größe # 1 \t\r\n#com.example.c\n"
                   "com.example.B_2-x"),
              (Apps{{"com.example.a", "My  Größe # 1"}, {"com.example.B_2-x", ""}}));
    EXPECT_EQ(read("\xEF\xBB\xBF"
                   "com.example.a\r\n"),
              Apps{{"com.example.a"}});
    EXPECT_EQ(read(std::string(255, 'a')), Apps{{std::string(255, 'a')}});
}

TEST_F(AppList, LineThatIsNoneIsNamed) {
    const std::string what =
        " is no app's identifier; a line has one and, behind a blank, a name, as in "
        "com.example.notes Notes";
    expectRefused("com.example.a\n\n# x\ncom/example Notes\n", "line 4: \"com/example\"" + what);
    expectRefused("größe\n", "line 1: \"größe\"" + what);
    expectRefused(".a", "line 1: \".a\"" + what);
    expectRefused("com.a.", "line 1: \"com.a.\"" + what);
    expectRefused("..", "line 1: \"..\"" + what);
    expectRefused("a\x1b[31m", "line 1: \"a?[31m\"" + what);
    expectRefused(std::string("a\0b", 3), "line 1: \"a?b\"" + what);
    expectRefused(std::string(256, 'a'),
                  "line 1: \"" + std::string(70, 'a') + "…" + std::string(70, 'a') + "\"" + what);
    expectRefused("com.a A\nb na\x01me\n", "line 2: the name \"na?me\" is not plain text");
    expectRefused("com.a \xff\n", "line 1: the name \"?\" is not plain text");
    expectRefused("com.a " + std::string(995, 'n') + "\n",
                  "line 1: the line is longer than 1000 bytes");
    EXPECT_TRUE(read("com.a " + std::string(994, 'n') + "\n"));
    expectRefused("com.a A\ncom.b\n\ncom.a B\n", "line 4: com.a stands on line 1 already");
}

TEST_F(AppList, ListWithoutAppsIsRefused) {
    const std::string none =
        "there is no app in it; a line has an identifier and, behind a blank, a name, as in "
        "com.example.notes Notes";
    expectRefused("", none);
    expectRefused("\n# com.example.a\n", none);
}

TEST_F(AppList, MoreThanAThemeHasIsRefused) {
    std::string lines;
    for (std::size_t i = 0; i < kMostApps; ++i) {
        lines += "a" + std::to_string(i) + "\n";
    }
    EXPECT_EQ(read(lines).value().size(), kMostApps);
    expectRefused(lines + "b\n", "there are more than 10000 apps; give some of them");
    expectRefused(std::string(100001, '\n'), "there are more than 10000 apps; give some of them");
}

TEST_F(AppList, ThatCannotBeReadIsAProblem) {
    folder.folder("folder");
    for (const auto& [name, why] :
         {std::pair{"none", "no such file or directory"}, {"folder", "is a directory"}}) {
        const auto apps = readAppList(folder / name);
        ASSERT_FALSE(apps) << name;
        EXPECT_EQ(apps.error().message, std::string("the list of apps cannot be read: ") + why);
        EXPECT_EQ(apps.error().path, folder / name);
    }
    // What never ends.
    const auto zeros = readAppList("/dev/zero");
    ASSERT_FALSE(zeros);
    EXPECT_EQ(zeros.error().message, "line 1: the line is longer than 1000 bytes");
}

TEST_F(AppList, OfThemesHasAFreshDevicesAppsFirst) {
    icon("A", "org.example.z-large.png");
    icon("A", "com.apple.mobilephone-large.png");
    icon("A", "com.apple.Maps-large.png");
    icon("A", "com.burbn.instagram-large.png");
    icon("B", "com.apple.facetime-large.png");
    icon("B", "com.apple.Maps-large.png");
    icon("B", "net.example.a-large.png");
    EXPECT_EQ(ofThemes({"A", "B"}),
              "com.apple.facetime com.apple.Maps com.burbn.instagram com.apple.mobilephone "
              "net.example.a org.example.z");
    EXPECT_EQ(ofThemes({"A"}),
              "com.apple.Maps com.burbn.instagram com.apple.mobilephone org.example.z");
}

TEST_F(AppList, OfThemesHasWhatIsLookedForAlone) {
    for (const char* const name :
         {"com.example.a.png", "com.example.b-large@2x.png", "com.example.c-Large.png",
          "com.example.d-large.PNG", "com.example.e-large.png.bak", "-large.png",
          "(null)-large.png", "com example-large.png", "größe-large.png",
          "deeper/com.example.f-large.png"}) {
        icon("A", name);
    }
    folder.file("Library/Themes/A/iconbundles/com.example.g-large.png");
    folder.file("Library/Themes/A/Bundles/com.example.h-large.png");
    folder.link("Library/Themes/A/IconBundles/com.example.i-large.png", "nowhere");
    folder.link("Library/Themes/A/IconBundles/com.example.j-large.png", "/etc/hostname");
    EXPECT_EQ(ofThemes({"A"}),
              "no theme has an app's icon; one is a file IconBundles/IDENTIFIER-large.png");
    icon("A", "com.example.k-large-large.png");
    folder.link("Library/Themes/A/IconBundles/com.example.l-large.png", "com.example.a.png");
    EXPECT_EQ(ofThemes({"A"}), "com.example.k-large com.example.l");
    // A theme without the folder, or with a file of that name.
    folder.file("Library/Themes/B/IconBundles", "a file");
    EXPECT_EQ(ofThemes({"B", "A", "C", "../..", ""}), "com.example.k-large com.example.l");
    EXPECT_EQ(ofThemes({}),
              "no theme has an app's icon; one is a file IconBundles/IDENTIFIER-large.png");
}

TEST_F(AppList, OfThemesWithoutEndIsRefused) {
    for (std::size_t i = 0; i <= kMostApps; ++i) {
        icon("A", "a" + std::to_string(i) + "-large.png");
    }
    EXPECT_EQ(ofThemes({"A"}), "the theme brings it to more than 10000 icons; give a smaller one");
}

}  // namespace
}  // namespace velmoranth::cli::app_list_test
