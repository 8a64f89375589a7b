// The replacement of the overlay that darkens a pressed icon.
#include "springboard_fixture.h"

#include <deque>

namespace velmoranth::hooks::icon_view_overlay_test {
namespace {

using platform::ImageRef;
using tests::drawnPixels;
using tests::joined;
using tests::kBlue;
using tests::kGreen;
using tests::kReadPreferences;
using tests::kRed;
using tests::Lines;
using tests::solid;

constexpr const char* kOverlay = "orig darkeningOverlayImage";
const std::string kFirstMask = "A/Bundles/com.apple.mobileicons.framework/AppIconMask.png";
const std::string kSecondMask = "A/com.apple.mobileicons.framework/AppIconMask.png";

struct TestIconImageView final : desktop::ViewImplementation<platform::SBIconImageView> {
    [[nodiscard]] std::string className() const override { return "SBIconImageView"; }

    [[nodiscard]] platform::SBIconRef icon() const override { return nullptr; }
};

Lines searched(const std::string& path) {
    return {kReadPreferences, "+[UIImage imageWithContentsOfFile:] /Library/Themes/" + path};
}

class DarkeningOverlayImage : public tests::SpringBoardProcess {
  public:
    DarkeningOverlayImage() {
        addMethod<ImageRef, platform::SBIconImageView>(
            "SBIconImageView", "darkeningOverlayImage",
            std::function<ImageRef(platform::SBIconImageView&)>(
                [this](const platform::SBIconImageView& self) {
                    EXPECT_EQ(&self, view.get());
                    original("darkeningOverlayImage");
                    if (answers.empty()) {
                        return platformImage;
                    }
                    ImageRef next = answers.front();
                    answers.pop_front();
                    return next;
                }));
        install();
    }

    ImageRef overlay() { return device.runtime.send<ImageRef>(*view, "darkeningOverlayImage"); }

    // A mask that shows the image's left half: what is black shows, what is white hides.
    void mask(const std::string& path) const {
        tests::Pixels pixels = solid(4, 2, {0, 0, 0, 255});
        for (const std::size_t y : {0U, 1U}) {
            pixels.at(2, y) = pixels.at(3, y) = {255, 255, 255, 255};
        }
        device.png("/Library/Themes/" + path, pixels);
    }

