#include "theme/app_icon_lookup.h"

#include "core/settings.h"
#include "tests/core/forgotten_steps.h"
#include "tests/support/test_device.h"
#include "theme/interface_image_lookup.h"

#include "lookup_lines.h"
#include <gtest/gtest.h>

#include <optional>
#include <string>

namespace velmoranth::theme::app_icon_lookup_test {
namespace {

using platform::ImageRef;
using platform::NullableString;
using tests::drawnPixels;
using tests::kReadPreferences;
using tests::Lines;
using tests::solid;
using tests::TestDevice;

constexpr tests::Pixel kRed{255, 0, 0, 255};
constexpr tests::Pixel kBlue{0, 0, 255, 255};
constexpr const char* kDumpRoot = "/var/mobile/Library/VelmoranthImageDump";

ImageRef search(const NullableString& identifier, const ImageRef& fallBack) {
    return AppIconLookup::searchforIconInIconBundlesWithLeafIdentifierForImg(identifier, fallBack);
}

class AppIconSearch : public testing::Test {
  protected:
    void icon(const std::string& path, tests::Pixel color = kRed) const {
        device.png("/Library/Themes/" + path, solid(6, 6, color));
    }

    TestDevice device;
    ImageRef fallBack = device.image(solid(12, 12, {0, 255, 0, 255}));
};

TEST_F(AppIconSearch, ReturnsTheFallBackItselfWithoutThemes) {
    EXPECT_EQ(search("com.a", fallBack), fallBack);
    device.activeThemes({});
    EXPECT_EQ(search("com.a", fallBack), fallBack);
    EXPECT_EQ(search("com.a", nullptr), nullptr);
    EXPECT_EQ(device.journal.lines(),
              (Lines{kReadPreferences, kReadPreferences, kReadPreferences, kReadPreferences,
                     kReadPreferences, kReadPreferences}));
}

TEST_F(AppIconSearch, TakesTheFirstThemeThatHasTheFile) {
    device.activeThemes({"A", "B", "C"});
    icon("B/IconBundles/com.a-large.png");
    icon("C/IconBundles/com.a-large.png", kBlue);
    EXPECT_EQ(drawnPixels(search("com.a", fallBack)), solid(6, 6, kRed));
    EXPECT_EQ(
        device.journal.lines(),
        (Lines{
            kReadPreferences, kReadPreferences,
            "-[NSFileManager fileExistsAtPath:] /Library/Themes/A/IconBundles/com.a-large.png",
            "-[NSFileManager fileExistsAtPath:] /Library/Themes/B/IconBundles/com.a-large.png",
            "+[UIImage imageWithContentsOfFile:] /Library/Themes/B/IconBundles/com.a-large.png"}));
}

TEST_F(AppIconSearch, TriesNoOtherName) {
    device.activeThemes({"A"});
    for (const char* const name :
         {"com.a.png", "com.a", "com.a-large@2x.png", "com.a-large@3x.png", "com.a@3x.png",
          "com.a-large~ipad.png", "com.a-large", "com.A-large.png"}) {
        icon(std::string("A/IconBundles/") + name);
    }
    icon("A/Bundles/com.a-large.png");
    EXPECT_EQ(search("com.a", fallBack), fallBack);
    EXPECT_EQ(
        device.journal.lines(),
        (Lines{
            kReadPreferences, kReadPreferences,
            "-[NSFileManager fileExistsAtPath:] /Library/Themes/A/IconBundles/com.a-large.png"}));
}

TEST_F(AppIconSearch, LogsItsStepsInOrder) {
    device.activeThemes({"A", "B"}, {{"enableLogging", true}});
    icon("B/IconBundles/com.a-large.png");
    search("com.a", fallBack);
    EXPECT_EQ(
        device.journal.lines(),
        (Lines{
            kReadPreferences,
            "log Velmoranth.M searchforIconInIconBundlesWithLeafIdentifier: com.a",
            kReadPreferences,
            "log Velmoranth GetICON  /Library/Themes/A/IconBundles/com.a-large.png",
            "-[NSFileManager fileExistsAtPath:] /Library/Themes/A/IconBundles/com.a-large.png",
            "log Velmoranth GetICON  /Library/Themes/B/IconBundles/com.a-large.png",
            "-[NSFileManager fileExistsAtPath:] /Library/Themes/B/IconBundles/com.a-large.png",
            "log Velmoranth BUNDLE FOUND in theme B/com.a-large ",
            "+[UIImage imageWithContentsOfFile:] /Library/Themes/B/IconBundles/com.a-large.png"}));
}

TEST_F(AppIconSearch, UnreadableFirstFileGivesNilAndEndsTheSearch) {
    device.activeThemes({"A", "B"}, {{"enableLogging", true}});
    device.file("/Library/Themes/A/IconBundles/com.a-large.png", "no picture");
    icon("B/IconBundles/com.a-large.png");
    EXPECT_EQ(search("com.a", fallBack), nullptr);
    EXPECT_EQ(device.journal.lines().back(),
              "+[UIImage imageWithContentsOfFile:] /Library/Themes/A/IconBundles/com.a-large.png");
    EXPECT_EQ(device.journal.log().back(), "Velmoranth BUNDLE FOUND in theme A/com.a-large ");
    EXPECT_EQ(device.journal.count("-[NSFileManager fileExistsAtPath:]"), 1U);
}

TEST_F(AppIconSearch, AFolderOfThatNameExistsToo) {
    device.activeThemes({"A", "B"});
    device.folder("/Library/Themes/A/IconBundles/com.a-large.png");
    icon("B/IconBundles/com.a-large.png");
    EXPECT_EQ(search("com.a", fallBack), nullptr);
}

TEST_F(AppIconSearch, DumpsTheFallBackBeforeItsFirstLine) {
    device.activeThemes({"A"}, {{"enableLogging", true}, {"enableImageDump", true}});
    icon("A/IconBundles/com.a-large.png");
    EXPECT_EQ(drawnPixels(search("com.a", fallBack)), solid(6, 6, kRed));
    for (const char* const folder : {"/Bundles/IconBundles", "/IconBundles"}) {
        EXPECT_EQ(drawnPixels(device.images().imageWithContentsOfFile(std::string(kDumpRoot) +
                                                                      folder + "/com.a@3x.png")),
                  drawnPixels(fallBack));
    }
    EXPECT_EQ(device.journal.lines().at(0), kReadPreferences);
    EXPECT_EQ(device.journal.lines().at(1), kReadPreferences);
    const Lines log = device.journal.log();
    ASSERT_GE(log.size(), 2U);
    EXPECT_EQ(log[0], "VelmoranthImageDump imgToDump: " + fallBack->description() +
                          "    Imgnamed: com.a   inBundle: IconBundles");
    EXPECT_EQ(log[1], "Velmoranth.M searchforIconInIconBundlesWithLeafIdentifier: com.a");
    EXPECT_EQ(device.journal.count("+[NSDictionary dictionaryWithContentsOfFile:]"), 3U);
}

TEST_F(AppIconSearch, DumpsWhetherOrNotAThemeHasTheFile) {
    device.activeThemes({}, {{"enableImageDump", true}});
    EXPECT_EQ(search("com.a", fallBack), fallBack);
    EXPECT_TRUE(device.exists(std::string(kDumpRoot) + "/IconBundles/com.a@3x.png"));
    EXPECT_TRUE(device.exists(std::string(kDumpRoot) + "/Bundles/IconBundles/com.a@3x.png"));
    EXPECT_EQ(search("com.b", nullptr), nullptr);
    EXPECT_EQ(device.journal.log(),
              Lines{"VelmoranthImageDump imgToDump: (null) HASNODATA:    Imgnamed: com.b   "
                    "inBundle: IconBundles"});
}

TEST_F(AppIconSearch, SwitchesStartOffAndKeepTheirValuesWhenTheFileIsMissing) {
    search("com.a", fallBack);
    EXPECT_TRUE(device.journal.log().empty());

    device.activeThemes({}, {{"enableLogging", true}, {"enableImageDump", true}});
    search("com.a", fallBack);
    device.remove("/User/Library/Preferences/com.qor.velmoranthprefs.plist");
    device.journal.clear();
    search("com.b", fallBack);
    EXPECT_EQ(device.journal.log().size(), 2U);
    EXPECT_TRUE(device.exists(std::string(kDumpRoot) + "/IconBundles/com.b@3x.png"));

    device.preferences({{"enableImageDump", false}});
    device.journal.clear();
    search("com.c", fallBack);
    EXPECT_TRUE(device.journal.log().empty());
    EXPECT_FALSE(device.exists(std::string(kDumpRoot) + "/IconBundles/com.c@3x.png"));
}

TEST_F(AppIconSearch, SwitchesAreSeparate) {
    device.activeThemes({}, {{"enableImageDump", true}});
    search("com.a", fallBack);
    EXPECT_TRUE(device.journal.log().empty());
    device.activeThemes({}, {{"enableLogging", true}});
    search("com.b", fallBack);
    EXPECT_EQ(device.journal.log().size(), 1U);
    EXPECT_FALSE(device.exists(std::string(kDumpRoot) + "/IconBundles/com.b@3x.png"));
}

// The mask's switch is read by the search of icons alone, and kept nowhere.
TEST_F(AppIconSearch, ReadsTheMasksSwitchTooAndForgetsIt) {
    device.activeThemes({"A"}, {{"enableIconMask", true}});
    const tests::WatchedSteps watched(device.journal);
    EXPECT_EQ(search("com.a", fallBack), fallBack);
    EXPECT_EQ(
        device.journal.lines(),
        (Lines{
            kReadPreferences, "objectForKey enableImageDump", "boolValue (null)",
            "objectForKey enableLogging", "boolValue (null)", "objectForKey enableIconMask",
            "boolValue 1", kReadPreferences, "objectForKey ActiveThemes",
            "-[NSFileManager fileExistsAtPath:] /Library/Themes/A/IconBundles/com.a-large.png"}));
    EXPECT_FALSE(core::settings().enableIconMask);
    device.journal.clear();
    EXPECT_EQ(InterfaceImageLookup::deviceUIImageNamedOriginalUIImage("x", fallBack), fallBack);
    EXPECT_EQ(device.journal.count("objectForKey enableIconMask"), 0U);
    EXPECT_EQ(device.journal.count("objectForKey enableLogging"), 1U);
}

TEST_F(AppIconSearch, NilIdentifierIsSearchedAsItPrints) {
    device.activeThemes({"A"}, {{"enableLogging", true}});
    EXPECT_EQ(search(std::nullopt, fallBack), fallBack);
    EXPECT_EQ(device.journal.lines().back(),
              "-[NSFileManager fileExistsAtPath:] /Library/Themes/A/IconBundles/(null)-large.png");
    EXPECT_EQ(device.journal.log().front(),
              "Velmoranth.M searchforIconInIconBundlesWithLeafIdentifier: (null)");
}

TEST_F(AppIconSearch, KeepsNothing) {
    device.activeThemes({"A"});
    icon("A/IconBundles/com.a-large.png");
    search("com.a", fallBack);
    icon("A/IconBundles/com.a-large.png", kBlue);
    EXPECT_EQ(drawnPixels(search("com.a", fallBack)), solid(6, 6, kBlue));
}

}  // namespace
}  // namespace velmoranth::theme::app_icon_lookup_test
