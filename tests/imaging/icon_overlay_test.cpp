#include "desktop/views/view_node.h"
#include "platform/platform.h"
#include "tests/support/replaced_services.h"

#include "icon_effects_fixture.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace velmoranth::tests::icon_overlay_test {

using imaging::IconEffects;
using platform::ImageRef;
using platform::platform;

class IconOverlay : public IconEffectsOnDevice {};

TEST_F(IconOverlay, PhoneTriesItsTwoFoldersInOrder) {
    EXPECT_EQ(IconEffects::iconOverlay(), nullptr);
    const std::vector<std::string> expected = {
        "+[UIImage imageWithContentsOfFile:] " + inTheme("Velmoranth/iPhoneOverlay.png"),
        "+[UIImage imageWithContentsOfFile:] " + inTheme("AnemoneEffects/iPhoneOverlay.png")};
    EXPECT_EQ(device.journal.linesWith("+[UIImage imageWithContentsOfFile:] "), expected);
    EXPECT_TRUE(device.journal.log().empty());
}

TEST_F(IconOverlay, PadTriesItsTwoFoldersInOrder) {
    makePad();
    EXPECT_EQ(IconEffects::iconOverlay(), nullptr);
    const std::vector<std::string> expected = {
        "+[UIImage imageWithContentsOfFile:] " + inTheme("Velmoranth/iPadOverlay.png"),
        "+[UIImage imageWithContentsOfFile:] " + inTheme("AnemoneEffects/iPadOverlay.png")};
    EXPECT_EQ(device.journal.linesWith("+[UIImage imageWithContentsOfFile:] "), expected);
}

TEST_F(IconOverlay, ADeviceThatDoesNotAnswerIsAPhone) {
    makePad();
    device.idiom.responds = false;
    EXPECT_EQ(IconEffects::iconOverlay(), nullptr);
    EXPECT_EQ(device.journal.count("+[UIImage imageWithContentsOfFile:] " +
                                   inTheme("Velmoranth/iPhoneOverlay.png")),
              1U);
}

TEST_F(IconOverlay, AnotherIdiomIsAPhone) {
    device.idiom.idiom = 2;
    EXPECT_EQ(IconEffects::iconOverlay(), nullptr);
    EXPECT_EQ(device.journal.count("+[UIImage imageWithContentsOfFile:] " +
                                   inTheme("Velmoranth/iPhoneOverlay.png")),
              1U);
}

TEST_F(IconOverlay, TheFirstFolderWins) {
    device.png(inTheme("Velmoranth/iPhoneOverlay.png"), solid(3, 3, {1, 1, 1}));
    device.png(inTheme("AnemoneEffects/iPhoneOverlay.png"), solid(4, 4, {2, 2, 2}));
    EXPECT_EQ(drawnPixels(IconEffects::iconOverlay()).width, 3U);
    EXPECT_EQ(device.journal.count("+[UIImage imageWithContentsOfFile:] "), 1U);
}

TEST_F(IconOverlay, OnlyForPhonesInTheSecondFolder) {
    device.png(inTheme("AnemoneEffects/iPhoneOverlay.png"), solid(4, 4, {2, 2, 2}));
    makePad();
    EXPECT_EQ(IconEffects::iconOverlay(), nullptr);
    device.idiom.idiom = platform::kUserInterfaceIdiomPhone;
    EXPECT_EQ(drawnPixels(IconEffects::iconOverlay()).width, 4U);
}

TEST_F(IconOverlay, IsKeptUntilItIsCleared) {
    const std::string path = inTheme("Velmoranth/iPhoneOverlay.png");
    device.png(path, solid(3, 3, {}));
    const ImageRef first = IconEffects::iconOverlay();
    device.png(path, solid(5, 5, {}));
    device.journal.clear();
    EXPECT_EQ(IconEffects::iconOverlay(), first);
    EXPECT_TRUE(device.journal.lines().empty());
    IconEffects::clearIconMask();
    IconEffects::clearShadowImg();
    EXPECT_EQ(IconEffects::iconOverlay(), first);
    IconEffects::clearIconOverlay();
    EXPECT_EQ(drawnPixels(IconEffects::iconOverlay()).width, 5U);
    EXPECT_EQ(device.journal.count("+[UIImage imageWithContentsOfFile:] "), 1U);
}

