// +[UIImage _applicationIconImageForBundleIdentifier:format:scale:] of both systems.
#include "tests/support/replaced_services.h"
#include "theme/app_icon_hooks.h"
#include "theme/themed_icons.h"

#include "app_icon_fixture.h"

#include <optional>
#include <string>

namespace velmoranth::theme::application_icon_image_test {
namespace {

using platform::ImageRef;
using tests::AppIcons;
using tests::drawnPixels;
using tests::joined;
using tests::kBlue;
using tests::kGreen;
using tests::kiOS12;
using tests::kiOS13;
using tests::kReadPreferences;
using tests::kRed;
using tests::Lines;
using tests::solid;

constexpr const char* kOrig = "orig UIImage com.a 2 3";

// Of the image that words tell so, at 4 × 4 points.
Lines redraw(const std::string& image) {
    return {"UIGraphicsBeginImageContextWithOptions 4×4 NO 0",
            "-[UIImage drawInRect:] " + image + " (0, 0) 4×4",
            "UIGraphicsGetImageFromCurrentImageContext", "UIGraphicsEndImageContext"};
}

const Lines kRedraw = redraw("4×4 @3x");
const Lines kRedrawOfThemes = redraw("6×6 @1x");
const Lines kSearch{kReadPreferences, kReadPreferences};
constexpr const char* kUse = "log Velmoranth useIconFromDict : com.a.2";
constexpr const char* kLoad = "log Velmoranth loadIconFromTheme : com.a";

class ApplicationIconOniOS12 : public AppIcons {
  protected:
    ApplicationIconOniOS12() { install(kiOS12); }
};

class ApplicationIconOniOS13 : public AppIcons {
  protected:
    ApplicationIconOniOS13() { install(kiOS13); }
};

TEST_F(ApplicationIconOniOS12, WithThemingOffAsksThePlatformTwice) {
    EXPECT_EQ(applicationIcon("com.a"), platformImage);
    EXPECT_EQ(taken(), (Lines{kOrig, kOrig}));
    EXPECT_TRUE(themedIconsExist());
    EXPECT_TRUE(ThemedIconIdentifiers().empty());
}

TEST_F(ApplicationIconOniOS12, GivesThePlatformsLastAnswer) {
    const ImageRef second = device.image(solid(3, 3, kBlue));
    answers = {platformImage, second};
    EXPECT_EQ(applicationIcon("com.a"), second);
}

TEST_F(ApplicationIconOniOS12, WithLoggingAloneAsksThePlatformThreeTimes) {
    settings({"A"}, {{"enableLogging", true}});
    EXPECT_EQ(applicationIcon("com.a", 4, 2.5), platformImage);
    const std::string orig = "orig UIImage com.a 4 2.5";
    EXPECT_EQ(taken(), (Lines{orig, orig,
                              "log VELMORANTH _applicationIconImageForBundleIdentifier arg1: "
                              "com.a format: 4 Scale:2.500000  Orig: " +
                                  platformImage->description(),
                              orig}));
}

TEST_F(ApplicationIconOniOS12, RedrawsThePlatformsIconWithoutThemes) {
    settings({}, {{"enable", true}});
    const ImageRef image = applicationIcon("com.a");
    EXPECT_EQ(taken(), joined({{kOrig, kLoad, kOrig}, kSearch, {kOrig}, kRedraw}));
    EXPECT_NE(image, platformImage);
    EXPECT_EQ(drawnPixels(image), solid(12, 12, kGreen));
    EXPECT_EQ(image->scale(), 3);
    EXPECT_EQ(image->size(), (platform::Size{4, 4}));
}

TEST_F(ApplicationIconOniOS12, DrawsTheThemesIconAtThePlatformsSize) {
    settings({"A"}, {{"enable", true}});
    themeIcon("A/IconBundles/com.a-large.png");
    const ImageRef image = applicationIcon("com.a");
    EXPECT_EQ(
        taken(),
        joined(
            {{kOrig, kLoad, kOrig},
             kSearch,
             {"-[NSFileManager fileExistsAtPath:] /Library/Themes/A/IconBundles/com.a-large.png",
              "+[UIImage imageWithContentsOfFile:] /Library/Themes/A/IconBundles/com.a-large.png",
              kOrig},
             kRedrawOfThemes}));
    EXPECT_EQ(drawnPixels(image), solid(12, 12, kRed));
    EXPECT_EQ(image->scale(), 3);
    EXPECT_EQ(ThemedIconIdentifiers(), Lines{"com.a.2"});
    EXPECT_EQ(findThemedIcon("com.a.2").value_or(nullptr), image);
}

TEST_F(ApplicationIconOniOS12, TakesTheSizeFromAFreshAnswer) {
    settings({}, {{"enable", true}});
    answers = {platformImage, platformImage, device.image(solid(15, 9, kBlue))};
    const ImageRef image = applicationIcon("com.a");
    EXPECT_EQ(device.journal.linesWith("UIGraphicsBeginImageContextWithOptions"),
              Lines{"UIGraphicsBeginImageContextWithOptions 5×3 NO 0"});
    EXPECT_EQ(device.journal.linesWith("-[UIImage drawInRect:] "),
              Lines{"-[UIImage drawInRect:] 4×4 @3x (0, 0) 5×3"});
    EXPECT_EQ(drawnPixels(image), solid(15, 9, kGreen));
}

TEST_F(ApplicationIconOniOS12, ServesTheKeptImageAndAlwaysLogsIt) {
    settings({}, {{"enable", true}});
    const ImageRef first = applicationIcon("com.a");
    taken();
    EXPECT_EQ(applicationIcon("com.a"), first);
    EXPECT_EQ(taken(), (Lines{kOrig, kUse}));
}

// Drops the kept icons, as a theme change does, while the line is written that tells of one.
struct DroppingLog final : platform::SystemLog {
    int dropped = 0;

