// Which files each piece of the home screen's furniture is taken from, in which order, and what is
// done with the view that shows it.
#include "imaging/chrome_images.h"

#include "desktop/views/views.h"
#include "imaging/view_tags.h"
#include "tests/support/test_device.h"

#include "lookup_lines.h"
#include <gtest/gtest.h>

#include <array>
#include <functional>
#include <limits>
#include <memory>
#include <string>
#include <vector>

namespace velmoranth::tests {

using imaging::ChromeImages;
using platform::ImageRef;
using platform::ImageViewRef;

namespace {

constexpr platform::Rect kDockFrame{{0, 0}, {375, 96}};

// An image view that writes what is done with it.
class WritingImageView final : public desktop::DesktopImageView {
  public:
    explicit WritingImageView(Journal& journal) : journal_(journal) {}

    void setFrame(const platform::Rect& frame) override {
        journal_.write("setFrame " + text(frame));
        DesktopImageView::setFrame(frame);
    }

    void setTag(int tag) override {
        journal_.write("setTag " + std::to_string(tag));
        DesktopImageView::setTag(tag);
    }

    void setBackgroundColor(const platform::Color& color) override {
        journal_.write(color == platform::kClearColor ? "setBackgroundColor clear"
                                                      : "setBackgroundColor other");
        DesktopImageView::setBackgroundColor(color);
    }

    void setImage(const ImageRef& image) override {
        journal_.write(image ? "setImage" : "setImage nil");
        DesktopImageView::setImage(image);
    }

  private:
    Journal& journal_;
};

class WritingViews final : public platform::Views {
  public:
    explicit WritingViews(Journal& journal) : journal_(journal) {}

    ImageViewRef imageView() override {
        journal_.write("imageView");
        return std::make_shared<WritingImageView>(journal_);
    }

    ImageViewRef imageViewWithImage(const ImageRef& /*image*/) override { return nullptr; }

    ImageViewRef imageViewWithFrame(const platform::Rect& /*frame*/) override { return nullptr; }

    platform::GestureRecognizerRef tapGestureRecognizer(
        platform::Object& /*target*/, const platform::Selector& /*action*/) override {
        return nullptr;
    }

    void animateWithDurationAnimationsCompletion(
        double /*duration*/, const std::function<void()>& /*animations*/,
        const std::function<void(bool)>& /*completion*/) override {}

  private:
    Journal& journal_;
};

// A device that writes when its orientation is read.
class WritingDevice final : public platform::Device {
  public:
    WritingDevice(Journal& journal, TestIdiom& idiom) : journal_(journal), idiom_(idiom) {}

    bool respondsToUserInterfaceIdiom() override { return idiom_.respondsToUserInterfaceIdiom(); }

    int userInterfaceIdiom() override { return idiom_.userInterfaceIdiom(); }

    int orientation() override {
        journal_.write("orientation");
        return idiom_.orientation();
    }

  private:
    Journal& journal_;
    TestIdiom& idiom_;
};

}  // namespace

class ChromeImagesOnDevice : public testing::Test {
  protected:
    void SetUp() override { activate({"A"}); }

    void activate(const std::vector<std::string>& themes) {
        device.activeThemes(themes);
        device.journal.clear();
    }

    void makePad() { device.idiom.idiom = platform::kUserInterfaceIdiomPad; }

    // From here on everything is written that is done with a view, and each read of the
    // orientation.
    void writeViews() {
        const platform::Platform& now = platform::platform();
        platform::setPlatform({.objc = now.objc,
                               .substrate = now.substrate,
                               .coreFoundation = now.coreFoundation,
                               .darwinNotifications = now.darwinNotifications,
                               .propertyLists = now.propertyLists,
                               .fileManager = now.fileManager,
                               .log = now.log,
                               .libSystem = now.libSystem,
                               .coreGraphics = now.coreGraphics,
                               .images = now.images,
                               .imageContexts = now.imageContexts,
                               .views = views_,
                               .device = writingDevice_,
                               .screen = now.screen,
                               .springBoard = now.springBoard,
                               .audioSession = now.audioSession});
    }