TEST_F(IconOverlay, AFailedSearchIsRepeated) {
    EXPECT_EQ(IconEffects::iconOverlay(), nullptr);
    EXPECT_EQ(IconEffects::iconOverlay(), nullptr);
    EXPECT_EQ(device.journal.count("+[UIImage imageWithContentsOfFile:] "), 4U);
    device.png(inTheme("AnemoneEffects/iPhoneOverlay.png"), solid(4, 4, {}));
    EXPECT_NE(IconEffects::iconOverlay(), nullptr);
}

class RedrawIconWithOverlay : public IconEffectsOnDevice {
  protected:
    void overlay(const Pixels& pixels) {
        device.png(inTheme("Velmoranth/iPhoneOverlay.png"), pixels);
    }

    // The icon's every pixel under what `overlayAt` gives, each channel within `tolerance`.
    template <class OverlayAt>
    void check(const Pixels& icon, const OverlayAt& overlayAt, int tolerance = 0) {
        const ImageRef result = IconEffects::redrawIconWithOverlay(device.image(icon));
        const Pixels drawn = drawnPixels(result);
        ASSERT_EQ(drawn.width, icon.width);
        ASSERT_EQ(drawn.height, icon.height);
        for (std::size_t y = 0; y < icon.height; ++y) {
            for (std::size_t x = 0; x < icon.width; ++x) {
                const Pixel expected = over(overlayAt(x, y), premultiplied(icon.at(x, y)));
                const Pixel& seen = drawn.at(x, y);
                ASSERT_NEAR(seen.red, expected.red, tolerance) << x << ", " << y;
                ASSERT_NEAR(seen.green, expected.green, tolerance) << x << ", " << y;
                ASSERT_NEAR(seen.blue, expected.blue, tolerance) << x << ", " << y;
                ASSERT_NEAR(seen.alpha, expected.alpha, tolerance) << x << ", " << y;
            }
        }
    }
};

TEST_F(RedrawIconWithOverlay, WithoutAnOverlayTheIconItself) {
    const ImageRef icon = device.image(pattern(6, 6));
    EXPECT_EQ(IconEffects::redrawIconWithOverlay(icon), icon);
    EXPECT_EQ(device.journal.lines().back(), "log LOADEDIcon no overlay stop redraw");
    EXPECT_EQ(device.journal.count("UIGraphicsBeginImageContextWithOptions"), 0U);
    EXPECT_EQ(IconEffects::redrawIconWithOverlay(nullptr), nullptr);
    EXPECT_EQ(device.journal.count("log LOADEDIcon no overlay stop redraw"), 2U);
}

TEST_F(RedrawIconWithOverlay, GoesThroughTwoImageViewsAndOneContext) {
    overlay(solid(4, 4, {}));
    const ImageRef icon = device.image(pattern(180, 90), 3);
    device.journal.clear();
    ASSERT_NE(IconEffects::redrawIconWithOverlay(icon), nullptr);
    std::vector<std::string> lines = device.journal.lines();
    lines.erase(lines.begin(), lines.begin() + static_cast<std::ptrdiff_t>(device.journal.place(
                                                   "-[UIImageView initWithImage:] ")));
    const std::vector<std::string> expected = {
        "-[UIImageView initWithImage:] 60×30 @3x",
        "-[UIImageView initWithFrame:] (0, 0) 60×30",
        "-[UIImageView setImage:] UIImageView 4×4 @1x",
        "-[UIView addSubview:] UIImageView UIImageView",
        "-[UIView setBackgroundColor:] UIImageView #00000000",
        "-[UIView setClipsToBounds:] UIImageView NO",
        "UIGraphicsBeginImageContextWithOptions 60×30 NO 0",
        "UIGraphicsGetCurrentContext",
        "-[CALayer renderInContext:] UIImageView __NSCFType",
        "UIGraphicsGetImageFromCurrentImageContext",
        "UIGraphicsEndImageContext"};
    EXPECT_EQ(lines, expected);
    EXPECT_TRUE(device.journal.log().empty());
    EXPECT_EQ(platform().imageContexts.getCurrentContext(), nullptr);
}

