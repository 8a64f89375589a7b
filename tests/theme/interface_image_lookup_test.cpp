#include "theme/interface_image_lookup.h"

#include "tests/support/test_device.h"

#include "lookup_lines.h"
#include <gtest/gtest.h>

#include <optional>
#include <string>

namespace velmoranth::theme::interface_image_lookup_test {
namespace {

using platform::ImageRef;
using tests::drawnPixels;
using tests::joined;
using tests::kReadPreferences;
using tests::Lines;
using tests::Pixel;
using tests::solid;
using tests::TestDevice;

constexpr const char* kDictHasImg = "log VELMORANTH WeatherImageLoader Dict HasImg";
constexpr Pixel kRed{255, 0, 0, 255};
constexpr Pixel kBlue{0, 0, 255, 255};

ImageRef bundleSearch(const std::string& name, const std::string& bundle,
                      const ImageRef& original) {
    return InterfaceImageLookup::deviceUIImageNamedFromBundleOriginalUIImage(name, bundle,
                                                                             original);
}

ImageRef looseSearch(const std::string& name, const ImageRef& original) {
    return InterfaceImageLookup::deviceUIImageNamedOriginalUIImage(name, original);
}

Lines bundleLoads(const std::string& theme, const std::string& bundle, const std::string& name) {
    const std::string base = "+[UIImage imageWithContentsOfFile:] /Library/Themes/" + theme +
                             "/Bundles/" + bundle + "/" + name;
    return {base + "@3x.png", base + ".png", base};
}

Lines looseLoads(const std::string& theme, const std::string& name) {
    const std::string base =
        "+[UIImage imageWithContentsOfFile:] /Library/Themes/" + theme + "/UIImages/" + name;
    return {base + "@3x.png", base + "@2x.png", base + ".png", base};
}

class InterfaceImages : public testing::Test {
  protected:
    void themeImage(const std::string& path, Pixel color = kRed) const {
        device.png("/Library/Themes/" + path, solid(6, 6, color));
    }

