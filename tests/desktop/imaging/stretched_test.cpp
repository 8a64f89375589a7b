#include "desktop/imaging/resampling.h"

#include "bitmaps.h"
#include <gtest/gtest.h>

#include <vector>

namespace velmoranth::desktop::test_images::stretched_test {

namespace {

using platform::Rect;

constexpr PixelSize kSize{4, 3};
constexpr Rect kTarget{{1, 2}, {8, 9}};  // of a context of 12 × 12
constexpr PixelSize kTargetSize{8, 9};

std::shared_ptr<DesktopBitmapImage> picture() {
    return bitmap(kSize.width, kSize.height, distinct(kSize.width * kSize.height));
}

// What a context of 12 × 12 shows after `draw`.
std::vector<Bgra> drawn(const auto& draw) {
    const auto target = context(12, 12);
    target->fillRect({{0, 0}, {6, 12}}, {1, 0, 0, 1});
    draw(*target);
    return pixelsOf(target->pixels());
}

std::vector<Bgra> drawn(const std::shared_ptr<DesktopBitmapImage>& image, const Rect& rect,
                        double opacity = 1) {
    return drawn([&](DesktopGraphicsContext& target) { target.drawImage(image, rect, opacity); });
}

}  // namespace

TEST(StretchedImage, IsKeptWhenTheSameSizeIsAskedForTwiceInARow) {
    const auto image = picture();
    EXPECT_EQ(image->stretched({8, 9}), nullptr);
    const Samples kept = image->stretched({8, 9});
    ASSERT_NE(kept, nullptr);
    EXPECT_EQ(*kept, stretch(image->pixels(), {8, 9}));
    EXPECT_EQ(image->stretched({8, 9}), kept);
    // Another size now and then does not drive it out.
    EXPECT_EQ(image->stretched({9, 9}), nullptr);
    EXPECT_EQ(image->stretched({8, 9}), kept);
    EXPECT_EQ(image->stretched({9, 9}), nullptr);
    // Twice in a row does.
    const Samples other = image->stretched({9, 9});
    ASSERT_NE(other, nullptr);
    EXPECT_EQ(*other, stretch(image->pixels(), {9, 9}));
    EXPECT_EQ(image->stretched({8, 9}), nullptr);
}

TEST(StretchedImage, IsNoneOfItsOwnSizeNorOfOneThatTakesMuchMemory) {
    const auto image = picture();
    constexpr std::size_t kMostPixels = DesktopBitmapImage::kMostStretchedBytes / 4;
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(image->stretched(kSize), nullptr);
        EXPECT_EQ(image->stretched({0, 9}), nullptr);
        EXPECT_EQ(image->stretched({1024, kMostPixels / 1024 + 1}), nullptr);
    }
    EXPECT_EQ(image->stretched({1024, kMostPixels / 1024}), nullptr);
    EXPECT_NE(image->stretched({1024, kMostPixels / 1024}), nullptr);
}

TEST(StretchedImage, IsDrawnAsThePictureItselfIs) {
    for (const double opacity : {1.0, 0.4}) {
        const auto image = picture();
        const auto first = drawn(image, kTarget, opacity);
        EXPECT_EQ(first, drawn([&](DesktopGraphicsContext& target) {
                      target.drawPixels(image->pixels(), kTarget, opacity);
                  }));
        EXPECT_EQ(drawn(image, kTarget, opacity), first);
        EXPECT_EQ(drawn(image, kTarget, opacity), first);
        // It was drawn from what is kept: once more is not the first time.
        EXPECT_NE(image->stretched(kTargetSize), nullptr);
    }
}

TEST(StretchedImage, IsDrawnThroughAClip) {
    const auto image = picture();
    const auto clipped = [&] {
        return drawn([&](DesktopGraphicsContext& target) {
            target.clipToRect(kTarget, 3);
            target.drawImage(image, kTarget);
        });
    };
    const auto first = clipped();
    EXPECT_NE(first, drawn(picture(), kTarget));
    EXPECT_EQ(clipped(), first);
    EXPECT_EQ(clipped(), first);
    EXPECT_NE(image->stretched(kTargetSize), nullptr);
}

// Of these the whole one is not what is wanted.
TEST(StretchedImage, IsNotMadeOfWhatIsCutOffFlippedOrBetweenPixels) {
    const auto expectNone = [](const auto& draw) {
        const auto image = picture();
        const auto first = drawn([&](DesktopGraphicsContext& target) { draw(target, image); });
        EXPECT_EQ(drawn([&](DesktopGraphicsContext& target) { draw(target, image); }), first);
        EXPECT_EQ(image->stretched(kTargetSize), nullptr);
    };
    expectNone([](DesktopGraphicsContext& target, const auto& image) {
        target.clipToRect({{1, 2}, {7, 9}});
        target.drawImage(image, kTarget);
    });
    expectNone([](DesktopGraphicsContext& target, const auto& image) {
        target.drawImage(image, {{5, 2}, {8, 9}});
    });
    expectNone([](DesktopGraphicsContext& target, const auto& image) {
        target.drawImage(image, {{1.5, 2}, {8, 9}});
    });
    expectNone([](DesktopGraphicsContext& target, const auto& image) {
        target.translateCTM(12, 0);
        target.scaleCTM(-1, 1);
        target.drawImage(image, kTarget);
    });
    expectNone([](DesktopGraphicsContext& target, const auto& image) {
        target.drawImage(image, kTarget, 0);
    });
}

// What a context begins with is taken as it is, and nothing else is.
TEST(StretchedImage, IsTheWholeOfAContextThatBeginsWithIt) {
    const std::vector<Bgra> half = flat(12, {40, 50, 60, 128});
    const auto image = bitmap(kSize.width, kSize.height, half);
    const PixelView source = image->pixels();
    const auto begunWith = [&](const Rect& rect, double opacity, auto... content) {
        const auto target = context(8, 9, 1, content...);
        target->drawPixels(source, rect, opacity);
        return pixelsOf(target->pixels());
    };
    constexpr Rect kWhole{{0, 0}, {8, 9}};
    EXPECT_EQ(begunWith(kWhole, 1), flat(72, {40, 50, 60, 128}));
    EXPECT_EQ(begunWith(kWhole, 0.5), flat(72, {20, 25, 30, 64}));
    EXPECT_EQ(begunWith(kWhole, 1, DesktopGraphicsContext::Content::opaque),
              flat(72, {40, 50, 60, 255}));
    EXPECT_EQ(begunWith({{0.5, 0}, {7.5, 9}}, 1).front(), (Bgra{20, 25, 30, 64}));
    EXPECT_EQ(begunWith({{1, 0}, {7, 9}}, 1).front(), kClear);
    const auto clipped = context(8, 9);
    clipped->clipToRect(kWhole, 4);
    clipped->drawPixels(source, kWhole);
    EXPECT_EQ(at(*clipped, 0, 0), kClear);
    EXPECT_EQ(at(*clipped, 4, 4), (Bgra{40, 50, 60, 128}));
    // More is drawn over it, and a snapshot stays as it was.
    const auto target = context(8, 9);
    target->drawPixels(source, kWhole);
    const auto snapshot = target->createImage();
    target->fillRect(kWhole, {1, 0, 0, 1});
    EXPECT_EQ(pixelsOf(snapshot), flat(72, {40, 50, 60, 128}));
    EXPECT_EQ(pixelsOf(target->pixels()), flat(72, kRed));
}

}  // namespace velmoranth::desktop::test_images::stretched_test