    ImageRef platformImage = device.image(solid(4, 2, kGreen));
    // What the next calls of the platform's method give instead.
    std::deque<ImageRef> answers;
    std::shared_ptr<TestIconImageView> view = std::make_shared<TestIconImageView>();
};

TEST_F(DarkeningOverlayImage, WithThemingOffIsThePlatformsSecondAnswer) {
    mask(kFirstMask);
    settings({"A"}, {{"enable", false}});
    const ImageRef second = device.image(solid(3, 3, kBlue));
    answers = {platformImage, second};
    EXPECT_EQ(overlay(), second);
    EXPECT_EQ(taken(), (Lines{kOverlay, kOverlay}));
}

TEST_F(DarkeningOverlayImage, WithThemingOffAndLoggingIsTheThirdAnswerAfterALine) {
    mask(kFirstMask);
    settings({"A"}, {{"enable", false}, {"enableLogging", true}});
    const ImageRef second = device.image(solid(3, 3, kBlue));
    const ImageRef third = device.image(solid(2, 2, kRed));
    answers = {platformImage, second, third};
    EXPECT_EQ(overlay(), third);
    EXPECT_EQ(taken(), (Lines{kOverlay, kOverlay,
                              "log VELMORANTH SBIconImageView: darkeningOverlayImage " +
                                  second->description(),
                              kOverlay}));
}

TEST_F(DarkeningOverlayImage, IsNilWithoutAMask) {
    settings({"A"}, {{"enable", true}});
    EXPECT_EQ(overlay(), nullptr);
    EXPECT_EQ(taken(), joined({{kOverlay}, searched(kFirstMask), searched(kSecondMask)}));
}

TEST_F(DarkeningOverlayImage, IsNilWithoutAMaskAfterALine) {
    settings({"A"}, {{"enable", true}, {"enableLogging", true}});
    answers = {platformImage, nullptr};
    EXPECT_EQ(overlay(), nullptr);
    EXPECT_EQ(taken(), joined({{kOverlay, kOverlay,
                                "log VELMORANTH SBIconImageView: darkeningOverlayImage (null)"},
                               searched(kFirstMask),
                               searched(kSecondMask)}));
}

TEST_F(DarkeningOverlayImage, IsNilWithoutAnActiveTheme) {
    settings({}, {{"enable", true}});
    EXPECT_EQ(overlay(), nullptr);
    EXPECT_EQ(taken(), (Lines{kOverlay, kReadPreferences, kReadPreferences}));
}

TEST_F(DarkeningOverlayImage, IsThePlatformsSecondAnswerMasked) {
    mask(kFirstMask);
    settings({"A"}, {{"enable", true}});
    answers = {platformImage, device.image(solid(4, 2, kBlue))};
    const ImageRef image = overlay();
    const Lines lines = taken();
    ASSERT_GE(lines.size(), 4U);
    EXPECT_EQ(Lines(lines.begin(), lines.begin() + 4),
              joined({{kOverlay}, searched(kFirstMask), {kOverlay}}));
    EXPECT_EQ(lines.back(), "+[UIImage imageWithCGImage:] 4×2 pixels");
    const tests::Pixels pixels = drawnPixels(image);
    ASSERT_EQ(pixels.width, 4U);
    ASSERT_EQ(pixels.height, 2U);
    EXPECT_EQ(pixels.at(0, 0), kBlue);
    EXPECT_EQ(pixels.at(1, 1), kBlue);
    EXPECT_EQ(pixels.at(3, 0).alpha, 0);
    EXPECT_EQ(image->scale(), 1);
}

TEST_F(DarkeningOverlayImage, WithLoggingIsTheThirdAnswerMasked) {
    mask(kFirstMask);
    settings({"A"}, {{"enable", true}, {"enableLogging", true}});
    answers = {platformImage, platformImage, device.image(solid(4, 2, kRed))};
    EXPECT_EQ(drawnPixels(overlay()).at(0, 0), kRed);
    EXPECT_EQ(takenCalls().size(), 3U);
}

TEST_F(DarkeningOverlayImage, TheSecondFolderIsTriedOnce) {
    mask(kSecondMask);
    settings({"A"}, {{"enable", true}});
    EXPECT_EQ(drawnPixels(overlay()).at(0, 0), kGreen);
    EXPECT_EQ(device.journal.linesWith("+[UIImage imageWithContentsOfFile:] "),
              (Lines{"+[UIImage imageWithContentsOfFile:] /Library/Themes/" + kFirstMask,
                     "+[UIImage imageWithContentsOfFile:] /Library/Themes/" + kSecondMask}));
    EXPECT_EQ(device.journal.count("log "), 0U);
}

TEST_F(DarkeningOverlayImage, AFolderInEveryThemeBeforeTheNextFolder) {
    settings({"A", "B"}, {{"enable", true}});
    EXPECT_EQ(overlay(), nullptr);
    EXPECT_EQ(device.journal.linesWith("+[UIImage imageWithContentsOfFile:] "),
              (Lines{"+[UIImage imageWithContentsOfFile:] /Library/Themes/" + kFirstMask,
                     "+[UIImage imageWithContentsOfFile:] "
                     "/Library/Themes/B/Bundles/com.apple.mobileicons.framework/AppIconMask.png",
                     "+[UIImage imageWithContentsOfFile:] /Library/Themes/" + kSecondMask,
                     "+[UIImage imageWithContentsOfFile:] "
                     "/Library/Themes/B/com.apple.mobileicons.framework/AppIconMask.png"}));
}

TEST_F(DarkeningOverlayImage, DoesNotAskWhetherIconsAreMasked) {
    settings({"A"}, {{"enable", true}, {"enableIconMask", false}, {"enableOverlay", false}});
    mask(kFirstMask);
    EXPECT_NE(overlay(), nullptr);
    settings({"A"}, {{"enable", false}, {"enableIconMask", true}, {"enableOverlay", true}});
    EXPECT_EQ(overlay(), platformImage);
}

TEST_F(DarkeningOverlayImage, ANilOverlayOfThePlatformMasksToNil) {
    mask(kFirstMask);
    settings({"A"}, {{"enable", true}});
    answers = {platformImage, nullptr};
    EXPECT_EQ(overlay(), nullptr);
    EXPECT_EQ(takenCalls().size(), 2U);
}

}  // namespace
}  // namespace velmoranth::hooks::icon_view_overlay_test