    TestDevice device;
    ImageRef original = device.image(solid(6, 9, {0, 255, 0, 255}));
};

using BundleSearch = InterfaceImages;
using LooseSearch = InterfaceImages;
using SearchFolder = InterfaceImages;
using HasSearch = InterfaceImages;

TEST_F(BundleSearch, TriesAllCandidatesOfAThemeBeforeTheNext) {
    device.activeThemes({"A", "B", "C"});
    themeImage("B/Bundles/com.x.kit/back");
    themeImage("C/Bundles/com.x.kit/back@3x.png", kBlue);
    const ImageRef found = bundleSearch("back", "com.x.kit", original);
    EXPECT_EQ(drawnPixels(found), solid(6, 6, kRed));
    EXPECT_EQ(device.journal.lines(), joined({{kReadPreferences, kReadPreferences},
                                              bundleLoads("A", "com.x.kit", "back"),
                                              bundleLoads("B", "com.x.kit", "back")}));
}

TEST_F(BundleSearch, StopsAtEachCandidateInTurn) {
    device.activeThemes({"A"}, {{"enableLogging", true}});
    themeImage("A/Bundles/com.x.kit/one@3x.png");
    themeImage("A/Bundles/com.x.kit/one.png", kBlue);
    themeImage("A/Bundles/com.x.kit/one", kBlue);
    themeImage("A/Bundles/com.x.kit/two.png");
    themeImage("A/Bundles/com.x.kit/two", kBlue);
    themeImage("A/Bundles/com.x.kit/three");
    const char* const lines[] = {
        "Velmoranth found bundle @3x image: one in theme: A fromBundle: com.x.kit",
        "Velmoranth found bundle .png image: two in theme: A fromBundle: com.x.kit",
        "Velmoranth found bundle no ext image: three in theme: A fromBundle: com.x.kit"};
    std::size_t loads = 0;
    for (const std::string name : {"one", "two", "three"}) {
        device.journal.clear();
        EXPECT_EQ(drawnPixels(bundleSearch(name, "com.x.kit", original)), solid(6, 6, kRed))
            << name;
        Lines tried = bundleLoads("A", "com.x.kit", name);
        tried.resize(loads + 1);
        EXPECT_EQ(device.journal.linesWith("+[UIImage imageWithContentsOfFile:] "), tried);
        EXPECT_EQ(device.journal.lines().back(), std::string("log ") + lines[loads]);
        ++loads;
    }
}

TEST_F(BundleSearch, HasNoDoubleScaleCandidate) {
    device.activeThemes({"A"});
    themeImage("A/Bundles/com.x.kit/back@2x.png");
    EXPECT_EQ(bundleSearch("back", "com.x.kit", original), original);
}

TEST_F(BundleSearch, LogsItsStepsInOrder) {
    device.activeThemes({"A"}, {{"enableLogging", true}});
    themeImage("A/Bundles/com.x.kit/back.png");
    bundleSearch("back", "com.x.kit", original);
    const Lines loads = bundleLoads("A", "com.x.kit", "back");
    EXPECT_EQ(device.journal.lines(),
              (Lines{kReadPreferences,
                     "log VelmoranthImageLoader loadUIImage back   fromBundle: com.x.kit     "
                     "ForOrigImg: " +
                         original->description() + " ",
                     kReadPreferences,
                     "log VELMORANTH LOAD IMAGE: back BUNDLEID: com.x.kit Image Width: 2.000000 "
                     "Image Height: 3.000000",
                     loads[0], loads[1],
                     "log Velmoranth found bundle .png image: back in theme: A fromBundle: "
                     "com.x.kit"}));
}

TEST_F(BundleSearch, NilOriginalIsLoggedAndReturned) {
    device.activeThemes({}, {{"enableLogging", true}});
    EXPECT_EQ(bundleSearch("back", "com.x.kit", nullptr), nullptr);
    EXPECT_EQ(device.journal.log(),
              (Lines{"VelmoranthImageLoader loadUIImage back   fromBundle: com.x.kit     "
                     "ForOrigImg: (null) ",
                     "VELMORANTH LOAD IMAGE: back BUNDLEID: com.x.kit Image Width: 0.000000 Image "
                     "Height: 0.000000"}));
}

TEST_F(BundleSearch, WithoutThemesLoadsNothing) {
    EXPECT_EQ(bundleSearch("back", "com.x.kit", original), original);
    EXPECT_EQ(device.journal.lines(), (Lines{kReadPreferences, kReadPreferences}));
}

TEST_F(BundleSearch, FileThatIsNoImageIsPassedOver) {
    device.activeThemes({"A", "B"});
    device.file("/Library/Themes/A/Bundles/com.x.kit/back@3x.png", "no picture");
    device.folder("/Library/Themes/A/Bundles/com.x.kit/back.png");
    device.file("/Library/Themes/A/Bundles/com.x.kit/back", "");
    themeImage("B/Bundles/com.x.kit/back.png");
    EXPECT_EQ(drawnPixels(bundleSearch("back", "com.x.kit", original)), solid(6, 6, kRed));
}

TEST_F(BundleSearch, RepeatsAMissEachTime) {
    device.activeThemes({"A"});
    const Lines once =
        joined({{kReadPreferences, kReadPreferences}, bundleLoads("A", "com.x.kit", "back")});
    EXPECT_EQ(bundleSearch("back", "com.x.kit", original), original);
    EXPECT_EQ(device.journal.lines(), once);
    EXPECT_EQ(bundleSearch("back", "com.x.kit", original), original);
    EXPECT_EQ(device.journal.lines(), joined({once, once}));
    themeImage("A/Bundles/com.x.kit/back.png");
    EXPECT_EQ(drawnPixels(bundleSearch("back", "com.x.kit", original)), solid(6, 6, kRed));
}

TEST_F(BundleSearch, ServesTheFirstImageOfANameToEveryBundle) {
    device.activeThemes({"A"});
    themeImage("A/Bundles/com.first/back.png");
    themeImage("A/Bundles/com.second/back.png", kBlue);
    themeImage("A/UIImages/back.png", kBlue);
    const ImageRef first = bundleSearch("back", "com.first", original);
    ASSERT_EQ(drawnPixels(first), solid(6, 6, kRed));
    device.journal.clear();
    EXPECT_EQ(bundleSearch("back", "com.second", original), first);
    EXPECT_EQ(looseSearch("back", original), first);
    EXPECT_EQ(device.journal.lines(), (Lines{kDictHasImg, kDictHasImg}));
}

TEST_F(BundleSearch, KeepsItsImagesThroughAChangeOfThemes) {
    device.activeThemes({"A"});
    themeImage("A/Bundles/com.x.kit/back.png");
    themeImage("B/Bundles/com.x.kit/back.png", kBlue);
    const ImageRef first = bundleSearch("back", "com.x.kit", original);
    device.activeThemes({"B"}, {{"enableLogging", true}});
    EXPECT_EQ(bundleSearch("back", "com.x.kit", nullptr), first);
}

TEST_F(BundleSearch, NamesAreComparedWhole) {
    device.activeThemes({"A"});
    themeImage("A/Bundles/com.x.kit/back.png");
    bundleSearch("back", "com.x.kit", original);
    EXPECT_EQ(bundleSearch("bac", "com.x.kit", original), original);
    EXPECT_EQ(bundleSearch("back2", "com.x.kit", original), original);
    EXPECT_EQ(bundleSearch("Back", "com.x.kit", original), original);
}

TEST_F(BundleSearch, NamesWithPlaceholdersStayAsTheyAre) {
    device.activeThemes({"%f"}, {{"enableLogging", true}});
    themeImage("%f/Bundles/%@/100%s.png");
    EXPECT_EQ(drawnPixels(bundleSearch("100%s", "%@", original)), solid(6, 6, kRed));
    EXPECT_EQ(device.journal.log().back(),
              "Velmoranth found bundle .png image: 100%s in theme: %f fromBundle: %@");
}

TEST_F(BundleSearch, ReturnsTheFileAsItLoads) {
    device.activeThemes({"A"});
    themeImage("A/Bundles/com.x.kit/back@3x.png");
    const ImageRef found = bundleSearch("back", "com.x.kit", original);
    const ImageRef loaded =
        device.images().imageWithContentsOfFile("/Library/Themes/A/Bundles/com.x.kit/back@3x.png");
    EXPECT_EQ(found->scale(), loaded->scale());
    EXPECT_EQ(found->size(), loaded->size());
}

TEST_F(BundleSearch, DumpsTheOriginalBeforeItsFirstLine) {
    device.activeThemes({"A"}, {{"enableImageDump", true}, {"enableLogging", true}});
    themeImage("A/Bundles/com.x.kit/back.png");
    bundleSearch("back", "com.x.kit", original);
    EXPECT_TRUE(
        device.exists("/var/mobile/Library/VelmoranthImageDump/Bundles/com.x.kit/back@3x.png"));
    EXPECT_EQ(drawnPixels(device.images().imageWithContentsOfFile(
                  "/var/mobile/Library/VelmoranthImageDump/Bundles/com.x.kit/back@3x.png")),
              drawnPixels(original));
    const Lines log = device.journal.log();
    ASSERT_EQ(log.size(), 4U);
    EXPECT_EQ(log[0], "VelmoranthImageDump imgToDump: " + original->description() +
                          "    Imgnamed: back   inBundle: com.x.kit");
    EXPECT_TRUE(log[1].starts_with("VelmoranthImageLoader loadUIImage back "));
    EXPECT_EQ(device.journal.count("+[NSDictionary dictionaryWithContentsOfFile:]"), 3U);

    // A hit is served without a dump.
    device.journal.clear();
    bundleSearch("back", "com.other", original);
    EXPECT_EQ(device.journal.lines(), Lines{kDictHasImg});
}

TEST_F(BundleSearch, DumpsWhetherOrNotAThemeHasTheFile) {
    device.activeThemes({}, {{"enableImageDump", true}});
    EXPECT_EQ(bundleSearch("none", "com.x.kit", original), original);
    EXPECT_TRUE(
        device.exists("/var/mobile/Library/VelmoranthImageDump/Bundles/com.x.kit/none@3x.png"));
}

TEST_F(BundleSearch, WithDumpingOffWritesNothing) {
    device.activeThemes({"A"}, {{"enableImageDump", false}});
    bundleSearch("none", "com.x.kit", original);
    EXPECT_FALSE(device.exists("/var/mobile/Library/VelmoranthImageDump"));
}

TEST_F(BundleSearch, SwitchesKeepTheirValuesWhenTheFileIsMissing) {
    device.activeThemes({"A"}, {{"enableImageDump", true}, {"enableLogging", true}});
    bundleSearch("one", "com.x.kit", original);
    device.remove("/User/Library/Preferences/com.qor.velmoranthprefs.plist");
    device.journal.clear();
    EXPECT_EQ(bundleSearch("two", "com.x.kit", original), original);
    EXPECT_EQ(device.journal.log().size(), 3U);  // the dump's, and two of its own
    EXPECT_TRUE(
        device.exists("/var/mobile/Library/VelmoranthImageDump/Bundles/com.x.kit/two@3x.png"));

    device.preferences({});
    device.journal.clear();
    bundleSearch("three", "com.x.kit", original);
    EXPECT_TRUE(device.journal.log().empty());
    EXPECT_FALSE(
        device.exists("/var/mobile/Library/VelmoranthImageDump/Bundles/com.x.kit/three@3x.png"));
}

TEST_F(LooseSearch, TriesAllCandidatesOfAThemeBeforeTheNext) {
    device.activeThemes({"A", "B", "C"});
    themeImage("B/UIImages/back");
    themeImage("C/UIImages/back@3x.png", kBlue);
    EXPECT_EQ(drawnPixels(looseSearch("back", original)), solid(6, 6, kRed));
    EXPECT_EQ(device.journal.lines(), joined({{kReadPreferences, kReadPreferences},
                                              looseLoads("A", "back"),
                                              looseLoads("B", "back")}));
}

TEST_F(LooseSearch, StopsAtEachCandidateInTurn) {
    device.activeThemes({"A"}, {{"enableLogging", true}});
    const std::string endings[] = {"@3x.png", "@2x.png", ".png", ""};
    const std::string names[] = {"one", "two", "three", "four"};
    const char* const lines[] = {"VelmoranthImageDump @3x found image one in theme: A ",
                                 "VelmoranthImageDump @2x found image two in theme: A ",
                                 "VelmoranthImageDump found image three in theme: A ",
                                 "VelmoranthImageDump no ext found image four in theme: A "};
    for (std::size_t i = 0; i < 4; ++i) {
        for (std::size_t k = i; k < 4; ++k) {
            themeImage("A/UIImages/" + names[i] + endings[k], k == i ? kRed : kBlue);
        }
        device.journal.clear();
        EXPECT_EQ(drawnPixels(looseSearch(names[i], original)), solid(6, 6, kRed)) << names[i];
        Lines tried = looseLoads("A", names[i]);
        tried.resize(i + 1);
        EXPECT_EQ(device.journal.lines(),
                  joined({{kReadPreferences,
                           "log VelmoranthImageLoader loadUIImage " + names[i] +
                               " ForOrigImg: " + original->description() + " ",
                           kReadPreferences},
                          tried,
                          {std::string("log ") + lines[i]}}));
    }
}

TEST_F(LooseSearch, NilOriginalIsLoggedAndReturned) {
    device.activeThemes({}, {{"enableLogging", true}});
    EXPECT_EQ(looseSearch("back", nullptr), nullptr);
    EXPECT_EQ(device.journal.log(),
              Lines{"VelmoranthImageLoader loadUIImage back ForOrigImg: (null) "});
}

TEST_F(LooseSearch, WithoutThemesLoadsNothing) {
    device.activeThemes({});
    EXPECT_EQ(looseSearch("back", original), original);
    EXPECT_EQ(device.journal.lines(), (Lines{kReadPreferences, kReadPreferences}));
}

TEST_F(LooseSearch, RepeatsAMissEachTime) {
    device.activeThemes({"A"});
    const Lines once = joined({{kReadPreferences, kReadPreferences}, looseLoads("A", "back")});
    EXPECT_EQ(looseSearch("back", original), original);
    EXPECT_EQ(looseSearch("back", original), original);
    EXPECT_EQ(device.journal.lines(), joined({once, once}));
}

TEST_F(LooseSearch, ServesItsImageToEveryBundle) {
    device.activeThemes({"A"});
    themeImage("A/UIImages/back.png");
    themeImage("A/Bundles/com.x.kit/back.png", kBlue);
    const ImageRef first = looseSearch("back", original);
    ASSERT_EQ(drawnPixels(first), solid(6, 6, kRed));
    device.journal.clear();
    EXPECT_EQ(bundleSearch("back", "com.x.kit", original), first);
    EXPECT_EQ(looseSearch("back", nullptr), first);
    EXPECT_EQ(device.journal.lines(), (Lines{kDictHasImg, kDictHasImg}));
}

TEST_F(LooseSearch, DumpsWithoutABundle) {
    device.activeThemes({"A"}, {{"enableImageDump", true}, {"enableLogging", true}});
    EXPECT_EQ(looseSearch("back", original), original);
    EXPECT_TRUE(device.exists("/var/mobile/Library/VelmoranthImageDump/UIImages/back@3x.png"));
    EXPECT_FALSE(device.exists("/var/mobile/Library/VelmoranthImageDump/Bundles"));
    EXPECT_EQ(device.journal.log(),
              (Lines{"VelmoranthImageDump imgToDump: " + original->description() +
                         "    Imgnamed: back   inBundle: (null)",
                     "VelmoranthImageLoader loadUIImage back ForOrigImg: " +
                         original->description() + " "}));
}

TEST_F(SearchFolder, ReturnsTheFirstThatLoadsAndKeepsNothing) {
    device.activeThemes({"A", "B", "C"}, {{"enableLogging", true}, {"enableImageDump", true}});
    device.file("/Library/Themes/A/Velmoranth/dock.png", "no picture");
    themeImage("B/Velmoranth/dock.png");
    themeImage("C/Velmoranth/dock.png", kBlue);
    const Lines once{kReadPreferences,
                     "+[UIImage imageWithContentsOfFile:] /Library/Themes/A/Velmoranth/dock.png",
                     "+[UIImage imageWithContentsOfFile:] /Library/Themes/B/Velmoranth/dock.png"};
    const ImageRef first = InterfaceImageLookup::searchFolderForImageStr("Velmoranth/", "dock.png");
    EXPECT_EQ(drawnPixels(first), solid(6, 6, kRed));
    EXPECT_EQ(device.journal.lines(), once);
    EXPECT_NE(InterfaceImageLookup::searchFolderForImageStr("Velmoranth/", "dock.png"), first);
    EXPECT_EQ(device.journal.lines(), joined({once, once}));
}

TEST_F(SearchFolder, IsNilWhenNoThemeHasTheFile) {
    EXPECT_EQ(InterfaceImageLookup::searchFolderForImageStr("Velmoranth/", "dock.png"), nullptr);
    EXPECT_EQ(device.journal.lines(), Lines{kReadPreferences});
    device.activeThemes({"A"});
    EXPECT_EQ(InterfaceImageLookup::searchFolderForImageStr("Velmoranth/", "dock.png"), nullptr);
}

TEST_F(SearchFolder, JoinsFolderAndNameAsTheyStand) {
    device.activeThemes({"A"});
    themeImage("A/Velmoranthdock.png");
    EXPECT_EQ(drawnPixels(InterfaceImageLookup::searchFolderForImageStr("Velmoranth", "dock.png")),
              solid(6, 6, kRed));
    EXPECT_EQ(device.journal.lines().back(),
              "+[UIImage imageWithContentsOfFile:] /Library/Themes/A/Velmoranthdock.png");
}

TEST_F(SearchFolder, TriesEveryFolderOfAThemeBeforeTheNext) {
    device.activeThemes({"A", "B"});
    themeImage("B/Two/dock.png");
    EXPECT_EQ(drawnPixels(InterfaceImageLookup::searchFoldersForImageString(
                  {"One/", "Two/", "Three/"}, "dock.png")),
              solid(6, 6, kRed));
    EXPECT_EQ(device.journal.lines(),
              (Lines{kReadPreferences,
                     "+[UIImage imageWithContentsOfFile:] /Library/Themes/A/One/dock.png",
                     "+[UIImage imageWithContentsOfFile:] /Library/Themes/A/Two/dock.png",
                     "+[UIImage imageWithContentsOfFile:] /Library/Themes/A/Three/dock.png",
                     "+[UIImage imageWithContentsOfFile:] /Library/Themes/B/One/dock.png",
                     "+[UIImage imageWithContentsOfFile:] /Library/Themes/B/Two/dock.png"}));
    EXPECT_EQ(InterfaceImageLookup::searchFoldersForImageString({"One/", "Three/"}, "dock.png"),
              nullptr);
    EXPECT_EQ(InterfaceImageLookup::searchFoldersForImageString({}, "dock.png"), nullptr);
}

TEST_F(HasSearch, IsFalseTheFirstTimeAndTrueEverAfter) {
    const auto seen = [&](const std::string& name, const ImageRef& image) {
        return InterfaceImageLookup::hasSearchForImageNamedOrBundleForImg(name, image);
    };
    EXPECT_FALSE(seen("back", original));
    EXPECT_TRUE(seen("back", original));
    EXPECT_TRUE(seen("back", nullptr));
    EXPECT_FALSE(seen("front", nullptr));
    EXPECT_TRUE(seen("front", original));
    EXPECT_FALSE(seen("", original));
    EXPECT_TRUE(seen("", original));
    EXPECT_EQ(device.journal.lines(),
              (Lines{"log Velmoranth UIDictHasImg : back", "log Velmoranth UIDictHasImg : front",
                     "log Velmoranth UIDictHasImg : "}));
}

TEST_F(HasSearch, SharesNothingWithTheSearches) {
    device.activeThemes({"A"});
    themeImage("A/UIImages/found.png");
    InterfaceImageLookup::hasSearchForImageNamedOrBundleForImg("back", original);
    EXPECT_EQ(looseSearch("back", nullptr), nullptr);
    looseSearch("found", original);
    EXPECT_FALSE(InterfaceImageLookup::hasSearchForImageNamedOrBundleForImg("found", original));
}

}  // namespace
}  // namespace velmoranth::theme::interface_image_lookup_test
