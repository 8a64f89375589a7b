// The replacement for the miniature icons inside a folder icon.
#include "hooks/springboard/folder_hooks.h"
#include "theme/themed_icons.h"

#include "chrome_fixture.h"

#include <algorithm>
#include <deque>

namespace velmoranth::hooks::folder_miniatures_test {
namespace {

using platform::Dictionary;
using platform::ImageRef;
using platform::SBIconRef;
using tests::drawnPixels;
using tests::kBlue;
using tests::kGreen;
using tests::kReadPreferences;
using tests::kRed;
using tests::Lines;
using tests::solid;

constexpr const char* kOrig = "orig gridCellImageForIcon: icon";
constexpr const char* kOrigNil = "orig gridCellImageForIcon: nil";
const Dictionary kOn{{"enable", true}};
const Dictionary kLogged{{"enable", true}, {"enableLogging", true}};
const std::string kThemesFile = "/Library/Themes/A/IconBundles/com.node-large.png";

struct FolderImageCache final : platform::SBFolderIconImageCache {
    [[nodiscard]] std::string className() const override { return "SBFolderIconImageCache"; }
};

class FolderMiniatures : public tests::ChromeProcess {
  protected:
    FolderMiniatures() {
        addMethod(
            "SBFolderIconImageCache", "gridCellImageForIcon:",
            std::function<ImageRef(platform::SBFolderIconImageCache&, SBIconRef)>(
                [this](platform::SBFolderIconImageCache&, const SBIconRef& asked) {
                    original("gridCellImageForIcon: " + std::string(asked == nullptr ? "nil"
                                                                    : asked == icon  ? "icon"
                                                                                     : "other"));
                    if (answers.empty()) {
                        return platformImage;
                    }
                    ImageRef next = answers.front();
                    answers.pop_front();
                    return next;
                }));
        install();
    }

    ImageRef miniature(const SBIconRef& asked) {
        return device.runtime.send<ImageRef, SBIconRef>(cache, "gridCellImageForIcon:", asked);
    }

    // What the mask and the overlay of theme A do is seen in the size and the colour.
    void themeMaskAndOverlay() {
        device.png("/Library/Themes/A/com.apple.mobileicons.framework/AppIconMask.png",
                   solid(6, 6, {255, 255, 255, 255}));
        device.png("/Library/Themes/A/Velmoranth/iPhoneOverlay.png", solid(6, 6, kBlue));
    }

    [[nodiscard]] std::string mainLine(const ImageRef& image) const {
        return "log VELMORANTH MainIcons, " +
               (image == nullptr ? std::string("(null)") : image->description()) +
               "  With Identifier: " + icon->node.value_or("(null)");
    }

