#include "theme/theme_selection.h"

#include "tests/support/test_device.h"

#include "lookup_lines.h"
#include <gtest/gtest.h>

#include <cstdint>
#include <optional>
#include <string>

namespace velmoranth::theme::theme_selection_test {
namespace {

using platform::PropertyList;
using tests::kReadPreferences;
using tests::Lines;
using tests::TestDevice;

constexpr const char* kPreferences = "/User/Library/Preferences/com.qor.velmoranthprefs.plist";

TEST(ActiveThemes, AreTheNamesInFileOrder) {
    const TestDevice device;
    device.activeThemes({"Zeta", "Alpha", "Mid", "Alpha"});
    EXPECT_EQ(activeThemes(), (Lines{"Zeta", "Alpha", "Mid", "Alpha"}));
}

TEST(ActiveThemes, ReadTheFileOncePerCallAndNeverKeepIt) {
    TestDevice device;
    device.activeThemes({"One"});
    EXPECT_EQ(activeThemes(), Lines{"One"});
    device.activeThemes({"Two", "One"});
    EXPECT_EQ(activeThemes(), (Lines{"Two", "One"}));
    device.remove(kPreferences);
    EXPECT_EQ(activeThemes(), Lines{});
    EXPECT_EQ(device.journal.lines(),
              (Lines{kReadPreferences, kReadPreferences, kReadPreferences}));
}

TEST(ActiveThemes, AreNoneWithoutAFile) {
    const TestDevice device;
    EXPECT_TRUE(activeThemes().empty());
}

TEST(ActiveThemes, AreNoneWithoutTheKey) {
    const TestDevice device;
    device.preferences({{"enable", true}, {"activeThemes", PropertyList::Array{"One"}}});
    EXPECT_TRUE(activeThemes().empty());
}

TEST(ActiveThemes, AreNoneForAnEmptyArray) {
    const TestDevice device;
    device.activeThemes({});
    EXPECT_TRUE(activeThemes().empty());
}

TEST(ActiveThemes, AreNoneForAValueThatIsNoArray) {
    const TestDevice device;
    for (const PropertyList& value : {PropertyList("One"), PropertyList(1), PropertyList(true),
                                      PropertyList(platform::Dictionary{{"0", "One"}})}) {
        device.preferences({{"ActiveThemes", value}});
        EXPECT_TRUE(activeThemes().empty());
    }
}

TEST(ActiveThemes, AreNoneForAFileThatIsNoPropertyList) {
    const TestDevice device;
    device.file(kPreferences, std::string("\x00\xFF<plist", 8));
    EXPECT_TRUE(activeThemes().empty());
    device.file(kPreferences, "");
    EXPECT_TRUE(activeThemes().empty());
}

TEST(ActiveThemes, EntryThatIsNoStringCountsAsWhatItPrintsAs) {
    const TestDevice device;
    device.preferences({{"ActiveThemes", PropertyList::Array{"One", 7, true, false, 0.5, "Two"}}});
    EXPECT_EQ(activeThemes(), (Lines{"One", "7", "1", "0", "0.5", "Two"}));
}

TEST(ActiveThemes, NamesStayAsTheyStand) {
    const TestDevice device;
    const Lines names{" Dark Theme ", "Thème ☾ 夜", "Set/Night", "../Elsewhere", "",
                      "a.theme",      "100%@ %s",   "/",         "e\xCC\x81"};
    device.activeThemes(names);
    EXPECT_EQ(activeThemes(), names);
}

TEST(SelectedTheme, IsTheFolderOfTheFirstEntryAndChecksNothingOnDisk) {
    TestDevice device;
    device.activeThemes({"Missing Theme", "Other"});
    EXPECT_EQ(ThemeSelection::selectedTheme(), "/Library/Themes/Missing Theme/Velmoranth");
    EXPECT_EQ(device.journal.lines(), Lines{kReadPreferences});
}

TEST(SelectedTheme, IsEmptyWithoutThemes) {
    const TestDevice device;
    EXPECT_EQ(ThemeSelection::selectedTheme(), "");
    device.activeThemes({});
    EXPECT_EQ(ThemeSelection::selectedTheme(), "");
    device.preferences({});
    EXPECT_EQ(ThemeSelection::selectedTheme(), "");
}

TEST(SelectedTheme, TakesTheNameAsItStands) {
    const TestDevice device;
    device.activeThemes({"../%@/Thème 1.theme"});
    EXPECT_EQ(ThemeSelection::selectedTheme(), "/Library/Themes/../%@/Thème 1.theme/Velmoranth");
    device.activeThemes({""});
    EXPECT_EQ(ThemeSelection::selectedTheme(), "/Library/Themes//Velmoranth");
}

TEST(CurrentThemePlist, IsThatOfTheFirstThemeThatHasOne) {
    TestDevice device;
    device.activeThemes({"First", "Second", "Third"});
    device.folder("/Library/Themes/First/Velmoranth");
    device.file("/Library/Themes/Second/Info.plist", "");
    device.file("/Library/Themes/Third/Info.plist", "");
    EXPECT_EQ(ThemeSelection::currentThemePlist(), "/Library/Themes/Second/Info.plist");
    EXPECT_EQ(device.journal.lines(),
              (Lines{kReadPreferences,
                     "-[NSFileManager fileExistsAtPath:] /Library/Themes/First/Info.plist",
                     "-[NSFileManager fileExistsAtPath:] /Library/Themes/Second/Info.plist"}));
    EXPECT_EQ(ThemeSelection::selectedTheme(), "/Library/Themes/First/Velmoranth");
}

TEST(CurrentThemePlist, IsNilWhenNoThemeHasOne) {
    TestDevice device;
    device.activeThemes({"First", "Second"});
    device.file("/Library/Themes/Inactive/Info.plist", "");
    EXPECT_EQ(ThemeSelection::currentThemePlist(), std::nullopt);
    EXPECT_EQ(device.journal.lines(),
              (Lines{kReadPreferences,
                     "-[NSFileManager fileExistsAtPath:] /Library/Themes/First/Info.plist",
                     "-[NSFileManager fileExistsAtPath:] /Library/Themes/Second/Info.plist"}));
}

TEST(CurrentThemePlist, IsNilWithoutThemes) {
    TestDevice device;
    EXPECT_EQ(ThemeSelection::currentThemePlist(), std::nullopt);
    device.activeThemes({});
    EXPECT_EQ(ThemeSelection::currentThemePlist(), std::nullopt);
    EXPECT_EQ(device.journal.lines(), (Lines{kReadPreferences, kReadPreferences}));
}

TEST(CurrentThemePlist, TakesNamesAsTheyStand) {
    const TestDevice device;
    device.file("/Library/Elsewhere/Info.plist", "");
    device.file("/Library/Themes/Sets/Night ☾/Info.plist", "");
    device.activeThemes({"../Elsewhere"});
    EXPECT_EQ(ThemeSelection::currentThemePlist(), "/Library/Themes/../Elsewhere/Info.plist");
    device.activeThemes({"Sets/Night ☾"});
    EXPECT_EQ(ThemeSelection::currentThemePlist(), "/Library/Themes/Sets/Night ☾/Info.plist");
}

TEST(CurrentThemePlist, CountsAnythingThatExists) {
    const TestDevice device;
    device.folder("/Library/Themes/First/Info.plist");
    device.activeThemes({"First"});
    EXPECT_EQ(ThemeSelection::currentThemePlist(), "/Library/Themes/First/Info.plist");
}

TEST(UserChangedThemes, IsFalseWhateverTheSettings) {
    TestDevice device;
    EXPECT_FALSE(ThemeSelection::userChangedThemes());
    device.activeThemes({"One"}, {{"enable", true}, {"userChangedThemes", true}});
    EXPECT_FALSE(ThemeSelection::userChangedThemes());
    EXPECT_EQ(device.journal.lines(), Lines{});
}

struct IdiomCase {
    bool responds;
    int idiom;
    const char* device;
};

TEST(DetectUserDevice, IsIpadForThePadIdiomAlone) {
    TestDevice device;
    for (const IdiomCase& wanted :
         {IdiomCase{true, 0, "iphone"}, IdiomCase{true, 1, "ipad"}, IdiomCase{true, -1, "iphone"},
          IdiomCase{true, 2, "iphone"}, IdiomCase{true, 3, "iphone"}, IdiomCase{false, 1, "iphone"},
          IdiomCase{false, 0, "iphone"}}) {
        device.idiom.responds = wanted.responds;
        device.idiom.idiom = wanted.idiom;
        EXPECT_EQ(ThemeSelection::DetectUserDevice(), wanted.device) << wanted.idiom;
        EXPECT_EQ(deviceIsPad(), std::string(wanted.device) == "ipad") << wanted.idiom;
    }
}

}  // namespace
}  // namespace velmoranth::theme::theme_selection_test
