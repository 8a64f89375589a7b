#include "desktop/imaging/core_graphics.h"

#include "desktop/imaging/mask_samples.h"

#include "bitmaps.h"
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <memory>
#include <vector>

namespace velmoranth::desktop::test_images::core_graphics_test {

namespace {

using platform::AlphaInfo;
using platform::BitmapImageRef;
using platform::BitmapLayout;
using platform::ColorSpace;
using platform::Data;

constexpr std::size_t kHuge = std::numeric_limits<std::size_t>::max();

Samples bytes(Data data) {
    return std::make_shared<const Data>(std::move(data));
}

Samples zeroes(std::size_t count) {
    return bytes(Data(count));
}

BitmapImageRef grayImage(std::size_t width, std::size_t height, Data samples,
                         std::size_t bits = 8) {
    return DesktopBitmapImage::create({{.width = width,
                                        .height = height,
                                        .bitsPerComponent = bits,
                                        .bitsPerPixel = bits,
                                        .bytesPerRow = width * bits / 8,
                                        .colorSpace = ColorSpace::deviceGray},
                                       bytes(std::move(samples)),
                                       {}});
}

// The alpha that a mask leaves of an opaque picture.
std::vector<unsigned> alphaThrough(const BitmapImageRef& mask, std::size_t width,
                                   std::size_t height) {
    DesktopCoreGraphics graphics;
    const BitmapImageRef image =
        graphics.imageCreateWithMask(bitmap(width, height, flat(width * height, kRed)), mask);
    std::vector<unsigned> alpha;
    for (const Bgra& pixel : pixelsOf(image)) {
        alpha.push_back(pixel[3]);
    }
    return alpha;
}

}  // namespace

TEST(ImageMask, TakesSamplesOf1248BitsOnly) {
    DesktopCoreGraphics graphics;
    for (std::size_t bits = 0; bits <= 33; ++bits) {
        const bool can = bits == 1 || bits == 2 || bits == 4 || bits == 8;
        EXPECT_EQ(graphics.imageMaskCreate(2, 2, bits, 64, 16, DesktopDataProvider::of(zeroes(32)),
                                           false) != nullptr,
                  can)
            << bits;
    }
}

TEST(ImageMask, KeepsItsRawValues) {
    DesktopCoreGraphics graphics;
    const Samples samples = zeroes(100);
    const BitmapImageRef mask =
        graphics.imageMaskCreate(3, 5, 8, 32, 20, DesktopDataProvider::of(samples), true);
    ASSERT_NE(mask, nullptr);
    EXPECT_TRUE(mask->isMask());
    EXPECT_EQ(mask->layout().width, 3U);
    EXPECT_EQ(mask->layout().height, 5U);
    EXPECT_EQ(mask->layout().bitsPerComponent, 8U);
    EXPECT_EQ(mask->layout().bitsPerPixel, 32U);
    EXPECT_EQ(mask->layout().bytesPerRow, 20U);
    EXPECT_EQ(samplesOf(mask->dataProvider()), samples);
}

TEST(ImageMask, ImpossibleValuesGiveNil) {
    DesktopCoreGraphics graphics;
    const platform::DataProviderRef some = DesktopDataProvider::of(zeroes(64));
    EXPECT_EQ(graphics.imageMaskCreate(0, 4, 8, 8, 8, some, false), nullptr);
    EXPECT_EQ(graphics.imageMaskCreate(4, 0, 8, 8, 8, some, false), nullptr);
    EXPECT_EQ(graphics.imageMaskCreate(4, 4, 8, 8, 3, some, false), nullptr);  // row too short
    EXPECT_EQ(graphics.imageMaskCreate(4, 4, 8, 4, 8, some, false), nullptr);
    EXPECT_EQ(graphics.imageMaskCreate(4, 9, 8, 8, 8, some, false), nullptr);  // too few bytes
    EXPECT_EQ(graphics.imageMaskCreate(4, 4, 8, 8, 8, nullptr, false), nullptr);
    EXPECT_EQ(graphics.imageMaskCreate(kHuge, 4, 8, 8, 8, some, false), nullptr);
    EXPECT_EQ(graphics.imageMaskCreate(4, kHuge, 8, 8, 8, some, false), nullptr);
    EXPECT_EQ(graphics.imageMaskCreate(4, 4, 8, kHuge, 8, some, false), nullptr);
    EXPECT_EQ(graphics.imageMaskCreate(4, 4, 8, 8, kHuge, some, false), nullptr);
    EXPECT_EQ(graphics.imageMaskCreate(4, 2, 8, 8, kHuge / 2 + 1, some, false), nullptr);
    EXPECT_NE(graphics.imageMaskCreate(4, 8, 8, 8, 8, some, false), nullptr);
}

TEST(ImageMask, ReadsPackedSamplesFromTheMostSignificantBit) {
    DesktopCoreGraphics graphics;
    using Alphas = std::vector<unsigned>;
    const BitmapImageRef one = graphics.imageMaskCreate(
        8, 1, 1, 1, 1, DesktopDataProvider::of(bytes({0b10110001})), false);
    EXPECT_EQ(alphaThrough(one, 8, 1), (Alphas{0, 255, 0, 0, 255, 255, 255, 0}));
    const BitmapImageRef two = graphics.imageMaskCreate(
        4, 1, 2, 2, 1, DesktopDataProvider::of(bytes({0b00011011})), false);
    EXPECT_EQ(alphaThrough(two, 4, 1), (Alphas{255, 170, 85, 0}));
    const BitmapImageRef four =
        graphics.imageMaskCreate(2, 1, 4, 4, 1, DesktopDataProvider::of(bytes({0x1C})), false);
    EXPECT_EQ(alphaThrough(four, 2, 1), (Alphas{238, 51}));
    // The first bit of each three, across bytes.
    const BitmapImageRef gaps = graphics.imageMaskCreate(
        5, 1, 1, 3, 2, DesktopDataProvider::of(bytes({0b10001010, 0b00010000})), false);
    EXPECT_EQ(alphaThrough(gaps, 5, 1), (Alphas{0, 255, 0, 255, 255}));
}

TEST(ImageMask, SkipsWhatElseAPixelAndARowHold) {
    DesktopCoreGraphics graphics;
    const BitmapImageRef mask = graphics.imageMaskCreate(
        2, 2, 8, 24, 8,
        DesktopDataProvider::of(bytes({10, 1, 1, 20, 1, 1, 99, 99, 30, 1, 1, 40, 1, 1, 99, 99})),
        false);
    EXPECT_EQ(alphaThrough(mask, 2, 2), (std::vector<unsigned>{245, 235, 225, 215}));
}

TEST(ImageMask, IsStretchedSharpOrSmooth) {
    DesktopCoreGraphics graphics;
    const platform::DataProviderRef samples = DesktopDataProvider::of(bytes({0, 255}));
    EXPECT_EQ(alphaThrough(graphics.imageMaskCreate(2, 1, 8, 8, 2, samples, false), 4, 1),
              (std::vector<unsigned>{255, 255, 0, 0}));
    EXPECT_EQ(alphaThrough(graphics.imageMaskCreate(2, 1, 8, 8, 2, samples, true), 4, 1),
              (std::vector<unsigned>{255, 191, 64, 0}));
    EXPECT_EQ(alphaThrough(graphics.imageMaskCreate(1, 2, 8, 8, 1, samples, true), 1, 4),
              (std::vector<unsigned>{255, 191, 64, 0}));
}

TEST(ImageMask, IsDrawnAsBlackThatItsSamplesHide) {
    DesktopCoreGraphics graphics;
    const BitmapImageRef mask = graphics.imageMaskCreate(
        3, 1, 8, 8, 3, DesktopDataProvider::of(bytes({0, 100, 255})), false);
    EXPECT_EQ(pixelsOf(mask), (std::vector<Bgra>{{0, 0, 0, 255}, {0, 0, 0, 155}, {0, 0, 0, 0}}));
}

TEST(ImageCreateWithMask, GrayImagesHideAsMasksDo) {
    EXPECT_EQ(alphaThrough(grayImage(3, 1, {0, 100, 255}), 3, 1),
              (std::vector<unsigned>{255, 155, 0}));
    // Of 16 bits the more significant byte.
    EXPECT_EQ(alphaThrough(grayImage(2, 1, {0x40, 0xFF, 0xFF, 0x00}, 16), 2, 1),
              (std::vector<unsigned>{191, 0}));
    // They are stretched smoothly.
    EXPECT_EQ(alphaThrough(grayImage(2, 1, {0, 255}), 4, 1),
              (std::vector<unsigned>{255, 191, 64, 0}));
}

TEST(ImageCreateWithMask, ImpossiblePairsGiveNil) {
    DesktopCoreGraphics graphics;
    const BitmapImageRef picture = bitmap(2, 2, distinct(4));
    const BitmapImageRef mask =
        graphics.imageMaskCreate(2, 2, 8, 8, 2, DesktopDataProvider::of(zeroes(4)), false);
    const BitmapImageRef grayWithAlpha =
        DesktopBitmapImage::create({{.width = 2,
                                     .height = 2,
                                     .bitsPerComponent = 8,
                                     .bitsPerPixel = 16,
                                     .bytesPerRow = 4,
                                     .colorSpace = ColorSpace::deviceGray,
                                     .alphaInfo = AlphaInfo::last},
                                    zeroes(8),
                                    {}});
    ASSERT_NE(grayWithAlpha, nullptr);
    EXPECT_NE(graphics.imageCreateWithMask(picture, mask), nullptr);
    EXPECT_EQ(graphics.imageCreateWithMask(nullptr, mask), nullptr);
    EXPECT_EQ(graphics.imageCreateWithMask(picture, nullptr), nullptr);
    EXPECT_EQ(graphics.imageCreateWithMask(mask, mask), nullptr);
    EXPECT_EQ(graphics.imageCreateWithMask(picture, picture), nullptr);
    EXPECT_EQ(graphics.imageCreateWithMask(picture, grayWithAlpha), nullptr);
}

TEST(ImageCreateWithMask, LeavesTheImageItself) {
    DesktopCoreGraphics graphics;
    const std::vector<Bgra> before = distinct(4);
    const BitmapImageRef picture = bitmap(2, 2, before);
    (void)graphics.imageCreateWithMask(picture, grayImage(2, 2, {255, 255, 255, 255}));
    EXPECT_EQ(pixelsOf(picture), before);
}

TEST(BitmapImage, ImpossibleLayoutsGiveNil) {
    const auto image = [](std::size_t width, std::size_t height, std::size_t bytesPerRow,
                          Samples samples) {
        return DesktopBitmapImage::createPremultiplied(std::move(samples), {width, height},
                                                       bytesPerRow);
    };
    EXPECT_NE(image(2, 2, 8, zeroes(16)), nullptr);
    EXPECT_EQ(image(2, 2, 7, zeroes(16)), nullptr);
    EXPECT_EQ(image(2, 2, 8, zeroes(15)), nullptr);
    EXPECT_EQ(image(2, 2, 8, nullptr), nullptr);
    EXPECT_EQ(image(0, 2, 8, zeroes(16)), nullptr);
    EXPECT_EQ(image(kHuge, 1, kHuge, zeroes(16)), nullptr);
    EXPECT_EQ(image(kMaxBitmapSide + 1, 1, (kMaxBitmapSide + 1) * 4, zeroes(1 << 20)), nullptr);
    EXPECT_EQ(bitmapBytes({2, 3}, 4, 0), 24U);
    EXPECT_EQ(bitmapBytes({2, 3}, 4, 10), 30U);
    EXPECT_EQ(bitmapBytes({2, 3}, 4, 7), std::nullopt);
    EXPECT_EQ(bitmapBytes({kMaxBitmapSide, kMaxBitmapSide}, 4, 0), std::nullopt);
    EXPECT_EQ(bitmapBytes({2, 3}, 4, kHuge), std::nullopt);
}

TEST(BitmapImage, KeepsSamplesAsTheyAreStoredAndDrawsThemPremultiplied) {
    const Samples samples = bytes({255, 100, 0, 128});
    const BitmapImageRef image = DesktopBitmapImage::create({{.width = 1,
                                                              .height = 1,
                                                              .bitsPerComponent = 8,
                                                              .bitsPerPixel = 32,
                                                              .bytesPerRow = 4,
                                                              .colorSpace = ColorSpace::deviceRGB,
                                                              .alphaInfo = AlphaInfo::last},
                                                             samples,
                                                             {}});
    ASSERT_NE(image, nullptr);
    EXPECT_EQ(samplesOf(image->dataProvider()), samples);
    EXPECT_EQ(image->layout().alphaInfo, AlphaInfo::last);
    EXPECT_FALSE(image->isMask());
    EXPECT_EQ(pixelsOf(image), (std::vector<Bgra>{{0, 50, 128, 128}}));
    EXPECT_EQ(DesktopBitmapImage::of(nullptr), nullptr);
}

TEST(BitmapContextCreate, OnlyTheSupportedCombinations) {
    DesktopCoreGraphics graphics;
    EXPECT_NE(graphics.bitmapContextCreate(3, 3, 8, 0, ColorSpace::deviceGray, 0), nullptr);
    EXPECT_NE(graphics.bitmapContextCreate(3, 3, 8, 0, ColorSpace::deviceRGB, 8194), nullptr);
    EXPECT_EQ(graphics.bitmapContextCreate(3, 3, 8, 0, ColorSpace::deviceRGB, 0), nullptr);
    EXPECT_EQ(graphics.bitmapContextCreate(3, 3, 8, 0, ColorSpace::deviceGray, 8194), nullptr);
    EXPECT_EQ(graphics.bitmapContextCreate(3, 3, 16, 0, ColorSpace::deviceRGB, 8194), nullptr);
    EXPECT_EQ(graphics.bitmapContextCreate(3, 3, 8, 0, ColorSpace::indexed, 0), nullptr);
    constexpr std::int64_t kLeast = std::numeric_limits<std::int64_t>::min();
    constexpr std::int64_t kGreatest = std::numeric_limits<std::int64_t>::max();
    for (const std::int64_t size : {kLeast, std::int64_t{-1}, std::int64_t{0}, kGreatest}) {
        EXPECT_EQ(graphics.bitmapContextCreate(size, 3, 8, 0, ColorSpace::deviceGray, 0), nullptr);
        EXPECT_EQ(graphics.bitmapContextCreate(3, size, 8, 0, ColorSpace::deviceGray, 0), nullptr);
    }
}

TEST(BitmapContextCreate, TakesGivenRowsThatHoldItsPixels) {
    DesktopCoreGraphics graphics;
    const auto rows = [&](std::size_t bytesPerRow, ColorSpace space, std::uint32_t info) {
        const auto made = graphics.bitmapContextCreate(3, 2, 8, bytesPerRow, space, info);
        return made ? made->createImage()->layout().bytesPerRow : 0;
    };
    EXPECT_EQ(rows(32, ColorSpace::deviceRGB, 8194), 32U);
    EXPECT_EQ(rows(16, ColorSpace::deviceGray, 0), 16U);
    EXPECT_EQ(rows(11, ColorSpace::deviceRGB, 8194), 0U);
    EXPECT_EQ(rows(2, ColorSpace::deviceGray, 0), 0U);
    EXPECT_EQ(rows(kHuge, ColorSpace::deviceRGB, 8194), 0U);
    EXPECT_EQ(rows(kHuge, ColorSpace::deviceGray, 0), 0U);
}

TEST(Gradient, ImpossibleOnesGiveNil) {
    DesktopCoreGraphics graphics;
    const auto make = [&](ColorSpace space, const std::vector<double>& components,
                          const std::optional<std::vector<double>>& locations = std::nullopt) {
        return graphics.gradientCreateWithColorComponents(space, components, locations);
    };
    EXPECT_NE(make(ColorSpace::deviceGray, {0, 1, 1, 1}), nullptr);
    EXPECT_NE(make(ColorSpace::deviceRGB, {0, 1, 1, 1}), nullptr);
    EXPECT_EQ(make(ColorSpace::indexed, {0, 1, 1, 1}), nullptr);
    EXPECT_EQ(make(ColorSpace::deviceGray, {}), nullptr);
    EXPECT_EQ(make(ColorSpace::deviceGray, {0, 1, 1}), nullptr);
    EXPECT_EQ(make(ColorSpace::deviceRGB, {0, 1, 1, 1, 0}), nullptr);
    EXPECT_EQ(make(ColorSpace::deviceGray, {0, 1, 1, 1}, std::vector<double>{0}), nullptr);
    EXPECT_EQ(make(ColorSpace::deviceGray, {0, NAN, 1, 1}), nullptr);
    EXPECT_EQ(make(ColorSpace::deviceGray, {0, 1}, std::vector<double>{INFINITY}), nullptr);
}

}  // namespace velmoranth::desktop::test_images::core_graphics_test