    Lines takenLoads() {
        Lines lines = device.journal.linesWith("load ");
        device.journal.clear();
        return lines;
    }

    // `candidates` are all files that `search` tries when none is there. With a picture in each of
    // them, then in all but the first, and so on, every search ends at the first that is left; with
    // none left it gives nil.
    void expectOrder(const Lines& candidates, const std::function<ImageRef()>& search) {
        for (std::size_t i = 0; i < candidates.size(); ++i) {
            device.png(candidates[i], solid(i + 2, 3, {}));
        }
        Lines tried;
        for (std::size_t i = 0; i < candidates.size(); ++i) {
            SCOPED_TRACE(candidates[i]);
            tried.push_back("load " + candidates[i]);
            device.journal.clear();
            EXPECT_EQ(drawnPixels(search()), solid(i + 2, 3, {}));
            EXPECT_EQ(takenLoads(), tried);
            // A file that is no picture is as good as none.
            device.file(candidates[i], i % 2 == 0 ? "no picture" : "");
        }
        for (const bool isThere : {true, false}) {
            EXPECT_EQ(search(), nullptr);
            EXPECT_EQ(takenLoads(), tried);
            for (const std::string& candidate : isThere ? candidates : Lines()) {
                device.remove(candidate);
            }
        }
        EXPECT_TRUE(device.journal.log().empty());
    }

    TestDevice device;

  private:
    WritingViews views_{device.journal};
    WritingDevice writingDevice_{device.journal, device.idiom};
};

namespace {

ImageRef folderImage() {
    return ChromeImages::FolderImage()->image();
}

ImageRef badgeImage() {
    return ChromeImages::badgeImage()->image();
}

ImageRef dockImage() {
    return ChromeImages::SBDockImgWithFrame(kDockFrame)->image();
}

// The files below the themes' folder.
Lines inThemes(Lines files) {
    for (std::string& file : files) {
        file.insert(0, "/Library/Themes/");
    }
    return files;
}

const std::string kSpringBoard = "Bundles/com.apple.springboard/";

Lines folderFiles(const std::string& name) {
    return inThemes({"A/Velmoranth/" + name, "A/Velmoranth" + name,
                     "A/" + kSpringBoard + "ANEMFolderIconBG-Apple.png",
                     "A/" + kSpringBoard + "ANEMFolderIconBG.png"});
}

Lines dockFiles(const std::string& name, const std::string& last) {
    return inThemes({"A/Velmoranth/" + name, "A/Velmoranth" + name, "A/" + kSpringBoard + last});
}

const Lines kPhoneDockFiles = dockFiles("SBDockBGiphone.png", "SBDockBG@2x.png");
const Lines kUprightDockFiles = dockFiles("SBDockBGipad.png", "SBDockBG-Portrait@2x~ipad.png");
const Lines kSidewaysDockFiles = dockFiles("SBDockBGipad.png", "SBDockBG-Landscape@2x~ipad.png");

// UIDeviceOrientation: unknown, both upright ones, face up, face down, and what is none.
constexpr std::array kUpright{0, 1, 2, 5, 6, 7, -1, -3, std::numeric_limits<int>::max()};

// UIUserInterfaceIdiom: unspecified, phone, television, car, and what is none.
constexpr std::array kNoPads{-1, 0, 2, 3, 5};

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
        EXPECT_EQ(takenLoads().front(), "load /Library/Themes/A/Velmoranth/Folder.png") << idiom;
    }
    makePad();
    device.idiom.responds = false;
    EXPECT_EQ(ChromeImages::FolderImage()->frame(), (platform::Rect{{0, 0}, {60, 60}}));
    EXPECT_EQ(takenLoads().front(), "load /Library/Themes/A/Velmoranth/Folder.png");
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
    writeViews();
    (void)ChromeImages::FolderImage();
    const Lines files = folderFiles("Folder.png");
    EXPECT_EQ(
        device.journal.lines(),
        (Lines{"imageView", "setFrame {0, 0, 60, 60}", "setBackgroundColor clear", kReadPreferences,
               "load " + files[0], "setImage nil", kReadPreferences, "load " + files[1],
               "setImage nil", kReadPreferences, "load " + files[2], "setImage nil",
               kReadPreferences, "load " + files[3], "setImage nil", "setTag 2322"}));
}

