// Which files the dock's background is taken from, in which order, as a pad is held, and what is
// done with the view that shows it.
#include "chrome_images_fixture.h"

#include <limits>

namespace velmoranth::tests::chrome_dock_test {

using imaging::ChromeImages;
using platform::ImageRef;
using platform::ImageViewRef;

namespace {

constexpr platform::Rect kDockFrame{{0, 0}, {375, 96}};

ImageRef dockImage() {
    return ChromeImages::SBDockImgWithFrame(kDockFrame)->image();
}

Lines dockFiles(const std::string& name, const std::string& last) {
    return inThemes({"A/Velmoranth/" + name, "A/Velmoranth" + name, "A/" + kSpringBoard + last});
}

const Lines kPhoneDockFiles = dockFiles("SBDockBGiphone.png", "SBDockBG@2x.png");
const Lines kUprightDockFiles = dockFiles("SBDockBGipad.png", "SBDockBG-Portrait@2x~ipad.png");
const Lines kSidewaysDockFiles = dockFiles("SBDockBGipad.png", "SBDockBG-Landscape@2x~ipad.png");

// UIDeviceOrientation: unknown, both upright ones, face up, face down, and what is none.
constexpr std::array kUpright{0, 1, 2, 5, 6, 7, -1, -3, std::numeric_limits<int>::max()};

}  // namespace

class DockImage : public ChromeImagesOnDevice {};

TEST_F(DockImage, OfAPhoneIsSearchedForInThreePlaces) {
    expectOrder(kPhoneDockFiles, dockImage);
    device.idiom.heldAs = platform::kDeviceOrientationLandscapeLeft;
    expectOrder(kPhoneDockFiles, dockImage);
    EXPECT_EQ(device.idiom.orientationReads, 0);
}

TEST_F(DockImage, OfAPadHeldUprightIsSearchedForInThreePlaces) {
    makePad();
    for (const int orientation : kUpright) {
        SCOPED_TRACE(orientation);
        device.idiom.heldAs = orientation;
        expectOrder(kUprightDockFiles, dockImage);
    }
}

TEST_F(DockImage, OfAPadHeldSidewaysIsSearchedForInThreePlaces) {
    makePad();
    for (const int orientation : {3, 4}) {
        SCOPED_TRACE(orientation);
        device.idiom.heldAs = orientation;
        expectOrder(kSidewaysDockFiles, dockImage);
    }
}

TEST_F(DockImage, AnUprightImageAloneShowsNothingSideways) {
    makePad();
    device.png(kUprightDockFiles[2], solid(5, 5, {}));
    for (const int orientation : {1, 5}) {
        device.idiom.heldAs = orientation;
        EXPECT_EQ(drawnPixels(dockImage()), solid(5, 5, {})) << orientation;
    }
    for (const int orientation : {3, 4}) {
        device.idiom.heldAs = orientation;
        EXPECT_EQ(dockImage(), nullptr) << orientation;
    }
}

TEST_F(DockImage, TheOrientationIsReadOnceAndOnlyAfterTwoFailures) {
    makePad();
    recordDevice();
    (void)ChromeImages::SBDockImgWithFrame(kDockFrame);
    EXPECT_EQ(
        device.journal.lines(),
        (Lines{"-[UIImageView init]", "-[UIView setFrame:] UIImageView (0, 10) 375×96",
               "-[UIDevice respondsToSelector:] userInterfaceIdiom",
               "-[UIDevice userInterfaceIdiom]", kReadPreferences,
               "+[UIImage imageWithContentsOfFile:] " + kUprightDockFiles[0],
               "-[UIImageView setImage:] UIImageView nil", kReadPreferences,
               "+[UIImage imageWithContentsOfFile:] " + kUprightDockFiles[1],
               "-[UIImageView setImage:] UIImageView nil", "-[UIDevice orientation]",
               kReadPreferences, "+[UIImage imageWithContentsOfFile:] " + kUprightDockFiles[2],
               "-[UIImageView setImage:] UIImageView nil"}));
    for (const std::size_t i : {1U, 0U}) {
        device.idiom.orientationReads = 0;
        device.png(kUprightDockFiles[i], solid(2, 2, {}));
        EXPECT_NE(dockImage(), nullptr);
        EXPECT_EQ(device.idiom.orientationReads, 0) << kUprightDockFiles[i];
    }
}

TEST_F(DockImage, OnlyAPadIsAPad) {
    for (const int idiom : kNoPads) {
        device.idiom.idiom = idiom;
        (void)dockImage();
        EXPECT_EQ(takenLoads().back(),
                  "+[UIImage imageWithContentsOfFile:] " + kPhoneDockFiles.back())
            << idiom;
    }
    makePad();
    device.idiom.responds = false;
    device.idiom.heldAs = 3;
    (void)dockImage();
    EXPECT_EQ(takenLoads().back(), "+[UIImage imageWithContentsOfFile:] " + kPhoneDockFiles.back());
}

TEST_F(DockImage, TheSelectedThemesFolderThenEachTheme) {
    activate({"A", "B"});
    expectOrder(inThemes({"A/Velmoranth/SBDockBGiphone.png", "A/VelmoranthSBDockBGiphone.png",
                          "B/VelmoranthSBDockBGiphone.png", "A/" + kSpringBoard + "SBDockBG@2x.png",
                          "B/" + kSpringBoard + "SBDockBG@2x.png"}),
                dockImage);
    makePad();
    device.idiom.heldAs = 4;
    expectOrder(inThemes({"A/Velmoranth/SBDockBGipad.png", "A/VelmoranthSBDockBGipad.png",
                          "B/VelmoranthSBDockBGipad.png",
                          "A/" + kSpringBoard + "SBDockBG-Landscape@2x~ipad.png",
                          "B/" + kSpringBoard + "SBDockBG-Landscape@2x~ipad.png"}),
                dockImage);
}

TEST_F(DockImage, WithoutAnActiveThemeLooksAtTheRootAlone) {
    activate({});
    expectOrder({"/SBDockBGiphone.png"}, dockImage);
    makePad();
    expectOrder({"/SBDockBGipad.png"}, dockImage);
}

TEST_F(DockImage, IsMovedDownByTenPoints) {
    const ImageViewRef view = ChromeImages::SBDockImgWithFrame({{0, 0}, {375, 96}});
    ASSERT_NE(view, nullptr);
    EXPECT_EQ(view->frame(), (platform::Rect{{0, 10}, {375, 96}}));
    EXPECT_EQ(view->tag(), 0);
    EXPECT_EQ(view->image(), nullptr);
    makePad();
    EXPECT_EQ(ChromeImages::SBDockImgWithFrame({{-3, -20.5}, {1024.25, 0}})->frame(),
              (platform::Rect{{-3, -10.5}, {1024.25, 0}}));
}

TEST_F(DockImage, IsFramedAlikeWithAnImage) {
    device.png(kPhoneDockFiles[0], solid(4, 9, {}));
    const ImageViewRef view = ChromeImages::SBDockImgWithFrame({{7, 8}, {9, 10}});
    EXPECT_EQ(view->frame(), (platform::Rect{{7, 18}, {9, 10}}));
    EXPECT_NE(view->image(), nullptr);
    EXPECT_NE(view, ChromeImages::SBDockImgWithFrame({{7, 8}, {9, 10}}));
}

}  // namespace velmoranth::tests::chrome_dock_test
