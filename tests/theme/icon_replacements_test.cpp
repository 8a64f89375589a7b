// The replacements that answer for one icon object: the app icon's own, the home screen's image
// cache, and the view.
#include "theme/app_icon_hooks.h"
#include "theme/themed_icons.h"

#include "app_icon_fixture.h"

#include <optional>
#include <string>

namespace velmoranth::theme::icon_replacements_test {
namespace {

using platform::ImageRef;
using tests::AppIcons;
using tests::drawnPixels;
using tests::HomeScreenIcon;
using tests::joined;
using tests::kBlue;
using tests::kiOS12;
using tests::kiOS13;
using tests::kReadPreferences;
using tests::kRed;
using tests::Lines;
using tests::solid;

constexpr const char* kOrigUnmaskedIcon = "orig com.leaf 2";
constexpr const char* kOrigImage = "orig imageForIcon:icon";
constexpr const char* kOrigUnmasked = "orig unmaskedImageForIcon:icon";
constexpr const char* kOrigContents = "orig contentsImage";
const platform::Dictionary kOn{{"enable", true}};
const platform::Dictionary kLogged{{"enable", true}, {"enableLogging", true}};

// The search through theme A, which has the file.
Lines foundInA(const std::string& identifier) {
    const std::string path = "/Library/Themes/A/IconBundles/" + identifier + "-large.png";
    return {kReadPreferences, kReadPreferences, "-[NSFileManager fileExistsAtPath:] " + path,
            "+[UIImage imageWithContentsOfFile:] " + path};
}

std::string searchLine(const std::string& identifier) {
    return "log Velmoranth.M searchforIconInIconBundlesWithLeafIdentifier: " + identifier;
}

class GetUnmaskedIconImage : public AppIcons {
  protected:
    GetUnmaskedIconImage() {
        device.system.major = 12;
        device.system.minor = 0;
        install(kiOS12);
    }
};

class IconImageCache : public AppIcons {
  protected:
    IconImageCache() { install(kiOS13); }
};

class ContentsImage : public AppIcons {
  protected:
    ContentsImage() {
        device.idiom.idiom = platform::kUserInterfaceIdiomPad;
        install(kiOS13);
    }
};

TEST_F(GetUnmaskedIconImage, WithThemingOffAsksThePlatformTwice) {
    settings({"A"}, {{"enableLogging", true}});
    const ImageRef second = device.image(solid(3, 3, kBlue));
    answers = {platformImage, second};
    EXPECT_EQ(unmaskedIcon(), second);
    EXPECT_EQ(taken(), (Lines{kOrigUnmaskedIcon, kOrigUnmaskedIcon}));
}

TEST_F(GetUnmaskedIconImage, BelowTwelveGivesThePlatformsImage) {
    settings({"A"}, kLogged);
    themeIcon("A/IconBundles/com.leaf-large.png");
    device.system.major = 11;
    device.system.minor = 4;
    EXPECT_EQ(unmaskedIcon(), platformImage);
    EXPECT_EQ(taken(), (Lines{kOrigUnmaskedIcon, kOrigUnmaskedIcon}));
    EXPECT_FALSE(themedIconsExist());
}

TEST_F(GetUnmaskedIconImage, KeepsTheThemesImageUnderTheLeafIdentifier) {
    settings({"A"}, kOn);
    themeIcon("A/IconBundles/com.leaf-large.png");
    const ImageRef image = unmaskedIcon();
    EXPECT_EQ(taken(), joined({{kOrigUnmaskedIcon, kOrigUnmaskedIcon}, foundInA("com.leaf")}));
    EXPECT_EQ(drawnPixels(image), solid(6, 6, kRed));  // of the file's own size
    EXPECT_EQ(ThemedIconIdentifiers(), Lines{"com.leaf"});
    EXPECT_EQ(unmaskedIcon(7), image);
    EXPECT_EQ(taken(), Lines{"orig com.leaf 7"});
}

TEST_F(GetUnmaskedIconImage, KeepsThePlatformsImageWithoutThemes) {
    settings({}, kOn);
    EXPECT_EQ(unmaskedIcon(), platformImage);
    EXPECT_EQ(findThemedIcon("com.leaf").value_or(nullptr), platformImage);
}

TEST_F(GetUnmaskedIconImage, LogsWithAFreshAnswer) {
    settings({}, kLogged);
    const std::string line =
        "log VELMORANTH MainIcons, " + platformImage->description() + "  With Identifier: com.leaf";
    unmaskedIcon();
    EXPECT_EQ(taken(), (Lines{kOrigUnmaskedIcon, kOrigUnmaskedIcon, line, kOrigUnmaskedIcon,
                              kReadPreferences, searchLine("com.leaf"), kReadPreferences}));
    unmaskedIcon();
    EXPECT_EQ(taken(), (Lines{kOrigUnmaskedIcon, kOrigUnmaskedIcon, line}));
}

TEST_F(GetUnmaskedIconImage, NilImageAndNilIdentifierAreNotKept) {
    settings({"A"}, kOn);
    device.file("/Library/Themes/A/IconBundles/com.leaf-large.png", "no picture");
    EXPECT_EQ(unmaskedIcon(), nullptr);
    EXPECT_EQ(takenCalls(), 2U);
    icon->leaf = std::nullopt;
    EXPECT_EQ(unmaskedIcon(), platformImage);
    EXPECT_EQ(takenCalls(), 2U);
    EXPECT_TRUE(ThemedIconIdentifiers().empty());
}

TEST_F(IconImageCache, UnmaskedIconImageIsThePlatformsOniOS13) {
    settings({}, kOn);
    EXPECT_EQ(unmaskedIcon(), platformImage);
    EXPECT_EQ(taken(), Lines{kOrigUnmaskedIcon});
}

TEST_F(IconImageCache, WithThemingOffAsksThePlatformTwice) {
    settings({"A"}, {{"enableLogging", true}});
    const ImageRef second = device.image(solid(3, 3, kBlue));
    answers = {platformImage, second};
    EXPECT_EQ(imageForIcon(icon), second);
    EXPECT_EQ(taken(), (Lines{kOrigImage, kOrigImage}));
    EXPECT_EQ(unmaskedImageForIcon(icon), platformImage);
    EXPECT_EQ(taken(), (Lines{kOrigUnmasked, kOrigUnmasked}));
    storeThemedIcon("com.node", second);
    EXPECT_EQ(imageForIcon(icon), platformImage);  // kept images do not count then
}

TEST_F(IconImageCache, NilAnswerOfThePlatformPassesThrough) {
    settings({"A"}, kLogged);
    answers = {platformImage, nullptr, platformImage};
    EXPECT_EQ(imageForIcon(icon), platformImage);
    EXPECT_EQ(taken(), (Lines{kOrigImage, kOrigImage, kOrigImage}));
    EXPECT_FALSE(themedIconsExist());
}

TEST_F(IconImageCache, UnmaskedThemesANilAnswerAllTheSame) {
    settings({"A"}, kOn);
    themeIcon("A/IconBundles/com.node-large.png");
    platformImage = nullptr;
    EXPECT_EQ(drawnPixels(unmaskedImageForIcon(icon)), solid(6, 6, kRed));
    EXPECT_EQ(takenCalls(), 2U);
}

TEST_F(IconImageCache, UnmaskedPassesANilIconThrough) {
    settings({"A"}, kLogged);
    EXPECT_EQ(unmaskedImageForIcon(nullptr), platformImage);
    EXPECT_EQ(taken(), (Lines{"orig unmaskedImageForIcon:nil", "orig unmaskedImageForIcon:nil"}));
}

TEST_F(IconImageCache, ImageForANilIconIsThemedWithoutAnIdentifier) {
    settings({}, kOn);
    EXPECT_EQ(imageForIcon(nullptr), platformImage);
    EXPECT_EQ(takenCalls(), 3U);
    EXPECT_TRUE(ThemedIconIdentifiers().empty());
}

TEST_F(IconImageCache, KeepsTheThemesImageUnderTheNodeIdentifierForBoth) {
    settings({"A"}, kOn);
    themeIcon("A/IconBundles/com.node-large.png");
    const ImageRef image = imageForIcon(icon);
    EXPECT_EQ(taken(), joined({{kOrigImage, kOrigImage, kOrigImage}, foundInA("com.node")}));
    EXPECT_EQ(drawnPixels(image), solid(6, 6, kRed));
    EXPECT_EQ(ThemedIconIdentifiers(), Lines{"com.node"});
    EXPECT_EQ(imageForIcon(icon), image);
    EXPECT_EQ(taken(), (Lines{kOrigImage, kOrigImage}));
    EXPECT_EQ(unmaskedImageForIcon(icon), image);
    EXPECT_EQ(taken(), Lines{kOrigUnmasked});
}

TEST_F(IconImageCache, UnmaskedImageServesTheMaskedRequest) {
    settings({"A"}, kOn);
    themeIcon("A/IconBundles/com.node-large.png");
    const ImageRef image = unmaskedImageForIcon(icon);
    EXPECT_EQ(taken(), joined({{kOrigUnmasked, kOrigUnmasked}, foundInA("com.node")}));
    EXPECT_EQ(imageForIcon(icon), image);
    EXPECT_EQ(taken(), (Lines{kOrigImage, kOrigImage}));
}

TEST_F(IconImageCache, SharesItsImagesWithTheOtherReplacements) {
    device.idiom.idiom = platform::kUserInterfaceIdiomPad;
    settings({}, kOn);
    icon->unique = "com.node";
    const ImageRef kept = device.image(solid(3, 3, kBlue));
    storeThemedIcon("com.node", kept);
    EXPECT_EQ(imageForIcon(icon), kept);
    EXPECT_EQ(unmaskedImageForIcon(icon), kept);
    EXPECT_EQ(contentsImage(), kept);
}

TEST_F(IconImageCache, CalendarIsThePlatformsExceptUnmasked) {
    settings({"A"}, kOn);
    icon->node = "com.apple.mobilecal";
    themeIcon("A/IconBundles/com.apple.mobilecal-large.png");
    EXPECT_EQ(imageForIcon(icon), platformImage);
    EXPECT_EQ(taken(), (Lines{kOrigImage, kOrigImage, kOrigImage}));
    EXPECT_FALSE(themedIconsExist());
    EXPECT_EQ(drawnPixels(unmaskedImageForIcon(icon)), solid(6, 6, kRed));
    EXPECT_EQ(imageForIcon(icon), platformImage);
}

TEST_F(IconImageCache, CalendarIsLoggedBeforeItIsPassedThrough) {
    settings({"A"}, kLogged);
    icon->node = "com.apple.mobilecal";
    EXPECT_EQ(imageForIcon(icon), platformImage);
    EXPECT_EQ(taken(), (Lines{kOrigImage, kOrigImage, kOrigImage,
                              "log VELMORANTH MainIcons, " + platformImage->description() +
                                  "  With Identifier: com.apple.mobilecal",
                              kOrigImage}));
}

TEST_F(IconImageCache, LogsItsStepsInOrder) {
    settings({}, kLogged);
    const std::string line =
        "log VELMORANTH MainIcons, " + platformImage->description() + "  With Identifier: com.node";
    imageForIcon(icon);
    EXPECT_EQ(taken(), (Lines{kOrigImage, kOrigImage, kOrigImage, line, kOrigImage,
                              kReadPreferences, searchLine("com.node"), kReadPreferences}));
    imageForIcon(icon);
    EXPECT_EQ(taken(), (Lines{kOrigImage, kOrigImage, kOrigImage, line}));
    unmaskedImageForIcon(icon);
    EXPECT_EQ(taken(), (Lines{kOrigUnmasked, kOrigUnmasked, line}));
    const auto other = std::make_shared<HomeScreenIcon>();
    other->node = "com.other";
    unmaskedImageForIcon(other);
    EXPECT_EQ(taken(),
              (Lines{kOrigUnmasked, kOrigUnmasked,
                     "log VELMORANTH MainIcons, " + platformImage->description() +
                         "  With Identifier: com.other",
                     kOrigUnmasked, kReadPreferences, searchLine("com.other"), kReadPreferences}));
}

TEST_F(IconImageCache, UnreadableThemeFileGivesNilAndKeepsNothing) {
    settings({"A"}, {{"enable", true}, {"enableIconMask", true}, {"enableOverlay", true}});
    device.file("/Library/Themes/A/IconBundles/com.node-large.png", "no picture");
    device.png("/Library/Themes/A/com.apple.mobileicons.framework/AppIconMask.png",
               solid(12, 12, {0, 0, 0, 255}));
    device.png("/Library/Themes/A/Velmoranth/iPhoneOverlay.png", solid(6, 6, kBlue));
    EXPECT_EQ(imageForIcon(icon), nullptr);
    EXPECT_EQ(unmaskedImageForIcon(icon), nullptr);
    EXPECT_TRUE(ThemedIconIdentifiers().empty());
}

TEST_F(ContentsImage, IsThePlatformsOnAPhone) {
    settings({"A"}, kLogged);
    themeIcon("A/IconBundles/com.unique-large.png");
    const auto isPlatforms = [&] {
        EXPECT_EQ(contentsImage(), platformImage);
        EXPECT_EQ(taken(), (Lines{kOrigContents, kOrigContents}));
    };
    device.idiom.idiom = platform::kUserInterfaceIdiomPhone;
    isPlatforms();
    device.idiom.idiom = 2;
    isPlatforms();
    device.idiom.idiom = platform::kUserInterfaceIdiomPad;
    device.idiom.responds = false;
    isPlatforms();
    EXPECT_FALSE(themedIconsExist());
}

TEST_F(ContentsImage, IsThePlatformsWithThemingOff) {
    settings({"A"}, {{"enableLogging", true}});
    const ImageRef second = device.image(solid(3, 3, kBlue));
    answers = {platformImage, second};
    EXPECT_EQ(contentsImage(), second);
    EXPECT_EQ(taken(), (Lines{kOrigContents, kOrigContents}));
}

TEST_F(ContentsImage, NilAnswerOfThePlatformPassesThrough) {
    settings({"A"}, kLogged);
    answers = {platformImage, nullptr, platformImage};
    EXPECT_EQ(contentsImage(), platformImage);
    EXPECT_EQ(taken(), (Lines{kOrigContents, kOrigContents, kOrigContents}));
}

TEST_F(ContentsImage, KeepsTheThemesImageUnderTheUniqueIdentifier) {
    settings({"A"}, kOn);
    themeIcon("A/IconBundles/com.unique-large.png");
    const ImageRef image = contentsImage();
    EXPECT_EQ(taken(),
              joined({{kOrigContents, kOrigContents, kOrigContents}, foundInA("com.unique")}));
    EXPECT_EQ(drawnPixels(image), solid(6, 6, kRed));
    EXPECT_EQ(ThemedIconIdentifiers(), Lines{"com.unique"});
    EXPECT_EQ(contentsImage(), image);
    EXPECT_EQ(taken(), (Lines{kOrigContents, kOrigContents}));
}

TEST_F(ContentsImage, LogsItsStepsInOrder) {
    settings({}, kLogged);
    const std::string line = "log VELMORANTH SBIconImageView, " + platformImage->description() +
                             " contentsImage: com.unique";
    EXPECT_EQ(contentsImage(), platformImage);
    EXPECT_EQ(taken(), (Lines{kOrigContents, kOrigContents, kOrigContents, line, kOrigContents,
                              kReadPreferences, searchLine("com.unique"), kReadPreferences}));
    EXPECT_EQ(contentsImage(), platformImage);
    EXPECT_EQ(taken(), (Lines{kOrigContents, kOrigContents, kOrigContents, line}));
}

TEST_F(ContentsImage, UnreadableThemeFileGivesThePlatformsImageAndKeepsNothing) {
    settings({"A"}, kOn);
    device.file("/Library/Themes/A/IconBundles/com.unique-large.png", "no picture");
    EXPECT_EQ(contentsImage(), platformImage);
    EXPECT_EQ(takenCalls(), 4U);
    EXPECT_TRUE(ThemedIconIdentifiers().empty());
}

TEST_F(ContentsImage, NilIdentifierGivesThePlatformsImageAndKeepsNothing) {
    settings({"A"}, kOn);
    themeIcon("A/IconBundles/(null)-large.png");
    icon->unique = std::nullopt;
    EXPECT_EQ(contentsImage(), platformImage);
    EXPECT_EQ(takenCalls(), 4U);
    view->shown = nullptr;
    EXPECT_EQ(contentsImage(), platformImage);
    EXPECT_EQ(takenCalls(), 4U);
    EXPECT_TRUE(ThemedIconIdentifiers().empty());
    EXPECT_TRUE(themedIconsExist());
}

}  // namespace
}  // namespace velmoranth::theme::icon_replacements_test