TEST_F(FolderImage, StopsAtTheFirstImage) {
    writeViews();
    const Lines files = folderFiles("Folder.png");
    device.png(files[1], solid(2, 2, {}));
    (void)ChromeImages::FolderImage();
    EXPECT_EQ(device.journal.lines(),
              (Lines{"imageView", "setFrame {0, 0, 60, 60}", "setBackgroundColor clear",
                     kReadPreferences, "load " + files[0], "setImage nil", kReadPreferences,
                     "load " + files[1], "setImage", "setTag 2322"}));
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
    writeViews();
    (void)ChromeImages::badgeImage();
    EXPECT_EQ(device.journal.lines(),
              (Lines{"imageView", "setFrame {0, 0, 30, 30}", kReadPreferences,
                     "load /Library/Themes/A/Bundles/com.apple.springboard/SBBadgeBG.png",
                     "setImage nil"}));
}

TEST_F(BadgeImage, IsNilWithoutAnActiveTheme) {
    activate({});
    EXPECT_EQ(badgeImage(), nullptr);
    EXPECT_EQ(takenLoads(), Lines{});
}

class PageDots : public ChromeImagesOnDevice {};

TEST_F(PageDots, TheCurrentPagesIsSearchedForInTwoPlaces) {
    expectOrder(
        inThemes({"A/" + kSpringBoard + "SBPageDotCurrent.png", "A/ANEMPageDots/Dot_Current.png"}),
        [] { return ChromeImages::pageDots(true); });
}

TEST_F(PageDots, TheOtherPagesIsSearchedForInTwoPlaces) {
    expectOrder(inThemes({"A/" + kSpringBoard + "SBPageDot.png", "A/ANEMPageDots/Dot_Pages.png"}),
                [] { return ChromeImages::pageDots(false); });
}

TEST_F(PageDots, TheSearchPagesIsSearchedForInTwoPlaces) {
    expectOrder(inThemes({"A/" + kSpringBoard + "Spotlight_Pages.png",
                          "A/ANEMPageDots/Spotlight_Pages.png"}),
                ChromeImages::spotlightPageDot);
}

TEST_F(PageDots, APlaceInEveryThemeBeforeTheNextPlace) {
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

TEST_F(PageDots, AreNilWithoutAnActiveTheme) {
    activate({});
    EXPECT_EQ(ChromeImages::pageDots(true), nullptr);
    EXPECT_EQ(ChromeImages::pageDots(false), nullptr);
    EXPECT_EQ(ChromeImages::spotlightPageDot(), nullptr);
    EXPECT_EQ(device.journal.lines(), Lines(6, kReadPreferences));
}

TEST_F(PageDots, AreImagesWithoutAView) {
    (void)ChromeImages::pageDots(true);
    (void)ChromeImages::pageDots(false);
    (void)ChromeImages::spotlightPageDot();
    EXPECT_EQ(device.journal.count("imageView"), 0U);
    EXPECT_EQ(device.journal.count("log: "), 0U);
}

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
    writeViews();
    (void)ChromeImages::SBDockImgWithFrame(kDockFrame);
    EXPECT_EQ(device.journal.lines(),
              (Lines{"imageView", "setFrame {0, 10, 375, 96}", kReadPreferences,
                     "load " + kUprightDockFiles[0], "setImage nil", kReadPreferences,
                     "load " + kUprightDockFiles[1], "setImage nil", "orientation",
                     kReadPreferences, "load " + kUprightDockFiles[2], "setImage nil"}));
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
        EXPECT_EQ(takenLoads().back(), "load " + kPhoneDockFiles.back()) << idiom;
    }
    makePad();
    device.idiom.responds = false;
    device.idiom.heldAs = 3;
    (void)dockImage();
    EXPECT_EQ(takenLoads().back(), "load " + kPhoneDockFiles.back());
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

}  // namespace velmoranth::tests