// An image view that records call by name.
class NamedImageView final : public desktop::DesktopImageView, public record::Named {
  public:
    NamedImageView(std::string name, const platform::Rect& frame)
        : DesktopImageView(frame), name_(std::move(name)) {}

    [[nodiscard]] std::string nameInRecords() const override { return name_; }

  private:
    const std::string name_;
};

// Gives the base view of an image a background and clipping, as another maker of views might: what
// the redraw does not set would stay.
class NamedViews final : public platform::Views {
  public:
    explicit NamedViews(platform::Views& process) : process_(process) {}

    platform::ImageViewRef imageViewWithImage(const ImageRef& image) override {
        const auto view = std::make_shared<NamedImageView>(
            "base", platform::Rect{{0, 0}, platform::sizeOf(image)});
        view->setContents(image);
        view->desktopLayer()->appearance.backgroundColor = platform::kWhiteColor;
        view->desktopLayer()->appearance.masksToBounds = true;
        return view;
    }

    platform::ImageViewRef imageViewWithFrame(const platform::Rect& frame) override {
        return std::make_shared<NamedImageView>("over", frame);
    }

    platform::ViewRef viewWithFrame(const platform::Rect& frame) override {
        return process_.viewWithFrame(frame);
    }

    platform::LabelRef labelWithFrame(const platform::Rect& frame) override {
        return process_.labelWithFrame(frame);
    }

    platform::ImageViewRef imageView() override { return process_.imageView(); }

    platform::GestureRecognizerRef tapGestureRecognizer(platform::Object& target,
                                                        const platform::Selector& action) override {
        return process_.tapGestureRecognizer(target, action);
    }

    void animateWithDurationAnimationsCompletion(
        double duration, const std::function<void()>& animations,
        const std::function<void(bool finished)>& completion) override {
        process_.animateWithDurationAnimationsCompletion(duration, animations, completion);
    }

    void
    animateWithDurationDelayUsingSpringWithDampingInitialSpringVelocityOptionsAnimationsCompletion(
        double /*duration*/, double /*delay*/, double /*damping*/, double /*initialVelocity*/,
        unsigned /*options*/, const std::function<void()>& /*animations*/,
        const std::function<void(bool finished)>& /*completion*/) override {
        ADD_FAILURE() << "no image is drawn by a movement";
    }

  private:
    platform::Views& process_;
};

TEST_F(RedrawIconWithOverlay, TheBaseViewIsClearAndDoesNotClip) {
    overlay(solid(4, 4, {0, 0, 0, 0}));
    const ImageRef icon = device.image(solid(6, 6, {0, 0, 0, 0}), 1);
    (void)IconEffects::iconOverlay();
    NamedViews views(device.services().views);
    device.useServices({.views = &views});
    device.journal.clear();
    const ImageRef result = IconEffects::redrawIconWithOverlay(icon);
    const std::vector<std::string> expected = {"-[UIImageView initWithImage:] 6×6 @1x",
                                               "-[UIImageView initWithFrame:] (0, 0) 6×6",
                                               "-[UIImageView setImage:] over 4×4 @1x",
                                               "-[UIView addSubview:] base over",
                                               "-[UIView setBackgroundColor:] base #00000000",
                                               "-[UIView setClipsToBounds:] base NO",
                                               "UIGraphicsBeginImageContextWithOptions 6×6 NO 0",
                                               "UIGraphicsGetCurrentContext",
                                               "-[CALayer renderInContext:] base __NSCFType",
                                               "UIGraphicsGetImageFromCurrentImageContext",
                                               "UIGraphicsEndImageContext"};
    EXPECT_EQ(device.journal.lines(), expected);
    EXPECT_EQ(drawnPixels(result), solid(18, 18, {0, 0, 0, 0})) << "no white behind a clear icon";
}

