// The masking rule, pixel by pixel from the rule itself: alpha times 1 - S.
#include "desktop/imaging/bitmap_image.h"
#include "desktop/imaging/core_graphics.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <utility>

namespace velmoranth::desktop::masking_test {
namespace {

using platform::AlphaInfo;
using platform::BitmapImageRef;
using platform::BitmapLayout;
using platform::ColorSpace;
using platform::Data;

Samples provide(Data bytes) {
    return std::make_shared<const Data>(std::move(bytes));
}

// Every pixel another colour and alpha, premultiplied. Behind each row are so many bytes.
std::shared_ptr<DesktopBitmapImage> picture(std::size_t width, std::size_t height,
                                            std::size_t gap = 0) {
    Data bytes;
    for (std::size_t i = 0; i < width * height; ++i) {
        const std::size_t alpha = 255 - (i * 37) % 200;
        bytes.push_back(static_cast<std::uint8_t>((i * 11) % (alpha + 1)));
        bytes.push_back(static_cast<std::uint8_t>((i * 5) % (alpha + 1)));
        bytes.push_back(static_cast<std::uint8_t>(alpha));
        bytes.push_back(static_cast<std::uint8_t>(alpha));
        if ((i + 1) % width == 0) {
            bytes.insert(bytes.end(), gap, 99);
        }
    }
    return DesktopBitmapImage::createPremultiplied(provide(std::move(bytes)), {width, height},
                                                   width * 4 + gap);
}

// Expects each pixel of `masked` to be the picture's times sample(x, y) hidden, 0 to 1.
template <class Sample>
void expectMasked(const BitmapImageRef& masked, const DesktopBitmapImage& original,
                  const Sample& sample) {
    ASSERT_NE(masked, nullptr);
    const auto result = DesktopBitmapImage::of(masked);
    ASSERT_EQ(result->size(), original.size());
    EXPECT_EQ(result->layout().alphaInfo, AlphaInfo::premultipliedFirst);
    EXPECT_EQ(result->layout().byteOrder, platform::ByteOrder::little32);
    for (std::size_t y = 0; y < original.size().height; ++y) {
        for (std::size_t x = 0; x < original.size().width; ++x) {
            for (std::size_t c = 0; c < 4; ++c) {
                const double wanted = original.pixels().row(y)[x * 4 + c] * (1 - sample(x, y));
                ASSERT_EQ(result->pixels().row(y)[x * 4 + c], std::lround(wanted))
                    << x << ", " << y << ", component " << c;
            }
        }
    }
}

std::uint8_t noise(std::size_t i) {
    return static_cast<std::uint8_t>(i * 73 + (i >> 3) * 19);
}

Data noiseBytes(std::size_t count) {
    Data bytes(count);
    for (std::size_t i = 0; i < count; ++i) {
        bytes[i] = noise(i);
    }
    return bytes;
}

class MaskDepth : public testing::TestWithParam<std::size_t> {};

TEST_P(MaskDepth, EverySampleHidesItsShare) {
    const std::size_t bits = GetParam();
    const std::size_t width = 133;  // no multiple of a piece, a byte or a vector
    const std::size_t height = 7;
    const std::size_t bytesPerRow = (width * bits + 7) / 8 + 3;
    const Data samples = noiseBytes(bytesPerRow * height);
    DesktopCoreGraphics graphics;
    const auto mask = graphics.imageMaskCreate(width, height, bits, bits, bytesPerRow,
                                               DesktopDataProvider::of(provide(samples)), false);
    ASSERT_NE(mask, nullptr);
    EXPECT_TRUE(mask->isMask());
    const auto original = picture(width, height);
    expectMasked(graphics.imageCreateWithMask(original, mask), *original,
                 [&](std::size_t x, std::size_t y) {
                     const std::size_t bit = x * bits;
                     const unsigned byte = samples[y * bytesPerRow + bit / 8];
                     const unsigned greatest = (1U << bits) - 1;
                     const unsigned value = (byte >> (8 - bits - bit % 8)) & greatest;
                     return static_cast<double>(value) / greatest;
                 });
}

INSTANTIATE_TEST_SUITE_P(Bits, MaskDepth, testing::Values(1, 2, 4, 8));

TEST(Masking, FirstComponentOfEachPixelIsTheSample) {
    const std::size_t bytesPerPixel[] = {2, 3, 4, 5};
    for (const std::size_t bytes : bytesPerPixel) {
        const std::size_t width = 70;
        const std::size_t height = 3;
        const Data samples = noiseBytes(width * bytes * height);
        DesktopCoreGraphics graphics;
        const auto mask =
            graphics.imageMaskCreate(width, height, 8, bytes * 8, width * bytes,
                                     DesktopDataProvider::of(provide(samples)), false);
        const auto original = picture(width, height);
        expectMasked(
            graphics.imageCreateWithMask(original, mask), *original,
            [&](std::size_t x, std::size_t y) { return samples[(y * width + x) * bytes] / 255.0; });
    }
}

TEST(Masking, RowsMayHaveGapsInThePictureTheMaskOrBoth) {
    constexpr std::size_t kWidth = 70;
    constexpr std::size_t kHeight = 5;
    for (const std::size_t gap : {0U, 8U}) {
        for (const std::size_t maskGap : {0U, 3U}) {
            const std::size_t bytesPerRow = kWidth + maskGap;
            const Data samples = noiseBytes(bytesPerRow * kHeight);
            DesktopCoreGraphics graphics;
            const auto mask =
                graphics.imageMaskCreate(kWidth, kHeight, 8, 8, bytesPerRow,
                                         DesktopDataProvider::of(provide(samples)), false);
            const auto original = picture(kWidth, kHeight, gap);
            expectMasked(
                graphics.imageCreateWithMask(original, mask), *original,
                [&](std::size_t x, std::size_t y) { return samples[y * bytesPerRow + x] / 255.0; });
        }
    }
}

TEST(Masking, AnotherSizeTakesTheNearestSample) {
    const std::size_t sizes[][2] = {{3, 2}, {40, 50}, {7, 7}};
    for (const auto& size : sizes) {
        const Data samples = noiseBytes(size[0] * size[1]);
        DesktopCoreGraphics graphics;
        const auto mask = graphics.imageMaskCreate(
            size[0], size[1], 8, 8, size[0], DesktopDataProvider::of(provide(samples)), false);
        const auto original = picture(19, 11);
        expectMasked(graphics.imageCreateWithMask(original, mask), *original,
                     [&](std::size_t x, std::size_t y) {
                         const auto column = static_cast<std::size_t>(
                             (static_cast<double>(x) + 0.5) * static_cast<double>(size[0]) / 19);
                         const auto line = static_cast<std::size_t>(
                             (static_cast<double>(y) + 0.5) * static_cast<double>(size[1]) / 11);
                         return samples[line * size[0] + column] / 255.0;
                     });
    }
}

TEST(Masking, InterpolationMixesTheNeighbours) {
    DesktopCoreGraphics graphics;
    const Data white(4 * 4, 255);
    const auto original = DesktopBitmapImage::createPremultiplied(provide(white), {4, 1}, 16);
    const auto mask =
        graphics.imageMaskCreate(2, 1, 8, 8, 2, DesktopDataProvider::of(provide({0, 200})), true);
    const auto result = DesktopBitmapImage::of(graphics.imageCreateWithMask(original, mask));
    ASSERT_NE(result, nullptr);
    // Centres fall at -0.25, 0.25, 0.75 and 1.25 of the mask's samples.
    const int hidden[] = {0, 50, 150, 200};
    for (std::size_t x = 0; x < 4; ++x) {
        EXPECT_EQ(result->pixels().row(0)[x * 4 + 3], 255 - hidden[x]);
    }
}

TEST(Masking, GrayImageHidesWhereItIsWhite) {
    DesktopCoreGraphics graphics;
    const Data samples = noiseBytes(9 * 4);
    const auto gray = DesktopBitmapImage::create({.layout = {.width = 9,
                                                             .height = 4,
                                                             .bitsPerComponent = 8,
                                                             .bitsPerPixel = 8,
                                                             .bytesPerRow = 9,
                                                             .colorSpace = ColorSpace::deviceGray},
                                                  .samples = provide(samples),
                                                  .palette = {}});
    const auto original = picture(9, 4);
    expectMasked(graphics.imageCreateWithMask(original, gray), *original,
                 [&](std::size_t x, std::size_t y) { return samples[y * 9 + x] / 255.0; });
}

TEST(Masking, RefusesWhatCannotMask) {
    DesktopCoreGraphics graphics;
    const auto original = picture(2, 2);
    const auto mask =
        graphics.imageMaskCreate(2, 2, 8, 8, 2, DesktopDataProvider::of(provide(Data(4))), false);
    EXPECT_NE(graphics.imageCreateWithMask(original, mask), nullptr);
    EXPECT_EQ(graphics.imageCreateWithMask(nullptr, mask), nullptr);
    EXPECT_EQ(graphics.imageCreateWithMask(original, nullptr), nullptr);
    EXPECT_EQ(graphics.imageCreateWithMask(mask, mask), nullptr);
    EXPECT_EQ(graphics.imageCreateWithMask(original, original), nullptr) << "a colour image";
}

TEST(ImageMask, RefusesImpossibleParameters) {
    DesktopCoreGraphics graphics;
    const platform::DataProviderRef bytes = DesktopDataProvider::of(provide(Data(64)));
    EXPECT_NE(graphics.imageMaskCreate(8, 8, 8, 8, 8, bytes, false), nullptr);
    EXPECT_EQ(graphics.imageMaskCreate(0, 8, 8, 8, 8, bytes, false), nullptr);
    EXPECT_EQ(graphics.imageMaskCreate(8, 0, 8, 8, 8, bytes, false), nullptr);
    EXPECT_EQ(graphics.imageMaskCreate(8, 8, 3, 8, 8, bytes, false), nullptr);
    EXPECT_EQ(graphics.imageMaskCreate(4, 4, 16, 16, 8, bytes, false), nullptr);
    EXPECT_EQ(graphics.imageMaskCreate(8, 8, 8, 8, 7, bytes, false), nullptr) << "row too short";
    EXPECT_EQ(graphics.imageMaskCreate(8, 9, 8, 8, 8, bytes, false), nullptr) << "too few bytes";
    EXPECT_EQ(graphics.imageMaskCreate(8, 8, 8, 8, 8, nullptr, false), nullptr);
    EXPECT_EQ(graphics.imageMaskCreate(SIZE_MAX, 2, 8, 8, SIZE_MAX, bytes, false), nullptr);
    EXPECT_EQ(graphics.imageMaskCreate(8, 2, 8, 8, SIZE_MAX / 2 + 1, bytes, false), nullptr);
}

TEST(ImageMask, KeepsItsRawParametersAndBytes) {
    DesktopCoreGraphics graphics;
    const Samples bytes = provide(Data(4 * 40));
    const auto mask =
        graphics.imageMaskCreate(8, 4, 8, 32, 40, DesktopDataProvider::of(bytes), false);
    ASSERT_NE(mask, nullptr);
    EXPECT_EQ(mask->layout().bitsPerPixel, 32U);
    EXPECT_EQ(mask->layout().bytesPerRow, 40U);
    EXPECT_EQ(samplesOf(mask->dataProvider()), bytes);
}

}  // namespace
}  // namespace velmoranth::desktop::masking_test
