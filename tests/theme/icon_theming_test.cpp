#include "theme/icon_theming.h"

#include "theme/themed_icons.h"

#include "app_icon_fixture.h"

#include <optional>
#include <string>

namespace velmoranth::theme::icon_theming_test {
namespace {

using platform::ImageRef;
using tests::AppIcons;
using tests::drawnPixels;
using tests::kBlue;
using tests::kGreen;
using tests::kReadPreferences;
using tests::kRed;
using tests::Lines;
using tests::Pixel;
using tests::solid;

using IconTheming = AppIcons;

constexpr const char* kMask =
    "/Library/Themes/A/Bundles/com.apple.mobileicons.framework/AppIconMask.png";
constexpr const char* kOverlay = "/Library/Themes/A/Velmoranth/iPhoneOverlay.png";
constexpr Pixel kHiding{255, 255, 255, 255};
constexpr Pixel kShowing{0, 0, 0, 255};

TEST_F(IconTheming, WithBothSwitchesOffGivesWhatTheSearchGives) {
    settings({"A"}, {{"enable", true}});
    device.png(kMask, solid(12, 12, kHiding));
    device.png(kOverlay, solid(6, 6, kRed));
    EXPECT_EQ(themedIcon("com.a", platformImage), platformImage);
    EXPECT_EQ(
        taken(),
        (Lines{
            kReadPreferences, kReadPreferences,
            "-[NSFileManager fileExistsAtPath:] /Library/Themes/A/IconBundles/com.a-large.png"}));
}

TEST_F(IconTheming, MasksTheThemesIcon) {
    settings({"A"}, {{"enableIconMask", true}});
    themeIcon("A/IconBundles/com.a-large.png");
    tests::Pixels mask = solid(6, 6, kHiding);
    mask.at(2, 3) = kShowing;
    device.png(kMask, mask);
    tests::Pixels expected = solid(6, 6, {0, 0, 0, 0});
    expected.at(2, 3) = kRed;
    EXPECT_EQ(drawnPixels(themedIcon("com.a", platformImage)), expected);
}

TEST_F(IconTheming, MasksThePlatformsIconToo) {
    settings({"A"}, {{"enableIconMask", true}});
    device.png(kMask, solid(12, 12, kHiding));
    const ImageRef image = themedIcon("com.a", platformImage);
    EXPECT_EQ(drawnPixels(image), solid(12, 12, {0, 0, 0, 0}));
    EXPECT_EQ(image->scale(), 1);
}

TEST_F(IconTheming, WithoutAMaskFileMasksNothing) {
    settings({"A"}, {{"enableIconMask", true}});
    EXPECT_EQ(themedIcon("com.a", platformImage), platformImage);
    EXPECT_EQ(device.journal.log(), Lines{"UpdateIcons mask is (null)"});
    EXPECT_EQ(device.journal.count("CGImageMaskCreate"), 0U);
}

TEST_F(IconTheming, OverlaysThePlatformsIcon) {
    settings({"A"}, {{"enableOverlay", true}});
    device.png(kOverlay, solid(6, 6, kBlue));
    EXPECT_EQ(drawnPixels(themedIcon("com.a", platformImage)), solid(12, 12, kBlue));
    EXPECT_TRUE(device.journal.log().empty());
}

TEST_F(IconTheming, WithoutAnOverlayFileDrawsNothing) {
    settings({"A"}, {{"enableOverlay", true}});
    EXPECT_EQ(themedIcon("com.a", platformImage), platformImage);
    EXPECT_EQ(device.journal.log(), Lines{"LOADEDIcon no overlay stop redraw"});
}

// The mask hides everything, so the overlay shows only when it comes after.
TEST_F(IconTheming, OverlayLiesOverTheMaskedIcon) {
    settings({"A"}, {{"enableIconMask", true}, {"enableOverlay", true}});
    themeIcon("A/IconBundles/com.a-large.png");
    device.png(kMask, solid(6, 6, kHiding));
    device.png(kOverlay, solid(3, 3, kBlue));
    const ImageRef image = themedIcon("com.a", platformImage);
    EXPECT_EQ(image->size(), (platform::Size{6, 6}));
    EXPECT_EQ(drawnPixels(image), solid(18, 18, kBlue));
    const auto at = [&](const std::string& prefix) { return device.journal.place(prefix); };
    EXPECT_LT(at("+[UIImage imageWithContentsOfFile:] /Library/Themes/A/IconBundles/"),
              at(std::string("+[UIImage imageWithContentsOfFile:] ") + kMask));
    EXPECT_LT(at("log UpdateIcons mask is "), at("CGImageMaskCreate"));
    EXPECT_LT(at("CGImageCreateWithMask"),
              at(std::string("+[UIImage imageWithContentsOfFile:] ") + kOverlay));
    EXPECT_LT(at(std::string("+[UIImage imageWithContentsOfFile:] ") + kOverlay),
              at("UIGraphicsBeginImageContextWithOptions 6×6 NO 0"));
}

TEST_F(IconTheming, NilImageStaysNilThroughMaskAndOverlay) {
    settings({"A"}, {{"enableIconMask", true}, {"enableOverlay", true}});
    device.file("/Library/Themes/A/IconBundles/com.a-large.png", "no picture");
    device.png(kMask, solid(6, 6, kShowing));
    device.png(kOverlay, solid(3, 3, kBlue));
    EXPECT_EQ(themedIcon("com.a", platformImage), nullptr);
    EXPECT_EQ(themedIcon(std::nullopt, nullptr), nullptr);
}

TEST_F(IconTheming, SwitchesAreThoseOfTheLoadedRecord) {
    settings({"A"}, {{"enableOverlay", true}});
    device.png(kOverlay, solid(6, 6, kBlue));
    device.activeThemes({"A"}, {{"enableOverlay", false}, {"enableIconMask", true}});
    EXPECT_EQ(drawnPixels(themedIcon("com.a", platformImage)), solid(12, 12, kBlue));
    EXPECT_TRUE(device.journal.log().empty());
}

TEST_F(IconTheming, ReplacementsMaskAndOverlayBeforeTheyRedraw) {
    install(tests::kiOS12);
    settings({"A"}, {{"enable", true}, {"enableIconMask", true}, {"enableOverlay", true}});
    themeIcon("A/IconBundles/com.a-large.png");
    device.png(kMask, solid(6, 6, kHiding));
    device.png(kOverlay, solid(3, 3, kBlue));
    const ImageRef image = applicationIcon("com.a");
    EXPECT_EQ(device.journal.linesWith("UIGraphicsBeginImageContextWithOptions"),
              (Lines{"UIGraphicsBeginImageContextWithOptions 6×6 NO 0",
                     "UIGraphicsBeginImageContextWithOptions 4×4 NO 0"}));
    EXPECT_EQ(drawnPixels(image), solid(12, 12, kBlue));
    icon->leaf = "com.a";
    EXPECT_EQ(drawnPixels(unmaskedIcon()), solid(18, 18, kBlue));
    icon->node = "com.b";
    EXPECT_EQ(drawnPixels(imageForIcon(icon)), solid(36, 36, kBlue));
}

TEST(ThemedIcons, AreMadeEmptyAndOnlyWhenAbsent) {
    EXPECT_FALSE(themedIconsExist());
    EXPECT_TRUE(ThemedIconIdentifiers().empty());
    EXPECT_EQ(findThemedIcon("a").value_or(nullptr), nullptr);
    EXPECT_FALSE(isThemedIcon("a"));
    createThemedIconsWhenAbsent();
    EXPECT_TRUE(themedIconsExist());
    EXPECT_TRUE(ThemedIconIdentifiers().empty());
    const tests::TestDevice device;
    const ImageRef image = device.image(solid(3, 3, kGreen));
    storeThemedIcon("a", image);
    createThemedIconsWhenAbsent();
    EXPECT_EQ(ThemedIconIdentifiers(), Lines{"a"});
    EXPECT_EQ(findThemedIcon("a").value_or(nullptr), image);
}

TEST(ThemedIcons, HoldAKeyExactlyWhenTheyHoldItsImage) {
    const tests::TestDevice device;
    const ImageRef image = device.image(solid(3, 3, kGreen));
    storeThemedIcon("b", image);
    storeThemedIcon("a", image);
    storeThemedIcon("c", nullptr);
    storeThemedIcon(std::nullopt, image);
    EXPECT_EQ(ThemedIconIdentifiers(), (Lines{"b", "a"}));
    EXPECT_TRUE(isThemedIcon("a"));
    EXPECT_FALSE(isThemedIcon("A"));
    EXPECT_FALSE(isThemedIcon("c"));
    EXPECT_FALSE(isThemedIcon(std::nullopt));
    EXPECT_EQ(findThemedIcon("c").value_or(nullptr), nullptr);
    EXPECT_EQ(findThemedIcon(std::nullopt).value_or(nullptr), nullptr);
}

TEST(ThemedIcons, AnImageIsFoundByOneKeyWhereAnotherIsListed) {
    const tests::TestDevice device;
    const ImageRef a = device.image(solid(3, 3, kGreen));
    const ImageRef b = device.image(solid(3, 3, kBlue));
    EXPECT_EQ(findThemedIcon("a", "a"), std::nullopt) << "before there are any";
    storeThemedIcon("a", a);
    storeThemedIcon("b", b);
    EXPECT_EQ(findThemedIcon("a", "b"), std::optional(b));
    EXPECT_EQ(findThemedIcon("a", "c"), std::optional<ImageRef>(nullptr))
        << "listed, without image";
    EXPECT_EQ(findThemedIcon("a", std::nullopt), std::optional<ImageRef>(nullptr));
    EXPECT_EQ(findThemedIcon("c", "b"), std::nullopt);
    EXPECT_EQ(findThemedIcon(std::nullopt, "b"), std::nullopt);
}

TEST(ThemedIcons, AKeyStoredAgainIsListedAgainWithItsNewImage) {
    const tests::TestDevice device;
    const ImageRef old = device.image(solid(3, 3, kGreen));
    const std::weak_ptr<platform::Image> image = [&] {
        const ImageRef first = device.image(solid(3, 3, kBlue));
        storeThemedIcon("a", first);
        return first;
    }();
    EXPECT_FALSE(image.expired());
    storeThemedIcon("b", old);
    storeThemedIcon("a", old);
    EXPECT_TRUE(image.expired());
    EXPECT_EQ(ThemedIconIdentifiers(), (Lines{"a", "b", "a"}));
    EXPECT_EQ(findThemedIcon("a"), std::optional(old));
}

TEST(ThemedIcons, AreGoneOnceDropped) {
    const tests::TestDevice device;
    storeThemedIcon("a", device.image(solid(3, 3, kGreen)));
    dropThemedIcons();
    EXPECT_FALSE(themedIconsExist());
    EXPECT_FALSE(isThemedIcon("a"));
    EXPECT_EQ(findThemedIcon("a").value_or(nullptr), nullptr);
}

}  // namespace
}  // namespace velmoranth::theme::icon_theming_test