TEST_F(RedrawIconWithOverlay, OverlayOfTheSameSizePixelByPixel) {
    const Pixels top = translucentPattern(61, 47);
    overlay(top);
    Pixels icon = translucentPattern(61, 47);
    std::reverse(icon.values.begin(), icon.values.end());
    check(icon, [&](std::size_t x, std::size_t y) { return premultiplied(top.at(x, y)); });
}

TEST_F(RedrawIconWithOverlay, OverlayTwiceAsLargeIsAveraged) {
    const Pixels top = translucentPattern(40, 28);
    overlay(top);
    check(pattern(20, 14), [&](std::size_t x, std::size_t y) {
        const Pixel all[] = {
            premultiplied(top.at(2 * x, 2 * y)), premultiplied(top.at(2 * x + 1, 2 * y)),
            premultiplied(top.at(2 * x, 2 * y + 1)), premultiplied(top.at(2 * x + 1, 2 * y + 1))};
        unsigned sums[4] = {2, 2, 2, 2};
        for (const Pixel& one : all) {
            sums[0] += one.red;
            sums[1] += one.green;
            sums[2] += one.blue;
            sums[3] += one.alpha;
        }
        return Pixel{static_cast<std::uint8_t>(sums[0] / 4), static_cast<std::uint8_t>(sums[1] / 4),
                     static_cast<std::uint8_t>(sums[2] / 4),
                     static_cast<std::uint8_t>(sums[3] / 4)};
    });
}

TEST_F(RedrawIconWithOverlay, SmallerOverlayIsStretchedSmoothly) {
    // A ramp: the curve through four samples of a line is the line.
    Pixels top = solid(12, 8, {});
    for (std::size_t y = 0; y < 8; ++y) {
        for (std::size_t x = 0; x < 12; ++x) {
            top.at(x, y) = {static_cast<std::uint8_t>(x * 20), static_cast<std::uint8_t>(y * 30), 9,
                            255};
        }
    }
    overlay(top);
    const ImageRef result =
        IconEffects::redrawIconWithOverlay(device.image(solid(48, 32, {200, 0, 200})));
    const Pixels drawn = drawnPixels(result);
    ASSERT_EQ(drawn.width, 48U);
    ASSERT_EQ(drawn.height, 32U);
    for (std::size_t y = 8; y < 24; ++y) {
        for (std::size_t x = 8; x < 40; ++x) {
            const double column = (static_cast<double>(x) + 0.5) / 4 - 0.5;
            const double row = (static_cast<double>(y) + 0.5) / 4 - 0.5;
            ASSERT_NEAR(drawn.at(x, y).red, column * 20, 0.51) << x << ", " << y;
            ASSERT_NEAR(drawn.at(x, y).green, row * 30, 0.51) << x << ", " << y;
            ASSERT_EQ(drawn.at(x, y).blue, 9);
            ASSERT_EQ(drawn.at(x, y).alpha, 255);
        }
    }
    // At the edges it overshoots at most by what the steepest step gives, and covers all.
    for (const Pixel& pixel : drawn.values) {
        ASSERT_EQ(pixel.alpha, 255);
        ASSERT_EQ(pixel.blue, 9);
    }
}

TEST_F(RedrawIconWithOverlay, AFlatOverlayOfAnySizeIsFlat) {
    const Pixel color{200, 100, 50, 128};
    for (const auto& [width, height] : {std::pair{1, 1}, {7, 3}, {33, 90}, {500, 11}}) {
        IconEffects::clearIconOverlay();
        overlay(solid(static_cast<std::size_t>(width), static_cast<std::size_t>(height), color));
        check(pattern(30, 30), [&](std::size_t, std::size_t) { return premultiplied(color); });
    }
}

