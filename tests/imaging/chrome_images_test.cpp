// Which files folder, badge and page dots are taken from, in which order, and what is done with the
// view that shows them.
#include "imaging/view_tags.h"

#include "chrome_images_fixture.h"

namespace velmoranth::tests::chrome_images_test {

using imaging::ChromeImages;
using platform::ImageRef;
using platform::ImageViewRef;

namespace {

ImageRef folderImage() {
    return ChromeImages::FolderImage()->image();
}

ImageRef badgeImage() {
    return ChromeImages::badgeImage()->image();
}

Lines folderFiles(const std::string& name) {
    return inThemes({"A/Velmoranth/" + name, "A/Velmoranth" + name,
                     "A/" + kSpringBoard + "ANEMFolderIconBG-Apple.png",
                     "A/" + kSpringBoard + "ANEMFolderIconBG.png"});
}

}  // namespace

class FolderImage : public ChromeImagesOnDevice {};

TEST_F(FolderImage, OfAPhoneIsSearchedForInFourPlaces) {
    expectOrder(folderFiles("Folder.png"), folderImage);
}

TEST_F(FolderImage, OfAPadIsSearchedForInFourPlaces) {
    makePad();
    expectOrder(folderFiles("ipadFolder.png"), folderImage);
}

TEST_F(FolderImage, TheSelectedThemesFolderThenEachTheme) {
    activate({"A", "B"});
    expectOrder(
        inThemes({"A/Velmoranth/Folder.png", "A/VelmoranthFolder.png", "B/VelmoranthFolder.png",
                  "A/" + kSpringBoard + "ANEMFolderIconBG-Apple.png",
                  "B/" + kSpringBoard + "ANEMFolderIconBG-Apple.png",
                  "A/" + kSpringBoard + "ANEMFolderIconBG.png",
                  "B/" + kSpringBoard + "ANEMFolderIconBG.png"}),
        folderImage);
}

TEST_F(FolderImage, WithoutAnActiveThemeLooksAtTheRootAlone) {
    activate({});
    expectOrder({"/Folder.png"}, folderImage);
    makePad();
    expectOrder({"/ipadFolder.png"}, folderImage);
}

TEST_F(FolderImage, WithoutPreferencesLooksAtTheRootAlone) {
    device.remove("/User/Library/Preferences/com.qor.velmoranthprefs.plist");
    expectOrder({"/Folder.png"}, folderImage);
}

TEST_F(FolderImage, OnlyAPadIsAPad) {
    for (const int idiom : kNoPads) {
        device.idiom.idiom = idiom;
        EXPECT_EQ(ChromeImages::FolderImage()->frame(), (platform::Rect{{0, 0}, {60, 60}}))
            << idiom;
        EXPECT_EQ(takenLoads().front(),
                  "+[UIImage imageWithContentsOfFile:] /Library/Themes/A/Velmoranth/Folder.png")
            << idiom;
    }
    makePad();
    device.idiom.responds = false;
    EXPECT_EQ(ChromeImages::FolderImage()->frame(), (platform::Rect{{0, 0}, {60, 60}}));
    EXPECT_EQ(takenLoads().front(),
              "+[UIImage imageWithContentsOfFile:] /Library/Themes/A/Velmoranth/Folder.png");
}

TEST_F(FolderImage, IsFramedAndTagged) {
    const ImageViewRef phone = ChromeImages::FolderImage();
    ASSERT_NE(phone, nullptr);
    EXPECT_EQ(phone->frame(), (platform::Rect{{0, 0}, {60, 60}}));
    EXPECT_EQ(phone->tag(), 2322);
    EXPECT_EQ(phone->image(), nullptr);
    makePad();
    const ImageViewRef pad = ChromeImages::FolderImage();
    EXPECT_EQ(pad->frame(), (platform::Rect{{0, 0}, {76, 76}}));
    EXPECT_EQ(pad->tag(), imaging::FolderImageTag);
}

TEST_F(FolderImage, KeepsItsFrameWithAnImageOfAnotherSize) {
    device.png("/Library/Themes/A/Velmoranth/Folder.png", solid(300, 9, {}));
    const ImageViewRef view = ChromeImages::FolderImage();
    EXPECT_EQ(view->frame(), (platform::Rect{{0, 0}, {60, 60}}));
    EXPECT_EQ(view->tag(), 2322);
}

TEST_F(FolderImage, SetsTheImageAtEveryAttemptAndTheTagAtTheEnd) {
    (void)ChromeImages::FolderImage();
    const Lines files = folderFiles("Folder.png");
    EXPECT_EQ(
        device.journal.lines(),
        (Lines{"-[UIImageView init]", "-[UIView setFrame:] UIImageView (0, 0) 60×60",
               "-[UIView setBackgroundColor:] UIImageView #00000000", kReadPreferences,
               "+[UIImage imageWithContentsOfFile:] " + files[0],
               "-[UIImageView setImage:] UIImageView nil", kReadPreferences,
               "+[UIImage imageWithContentsOfFile:] " + files[1],
               "-[UIImageView setImage:] UIImageView nil", kReadPreferences,
               "+[UIImage imageWithContentsOfFile:] " + files[2],
               "-[UIImageView setImage:] UIImageView nil", kReadPreferences,
               "+[UIImage imageWithContentsOfFile:] " + files[3],
               "-[UIImageView setImage:] UIImageView nil", "-[UIView setTag:] UIImageView 2322"}));
}

TEST_F(FolderImage, StopsAtTheFirstImage) {
    const Lines files = folderFiles("Folder.png");
    device.png(files[1], solid(2, 2, {}));
    (void)ChromeImages::FolderImage();
    EXPECT_EQ(device.journal.lines(),
              (Lines{"-[UIImageView init]", "-[UIView setFrame:] UIImageView (0, 0) 60×60",
                     "-[UIView setBackgroundColor:] UIImageView #00000000", kReadPreferences,
                     "+[UIImage imageWithContentsOfFile:] " + files[0],
                     "-[UIImageView setImage:] UIImageView nil", kReadPreferences,
                     "+[UIImage imageWithContentsOfFile:] " + files[1],
                     "-[UIImageView setImage:] UIImageView 2×2 @1x",
                     "-[UIView setTag:] UIImageView 2322"}));
}

TEST_F(FolderImage, IsBuiltAnewOnEveryCall) {
    const std::string file = "/Library/Themes/A/Velmoranth/Folder.png";
    device.png(file, solid(2, 2, {}));
    const ImageViewRef first = ChromeImages::FolderImage();
    device.png(file, solid(4, 4, {}));
    const ImageViewRef second = ChromeImages::FolderImage();
    EXPECT_NE(first, second);
    EXPECT_EQ(drawnPixels(first->image()).width, 2U);
    EXPECT_EQ(drawnPixels(second->image()).width, 4U);
    activate({"B"});
    EXPECT_EQ(folderImage(), nullptr);
}

class BadgeImage : public ChromeImagesOnDevice {};

TEST_F(BadgeImage, IsSearchedForInOnePlace) {
    expectOrder(inThemes({"A/" + kSpringBoard + "SBBadgeBG.png"}), badgeImage);
    makePad();
    expectOrder(inThemes({"A/" + kSpringBoard + "SBBadgeBG.png"}), badgeImage);
}

TEST_F(BadgeImage, IsSearchedForInEachTheme) {
    activate({"A", "B"});
    expectOrder(
        inThemes({"A/" + kSpringBoard + "SBBadgeBG.png", "B/" + kSpringBoard + "SBBadgeBG.png"}),
        badgeImage);
}

TEST_F(BadgeImage, IsFramedWithoutATag) {
    for (const bool isPad : {false, true}) {
        device.idiom.idiom = isPad ? 1 : 0;
        const ImageViewRef view = ChromeImages::badgeImage();
        ASSERT_NE(view, nullptr);
        EXPECT_EQ(view->frame(), (platform::Rect{{0, 0}, {30, 30}}));
        EXPECT_EQ(view->tag(), 0);
        EXPECT_EQ(view->image(), nullptr);
    }
}

TEST_F(BadgeImage, DoesNothingElseWithItsView) {
    (void)ChromeImages::badgeImage();
    EXPECT_EQ(device.journal.lines(),
              (Lines{"-[UIImageView init]", "-[UIView setFrame:] UIImageView (0, 0) 30×30",
                     kReadPreferences,
                     "+[UIImage imageWithContentsOfFile:] "
                     "/Library/Themes/A/Bundles/com.apple.springboard/SBBadgeBG.png",
                     "-[UIImageView setImage:] UIImageView nil"}));
}

TEST_F(BadgeImage, IsNilWithoutAnActiveTheme) {
    activate({});
    EXPECT_EQ(badgeImage(), nullptr);
    EXPECT_EQ(takenLoads(), Lines{});
}

class PageDotImages : public ChromeImagesOnDevice {};

TEST_F(PageDotImages, TheCurrentPagesIsSearchedForInTwoPlaces) {
    expectOrder(
        inThemes({"A/" + kSpringBoard + "SBPageDotCurrent.png", "A/ANEMPageDots/Dot_Current.png"}),
        [] { return ChromeImages::pageDots(true); });
}

TEST_F(PageDotImages, TheOtherPagesIsSearchedForInTwoPlaces) {
    expectOrder(inThemes({"A/" + kSpringBoard + "SBPageDot.png", "A/ANEMPageDots/Dot_Pages.png"}),
                [] { return ChromeImages::pageDots(false); });
}

TEST_F(PageDotImages, TheSearchPagesIsSearchedForInTwoPlaces) {
    expectOrder(inThemes({"A/" + kSpringBoard + "Spotlight_Pages.png",
                          "A/ANEMPageDots/Spotlight_Pages.png"}),
                ChromeImages::spotlightPageDot);
}

TEST_F(PageDotImages, APlaceInEveryThemeBeforeTheNextPlace) {
    makePad();
    activate({"A", "B"});
    expectOrder(inThemes({"A/" + kSpringBoard + "SBPageDotCurrent.png",
                          "B/" + kSpringBoard + "SBPageDotCurrent.png",
                          "A/ANEMPageDots/Dot_Current.png", "B/ANEMPageDots/Dot_Current.png"}),
                [] { return ChromeImages::pageDots(true); });
    expectOrder(
        inThemes({"A/" + kSpringBoard + "SBPageDot.png", "B/" + kSpringBoard + "SBPageDot.png",
                  "A/ANEMPageDots/Dot_Pages.png", "B/ANEMPageDots/Dot_Pages.png"}),
        [] { return ChromeImages::pageDots(false); });
    expectOrder(
        inThemes({"A/" + kSpringBoard + "Spotlight_Pages.png",
                  "B/" + kSpringBoard + "Spotlight_Pages.png", "A/ANEMPageDots/Spotlight_Pages.png",
                  "B/ANEMPageDots/Spotlight_Pages.png"}),
        ChromeImages::spotlightPageDot);
}

TEST_F(PageDotImages, AreNilWithoutAnActiveTheme) {
    activate({});
    EXPECT_EQ(ChromeImages::pageDots(true), nullptr);
    EXPECT_EQ(ChromeImages::pageDots(false), nullptr);
    EXPECT_EQ(ChromeImages::spotlightPageDot(), nullptr);
    EXPECT_EQ(device.journal.lines(), Lines(6, kReadPreferences));
}

TEST_F(PageDotImages, AreImagesWithoutAView) {
    (void)ChromeImages::pageDots(true);
    (void)ChromeImages::pageDots(false);
    (void)ChromeImages::spotlightPageDot();
    EXPECT_EQ(device.journal.count("-[UIImageView init"), 0U);
    EXPECT_EQ(device.journal.count("log "), 0U);
}

}  // namespace velmoranth::tests::chrome_images_test