    FolderImageCache cache;
    ImageRef platformImage = device.image(solid(12, 12, kGreen));
    // What the next calls of the platform's method give instead.
    std::deque<ImageRef> answers;
};

TEST_F(FolderMiniatures, WithThemingOffAskThePlatformTwice) {
    settings({"A"}, {{"enableLogging", true}, {"enableIconMask", true}, {"enableOverlay", true}});
    themePng("A/IconBundles/com.node-large.png");
    themeMaskAndOverlay();
    const ImageRef second = device.image(solid(3, 3, kBlue));
    theme::storeThemedIcon("com.node", device.image(solid(4, 4, kRed)));
    answers = {platformImage, second};
    EXPECT_EQ(miniature(icon), second);
    EXPECT_EQ(taken(), (Lines{kOrig, kOrig}));
}

TEST_F(FolderMiniatures, NilIconIsPassedThrough) {
    settings({"A"}, kLogged);
    themePng("A/IconBundles/(null)-large.png");
    const ImageRef second = device.image(solid(3, 3, kBlue));
    answers = {platformImage, second};
    EXPECT_EQ(miniature(nullptr), second);
    EXPECT_EQ(taken(), (Lines{kOrigNil, kOrigNil}));
}

TEST_F(FolderMiniatures, ThemedIconIsTakenAsItWasKept) {
    settings({"A"}, {{"enable", true}, {"enableIconMask", true}, {"enableOverlay", true}});
    themePng("A/IconBundles/com.node-large.png");
    themeMaskAndOverlay();
    const ImageRef kept = device.image(solid(3, 3, kBlue));
    theme::storeThemedIcon("com.node", kept);
    EXPECT_EQ(miniature(icon), kept);
    EXPECT_EQ(taken(), Lines{kOrig});
}

TEST_F(FolderMiniatures, NodeIdentifierIsTheOneThatCounts) {
    settings({}, kOn);
    const ImageRef kept = device.image(solid(3, 3, kBlue));
    theme::storeThemedIcon("com.leaf", kept);
    theme::storeThemedIcon("com.unique", kept);
    theme::storeThemedIcon("com.node.2", kept);
    EXPECT_EQ(miniature(icon), platformImage);
}

TEST_F(FolderMiniatures, AreThemedAnewAndKeptNowhere) {
    settings({"A"}, kOn);
    themePng("A/IconBundles/com.node-large.png");
    const Lines search{kOrig,
                       kOrig,
                       kReadPreferences,
                       kReadPreferences,
                       "-[NSFileManager fileExistsAtPath:] " + kThemesFile,
                       "+[UIImage imageWithContentsOfFile:] " + kThemesFile};
    EXPECT_EQ(drawnPixels(miniature(icon)), solid(6, 6, kRed));
    EXPECT_EQ(taken(), search);
    EXPECT_FALSE(theme::themedIconsExist());
    EXPECT_EQ(drawnPixels(miniature(icon)), solid(6, 6, kRed));
    EXPECT_EQ(taken(), search);
    EXPECT_FALSE(theme::themedIconsExist());
}

TEST_F(FolderMiniatures, KeptIconsOfOthersStayAsTheyAre) {
    settings({"A"}, kOn);
    themePng("A/IconBundles/com.node-large.png");
    theme::storeThemedIcon("com.other", platformImage);
    EXPECT_EQ(drawnPixels(miniature(icon)), solid(6, 6, kRed));
    EXPECT_EQ(theme::ThemedIconIdentifiers(), Lines{"com.other"});
}

TEST_F(FolderMiniatures, WithoutAFileAreThePlatformsSecondImage) {
    settings({"A"}, kOn);
    const ImageRef second = device.image(solid(3, 3, kBlue));
    answers = {platformImage, second, platformImage};
    EXPECT_EQ(miniature(icon), second);
    EXPECT_EQ(takenCalls(), (Lines{kOrig, kOrig}));
}

TEST_F(FolderMiniatures, MaskAndOverlayAreForThoseThatAreNotKept) {
    themePng("A/IconBundles/com.node-large.png");
    themeMaskAndOverlay();
    for (const bool masked : {false, true}) {
        for (const bool overlaid : {false, true}) {
            SCOPED_TRACE((masked ? "masked " : "whole ") + std::string(overlaid ? "overlaid" : ""));
            settings({"A"},
                     {{"enable", true}, {"enableIconMask", masked}, {"enableOverlay", overlaid}});
            const ImageRef image = miniature(icon);
            EXPECT_EQ(device.journal.count("CGImageCreateWithMask"), masked ? 1U : 0U);
            EXPECT_EQ(device.journal.count("log UpdateIcons mask is "), masked ? 1U : 0U);
            EXPECT_EQ(device.journal.count("UIGraphicsGetImageFromCurrentImageContext"),
                      overlaid ? 1U : 0U);
            EXPECT_EQ(device.journal.count("orig "), 2U);
            if (!overlaid) {
                // A white mask hides everything.
                EXPECT_EQ(drawnPixels(image),
                          solid(6, 6, masked ? tests::Pixel{0, 0, 0, 0} : kRed));
            } else {
                EXPECT_EQ(drawnPixels(image).at(3, 3), kBlue);
            }
        }
    }
}

TEST_F(FolderMiniatures, MaskComesBeforeTheOverlay) {
    themeMaskAndOverlay();
    settings({"A"}, {{"enable", true}, {"enableIconMask", true}, {"enableOverlay", true}});
    miniature(icon);
    EXPECT_LT(device.journal.place("CGImageCreateWithMask "),
              device.journal.place("UIGraphicsGetImageFromCurrentImageContext"));
}

TEST_F(FolderMiniatures, WithoutAMaskOfTheThemeStayWhole) {
    settings({"A"}, {{"enable", true}, {"enableIconMask", true}});
    themePng("A/IconBundles/com.node-large.png");
    EXPECT_EQ(drawnPixels(miniature(icon)), solid(6, 6, kRed));
    EXPECT_EQ(device.journal.count("CGImageCreateWithMask"), 0U);
    EXPECT_EQ(device.journal.log(), Lines{"UpdateIcons mask is (null)"});
}

TEST_F(FolderMiniatures, UnreadableFileGivesThePlatformsThirdImage) {
    settings({"A"}, kOn);
    device.file(kThemesFile, "no picture");
    const ImageRef third = device.image(solid(3, 3, kBlue));
    answers = {platformImage, platformImage, third};
    EXPECT_EQ(miniature(icon), third);
    EXPECT_EQ(takenCalls(), (Lines{kOrig, kOrig, kOrig}));
    EXPECT_FALSE(theme::themedIconsExist());
}

TEST_F(FolderMiniatures, NothingLeftByMaskAndOverlayGivesThePlatformsImage) {
    settings({"A"}, {{"enable", true}, {"enableIconMask", true}, {"enableOverlay", true}});
    device.file(kThemesFile, "no picture");
    themeMaskAndOverlay();
    EXPECT_EQ(miniature(icon), platformImage);
    EXPECT_EQ(device.journal.count("orig "), 3U);
}

TEST_F(FolderMiniatures, NilImageOfThePlatformIsThemedAllTheSame) {
    settings({"A"}, kOn);
    themePng("A/IconBundles/com.node-large.png");
    platformImage = nullptr;
    EXPECT_EQ(drawnPixels(miniature(icon)), solid(6, 6, kRed));
    device.remove(kThemesFile);
    EXPECT_EQ(miniature(icon), nullptr);
}

TEST_F(FolderMiniatures, NilIdentifierIsSearchedFor) {
    settings({"A"}, kOn);
    theme::storeThemedIcon("com.other", platformImage);
    icon->node = std::nullopt;
    EXPECT_EQ(miniature(icon), platformImage);
    EXPECT_EQ(
        device.journal.count(
            "-[NSFileManager fileExistsAtPath:] /Library/Themes/A/IconBundles/(null)-large.png"),
        1U);
}

TEST_F(FolderMiniatures, AreLoggedWithAFreshImageBeforeTheSearch) {
    settings({}, kLogged);
    const ImageRef second = device.image(solid(3, 3, kBlue));
    answers = {platformImage, second};
    EXPECT_EQ(miniature(icon), platformImage);
    EXPECT_EQ(taken(),
              (Lines{kOrig, kOrig, mainLine(second), kOrig, kReadPreferences,
                     "log Velmoranth.M searchforIconInIconBundlesWithLeafIdentifier: com.node",
                     kReadPreferences}));
}

TEST_F(FolderMiniatures, KeptIconsAreLoggedToo) {
    settings({}, kLogged);
    theme::storeThemedIcon("com.node", platformImage);
    answers = {platformImage, nullptr};
    EXPECT_EQ(miniature(icon), platformImage);
    EXPECT_EQ(taken(), (Lines{kOrig, kOrig, mainLine(nullptr)}));
}

}  // namespace
}  // namespace velmoranth::hooks::folder_miniatures_test