TEST_F(RedrawIconWithOverlay, ResultHasTheIconsSizeAtTheScreensScale) {
    overlay(solid(10, 10, {0, 0, 255, 255}));
    const ImageRef result =
        IconEffects::redrawIconWithOverlay(device.image(solid(120, 60, {255, 0, 0}), 2));
    ASSERT_NE(result, nullptr);
    EXPECT_EQ(result->size(), (platform::Size{60, 30}));
    EXPECT_EQ(result->scale(), 3);
    EXPECT_EQ(drawnPixels(result), solid(180, 90, {0, 0, 255}));
}

TEST_F(RedrawIconWithOverlay, AMaskedIconGrowsToTheScreensScale) {
    // What a mask leaves has scale 1: as many points as pixels.
    overlay(solid(10, 10, {0, 0, 0, 0}));
    const ImageRef result =
        IconEffects::redrawIconWithOverlay(device.image(solid(20, 20, {255, 0, 0}), 1));
    EXPECT_EQ(result->size(), (platform::Size{20, 20}));
    EXPECT_EQ(drawnPixels(result), solid(60, 60, {255, 0, 0}));
}

TEST_F(RedrawIconWithOverlay, NoIconGivesNoImage) {
    overlay(solid(10, 10, {}));
    EXPECT_EQ(IconEffects::redrawIconWithOverlay(nullptr), nullptr);
    EXPECT_EQ(device.journal.count("UIGraphicsBeginImageContextWithOptions 0×0 NO 0"), 1U);
    EXPECT_EQ(device.journal.count("UIGraphicsEndImageContext"), 1U);
}

class ImageScaledToSize : public IconEffectsOnDevice {};

TEST_F(ImageScaledToSize, DrawsOverTheWholeNewSize) {
    const ImageRef image = device.image(solid(30, 30, {10, 20, 30}));
    const ImageRef result = IconEffects::imageWithImageScaledToSize(image, {10, 20});
    const std::vector<std::string> expected = {"UIGraphicsBeginImageContextWithOptions 10×20 NO 0",
                                               "-[UIImage drawInRect:] 10×10 @3x (0, 0) 10×20",
                                               "UIGraphicsGetImageFromCurrentImageContext",
                                               "UIGraphicsEndImageContext"};
    EXPECT_EQ(device.journal.lines(), expected);
    ASSERT_NE(result, nullptr);
    EXPECT_EQ(result->size(), (platform::Size{10, 20}));
    EXPECT_EQ(result->scale(), 3);
    EXPECT_EQ(drawnPixels(result), solid(30, 60, {10, 20, 30}));
    EXPECT_EQ(platform().imageContexts.getCurrentContext(), nullptr);
}

TEST_F(ImageScaledToSize, TheSameSizeIsTheSamePicture) {
    const Pixels pixels = pattern(30, 60);
    EXPECT_EQ(drawnPixels(IconEffects::imageWithImageScaledToSize(device.image(pixels), {10, 20})),
              pixels);
}

TEST_F(ImageScaledToSize, NoSizeGivesNoImageAndClosesTheContext) {
    const ImageRef image = device.image(pattern(3, 3));
    EXPECT_EQ(IconEffects::imageWithImageScaledToSize(image, {0, 20}), nullptr);
    EXPECT_EQ(IconEffects::imageWithImageScaledToSize(image, {10, -1}), nullptr);
    EXPECT_EQ(device.journal.count("UIGraphicsEndImageContext"), 2U);
}

TEST_F(ImageScaledToSize, NoImageGivesAClearPicture) {
    EXPECT_EQ(drawnPixels(IconEffects::imageWithImageScaledToSize(nullptr, {2, 1})),
              solid(6, 3, {0, 0, 0, 0}));
}

}  // namespace velmoranth::tests::icon_overlay_test
