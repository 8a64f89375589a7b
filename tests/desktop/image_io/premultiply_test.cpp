#include "desktop/image_io/image_io.h"
#include "platform/core_graphics.h"

#include "test_images.h"
#include <gtest/gtest.h>

#include <cmath>
#include <memory>

namespace velmoranth::desktop::test_images::premultiply_test {
namespace {

using platform::AlphaInfo;
using platform::BitmapLayout;
using platform::ByteOrder;
using platform::ColorSpace;

constexpr ColorSpace kGray = ColorSpace::deviceGray;
constexpr ColorSpace kRgb = ColorSpace::deviceRGB;

Data converted(const BitmapLayout& layout, Data samples, std::vector<PaletteEntry> palette = {}) {
    return toPremultipliedBgra({.layout = layout,
                                .samples = std::make_shared<Data>(std::move(samples)),
                                .palette = std::move(palette)});
}

// A layout of one row.
BitmapLayout row(std::size_t width, std::size_t component, std::size_t pixel, ColorSpace space,
                 AlphaInfo alpha, ByteOrder order = ByteOrder::standard) {
    return {width, 1, component, pixel, (width * pixel + 7) / 8, space, alpha, order};
}

TEST(ToPremultipliedBgra, RoundsEveryColourAndAlphaToNearest) {
    Data samples;
    Data expected;
    for (unsigned alpha = 0; alpha < 256; ++alpha) {
        for (unsigned color = 0; color < 256; ++color) {
            const auto other = static_cast<std::uint8_t>(255 - color);
            const auto third = static_cast<std::uint8_t>(color ^ 0x5A);
            samples.insert(samples.end(), {static_cast<std::uint8_t>(color), other, third,
                                           static_cast<std::uint8_t>(alpha)});
            const auto product = [alpha](unsigned value) {
                return static_cast<std::uint8_t>(std::lround(value * alpha / 255.0));
            };
            expected.insert(expected.end(), {product(third), product(other), product(color),
                                             static_cast<std::uint8_t>(alpha)});
        }
    }
    EXPECT_EQ(converted(row(65536, 8, 32, kRgb, AlphaInfo::last), samples), expected);
}

// The pixel is red 200, green 100, blue 50, alpha 128 in each of these orders.
TEST(ToPremultipliedBgra, EveryOrderOfFourComponents) {
    struct Case {
        AlphaInfo alpha;
        ByteOrder order;
        Data sample;
        Data expected;
    };

    const Data straight = {25, 50, 100, 128};
    const Data kept = {50, 100, 128, 128};  // red is cut at alpha
    const Data opaque = {50, 100, 200, 255};
    constexpr ByteOrder kStandard = ByteOrder::standard;
    constexpr ByteOrder kLittle = ByteOrder::little32;
    for (const Case& item : {
             Case{AlphaInfo::last, kStandard, {200, 100, 50, 128}, straight},
             Case{AlphaInfo::first, kStandard, {128, 200, 100, 50}, straight},
             Case{AlphaInfo::last, kLittle, {128, 50, 100, 200}, straight},
             Case{AlphaInfo::first, kLittle, {50, 100, 200, 128}, straight},
             Case{AlphaInfo::premultipliedLast, kStandard, {200, 100, 50, 128}, kept},
             Case{AlphaInfo::premultipliedFirst, kStandard, {128, 200, 100, 50}, kept},
             Case{AlphaInfo::premultipliedLast, kLittle, {128, 50, 100, 200}, kept},
             Case{AlphaInfo::premultipliedFirst, kLittle, {50, 100, 200, 128}, kept},
             Case{AlphaInfo::noneSkipLast, kStandard, {200, 100, 50, 128}, opaque},
             Case{AlphaInfo::noneSkipFirst, kStandard, {128, 200, 100, 50}, opaque},
             Case{AlphaInfo::noneSkipLast, kLittle, {128, 50, 100, 200}, opaque},
             Case{AlphaInfo::noneSkipFirst, kLittle, {50, 100, 200, 128}, opaque},
         }) {
        EXPECT_EQ(converted(row(1, 8, 32, kRgb, item.alpha, item.order), item.sample),
                  item.expected)
            << static_cast<int>(item.alpha) << " " << static_cast<int>(item.order);
    }
}

TEST(ToPremultipliedBgra, NoColourExceedsItsAlpha) {
    EXPECT_EQ(converted(row(2, 8, 32, kRgb, AlphaInfo::premultipliedFirst, ByteOrder::little32),
                        {200, 150, 129, 128, 128, 127, 0, 128}),
              (Data{128, 128, 128, 128, 128, 127, 0, 128}));
}

TEST(ToPremultipliedBgra, Rgb) {
    EXPECT_EQ(converted(row(2, 8, 24, kRgb, AlphaInfo::none), {1, 2, 3, 4, 5, 6}),
              (Data{3, 2, 1, 255, 6, 5, 4, 255}));
}

TEST(ToPremultipliedBgra, GrayOfEveryDepth) {
    EXPECT_EQ(converted(row(2, 1, 1, kGray, AlphaInfo::none), {0b01000000}),
              (Data{0, 0, 0, 255, 255, 255, 255, 255}));
    EXPECT_EQ(converted(row(2, 2, 2, kGray, AlphaInfo::none), {0b01100000}),
              (Data{85, 85, 85, 255, 170, 170, 170, 255}));
    EXPECT_EQ(converted(row(2, 4, 4, kGray, AlphaInfo::none), {0x1E}),
              (Data{17, 17, 17, 255, 238, 238, 238, 255}));
    EXPECT_EQ(converted(row(1, 8, 8, kGray, AlphaInfo::none), {77}), (Data{77, 77, 77, 255}));
    EXPECT_EQ(converted(row(1, 16, 16, kGray, AlphaInfo::none), {0x80, 0x80}),
              (Data{128, 128, 128, 255}));
}

TEST(ToPremultipliedBgra, GrayWithAlpha) {
    EXPECT_EQ(converted(row(1, 8, 16, kGray, AlphaInfo::last), {200, 128}),
              (Data{100, 100, 100, 128}));
}

TEST(ToPremultipliedBgra, SixteenBitsRoundOnce) {
    Data samples;
    Data expected;
    for (unsigned step = 0; step < 2000; ++step) {
        const unsigned color = step * 7919U % 65536U;
        const unsigned alpha = step * 104729U % 65536U;
        const auto append = [&](unsigned value) {
            samples.insert(samples.end(), {static_cast<std::uint8_t>(value >> 8),
                                           static_cast<std::uint8_t>(value)});
        };
        append(color);
        append(0);
        append(65535);
        append(alpha);
        const auto rounded = [](double value) {
            return static_cast<std::uint8_t>(std::lround(value * 255));
        };
        expected.insert(expected.end(),
                        {rounded(alpha / 65535.0), 0, rounded(color / 65535.0 * alpha / 65535.0),
                         rounded(alpha / 65535.0)});
    }
    EXPECT_EQ(converted(row(2000, 16, 64, kRgb, AlphaInfo::last), samples), expected);
}

TEST(ToPremultipliedBgra, SixteenBitRgb) {
    EXPECT_EQ(converted(row(1, 16, 48, kRgb, AlphaInfo::none), {255, 255, 0x80, 0x80, 0, 0}),
              (Data{0, 128, 255, 255}));
}

TEST(ToPremultipliedBgra, PaletteAndIndicesBeyondIt) {
    EXPECT_EQ(converted(row(3, 2, 2, ColorSpace::indexed, AlphaInfo::none), {0b00011000},
                        {{1, 2, 3}, {4, 5, 6}}),
              (Data{3, 2, 1, 255, 6, 5, 4, 255, 0, 0, 0, 255}));
}

TEST(ToPremultipliedBgra, AlphaAloneIsBlack) {
    EXPECT_EQ(converted(row(1, 8, 8, kGray, AlphaInfo::only), {90}), (Data{0, 0, 0, 90}));
}

TEST(ToPremultipliedBgra, RowsWithBytesBetweenThem) {
    const BitmapLayout layout{1, 2, 8, 24, 5, kRgb, AlphaInfo::none, ByteOrder::standard};
    EXPECT_EQ(converted(layout, {1, 2, 3, 99, 99, 4, 5, 6, 99, 99}),
              (Data{3, 2, 1, 255, 6, 5, 4, 255}));
}

TEST(ToPremultipliedBgra, NothingForTooFewSamplesOrAnotherLayout) {
    EXPECT_TRUE(converted(row(2, 8, 32, kRgb, AlphaInfo::last), Data(7)).empty());
    EXPECT_TRUE(converted(row(1, 5, 16, kRgb, AlphaInfo::none), Data(8)).empty());
    EXPECT_TRUE(converted(row(1, 8, 32, kGray, AlphaInfo::last), Data(8)).empty());
    EXPECT_TRUE(toPremultipliedBgra({}).empty());
}

}  // namespace
}  // namespace velmoranth::desktop::test_images::premultiply_test