    void write(const std::string& line) override {
        if (line == "Velmoranth useIconFromDict : com.a.2") {
            dropThemedIcons();
            ++dropped;
        }
    }
};

TEST_F(ApplicationIconOniOS12, ServesTheKeptImageThoughAThemeChangeComesInBetween) {
    settings({}, {{"enable", true}});
    const ImageRef first = applicationIcon("com.a");
    DroppingLog log;
    tests::replaceServices({.log = &log});
    EXPECT_EQ(applicationIcon("com.a"), first);
    EXPECT_EQ(log.dropped, 1);
    EXPECT_FALSE(themedIconsExist());
}

TEST_F(ApplicationIconOniOS12, ServesTheKeptImageWithThemingOff) {
    settings({}, {{"enable", true}});
    const ImageRef first = applicationIcon("com.a");
    settings({}, {{"enable", false}});
    EXPECT_EQ(applicationIcon("com.a"), first);
    EXPECT_EQ(taken(), (Lines{kOrig, kUse}));
    EXPECT_EQ(applicationIcon("com.b"), platformImage);
}

TEST_F(ApplicationIconOniOS12, LogsItsStepsInOrder) {
    settings({"A"}, {{"enable", true}, {"enableLogging", true}});
    applicationIcon("com.a");
    const std::string opening =
        "log VELMORANTH _applicationIconImageForBundleIdentifier arg1: com.a format: 2 "
        "Scale:3.000000  Orig: " +
        platformImage->description();
    EXPECT_EQ(
        taken(),
        joined({{kOrig, kOrig, opening, kLoad, kOrig, kReadPreferences,
                 "log Velmoranth.M searchforIconInIconBundlesWithLeafIdentifier: com.a",
                 kReadPreferences,
                 "log Velmoranth GetICON  /Library/Themes/A/IconBundles/com.a-large.png",
                 "-[NSFileManager fileExistsAtPath:] /Library/Themes/A/IconBundles/com.a-large.png",
                 kOrig},
                kRedraw}));
    applicationIcon("com.a");
    EXPECT_EQ(taken(), (Lines{kOrig, kOrig, opening, kUse}));
}

TEST_F(ApplicationIconOniOS12, KeepsAnImageForEachFormatButNotForEachScale) {
    settings({}, {{"enable", true}});
    const ImageRef two = applicationIcon("com.a", 2, 3);
    const ImageRef minusOne = applicationIcon("com.a", -1, 3);
    EXPECT_NE(two, minusOne);
    EXPECT_EQ(applicationIcon("com.a", 2, 1), two);
    EXPECT_EQ(applicationIcon("com.a", -1, 1), minusOne);
    EXPECT_EQ(ThemedIconIdentifiers(), (Lines{"com.a.2", "com.a.-1"}));
}

TEST_F(ApplicationIconOniOS12, NilIdentifierIsThemedAsItPrints) {
    settings({"A"}, {{"enable", true}});
    const ImageRef image = applicationIcon(std::nullopt);
    EXPECT_EQ(takenCalls(), 3U);
    EXPECT_EQ(drawnPixels(image), solid(12, 12, kGreen));
    EXPECT_EQ(applicationIcon(std::nullopt), image);
    EXPECT_EQ(device.journal.log(), Lines{"Velmoranth useIconFromDict : (null).2"});
}

TEST_F(ApplicationIconOniOS12, UnreadableThemeFileKeepsAnEmptyImageOfThePlatformsSize) {
    settings({"A"}, {{"enable", true}, {"enableIconMask", true}, {"enableOverlay", true}});
    device.file("/Library/Themes/A/IconBundles/com.a-large.png", "no picture");
    device.png("/Library/Themes/A/com.apple.mobileicons.framework/AppIconMask.png",
               solid(12, 12, {0, 0, 0, 255}));
    const ImageRef image = applicationIcon("com.a");
    EXPECT_EQ(device.journal.linesWith("-[UIImage drawInRect:] "),
              Lines{"-[UIImage drawInRect:] nil (0, 0) 4×4"});
    EXPECT_EQ(drawnPixels(image), solid(12, 12, {0, 0, 0, 0}));
    EXPECT_EQ(ThemedIconIdentifiers(), Lines{"com.a.2"});
    EXPECT_EQ(applicationIcon("com.a"), image);
}

TEST_F(ApplicationIconOniOS12, NilPlatformImageKeepsNothing) {
    settings({}, {{"enable", true}});
    platformImage = nullptr;
    EXPECT_EQ(applicationIcon("com.a"), nullptr);
    EXPECT_EQ(takenCalls(), 3U);
    EXPECT_TRUE(ThemedIconIdentifiers().empty());
}

TEST_F(ApplicationIconOniOS13, WithThemingOffAsksThePlatformThreeTimes) {
    EXPECT_EQ(applicationIcon("com.a"), platformImage);
    EXPECT_EQ(taken(), (Lines{kOrig, kOrig, kOrig}));
}

TEST_F(ApplicationIconOniOS13, WithLoggingAloneAsksThePlatformFourTimes) {
    settings({}, {{"enableLogging", true}});
    EXPECT_EQ(applicationIcon("com.a"), platformImage);
    EXPECT_EQ(taken(), (Lines{kOrig, kOrig, kOrig,
                              "log VELMORANTH _applicationIconImageForBundleIdentifier arg1: "
                              "com.a  Orig: " +
                                  platformImage->description(),
                              kOrig}));
}

TEST_F(ApplicationIconOniOS13, NilIdentifierPassesThrough) {
    settings({"A"}, {{"enable", true}, {"enableLogging", true}});
    EXPECT_EQ(applicationIcon(std::nullopt), platformImage);
    EXPECT_EQ(taken(),
              (Lines{"orig UIImage nil 2 3", "orig UIImage nil 2 3", "orig UIImage nil 2 3"}));
}

TEST_F(ApplicationIconOniOS13, NilSecondAnswerPassesThrough) {
    settings({"A"}, {{"enable", true}, {"enableLogging", true}});
    answers = {platformImage, nullptr, platformImage};
    EXPECT_EQ(applicationIcon("com.a"), platformImage);
    EXPECT_EQ(taken(), (Lines{kOrig, kOrig, kOrig}));
    answers = {nullptr};
    EXPECT_NE(applicationIcon("com.a"), platformImage);
    EXPECT_EQ(takenCalls(), 5U);
}

TEST_F(ApplicationIconOniOS13, DrawsTheThemesIconAtThePlatformsSizeAndKeepsNothing) {
    settings({"A"}, {{"enable", true}});
    themeIcon("A/IconBundles/com.a-large.png");
    const Lines once = joined(
        {{kOrig, kOrig, kOrig},
         kSearch,
         {"-[NSFileManager fileExistsAtPath:] /Library/Themes/A/IconBundles/com.a-large.png",
          "+[UIImage imageWithContentsOfFile:] /Library/Themes/A/IconBundles/com.a-large.png",
          kOrig},
         kRedrawOfThemes});
    const ImageRef first = applicationIcon("com.a");
    EXPECT_EQ(taken(), once);
    EXPECT_EQ(drawnPixels(first), solid(12, 12, kRed));
    EXPECT_EQ(first->scale(), 3);
    EXPECT_NE(applicationIcon("com.a"), first);
    EXPECT_EQ(taken(), once);
    EXPECT_FALSE(themedIconsExist());
}

TEST_F(ApplicationIconOniOS13, ServesNothingThatWasKept) {
    settings({}, {{"enable", true}});
    storeThemedIcon("com.a.2", platformImage);
    storeThemedIcon("com.a", platformImage);
    EXPECT_NE(applicationIcon("com.a"), platformImage);
    EXPECT_TRUE(device.journal.log().empty());
}

TEST_F(ApplicationIconOniOS13, RedrawsThePlatformsIconWithoutThemes) {
    settings({}, {{"enable", true}});
    const ImageRef image = applicationIcon("com.a");
    EXPECT_EQ(taken(), joined({{kOrig, kOrig, kOrig}, kSearch, {kOrig}, kRedraw}));
    EXPECT_EQ(drawnPixels(image), solid(12, 12, kGreen));
}

TEST_F(ApplicationIconOniOS13, LogsItsStepsInOrder) {
    settings({}, {{"enable", true}, {"enableLogging", true}});
    applicationIcon("com.a");
    EXPECT_EQ(taken(),
              joined({{kOrig, kOrig, kOrig,
                       "log VELMORANTH _applicationIconImageForBundleIdentifier arg1: com.a  "
                       "Orig: " +
                           platformImage->description(),
                       kOrig, kReadPreferences,
                       "log Velmoranth.M searchforIconInIconBundlesWithLeafIdentifier: com.a",
                       kReadPreferences, kOrig},
                      kRedraw}));
}

TEST_F(ApplicationIconOniOS13, UnreadableThemeFileGivesAnEmptyImageOfThePlatformsSize) {
    settings({"A"}, {{"enable", true}});
    device.file("/Library/Themes/A/IconBundles/com.a-large.png", "no picture");
    EXPECT_EQ(drawnPixels(applicationIcon("com.a")), solid(12, 12, {0, 0, 0, 0}));
}

TEST_F(AppIcons, ApplicationIconIsThePlatformsBetweenTheTwoSystems) {
    install(1600);
    settings({"A"}, {{"enable", true}, {"enableLogging", true}});
    EXPECT_EQ(applicationIcon("com.a"), platformImage);
    EXPECT_EQ(taken(), Lines{kOrig});
}

}  // namespace
}  // namespace velmoranth::theme::application_icon_image_test
