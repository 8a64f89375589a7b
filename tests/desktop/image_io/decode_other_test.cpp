// JPEG, GIF and TIFF.
#include "desktop/image_io/image_io.h"
#include "platform/core_graphics.h"

#include "test_images.h"
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <string>

namespace velmoranth::desktop::test_images::decode_other_test {
namespace {

using platform::AlphaInfo;
using platform::BitmapLayout;
using platform::ByteOrder;
using platform::ColorSpace;

int largestDifference(const Data& left, const Data& right) {
    if (left.size() != right.size()) {
        return 256;
    }
    int largest = 0;
    for (std::size_t i = 0; i < left.size(); ++i) {
        largest = std::max(largest, std::abs(left[i] - right[i]));
    }
    return largest;
}

// Smooth, so that little is lost.
Data ramps(std::size_t width, std::size_t height, std::size_t components) {
    Data samples;
    for (std::size_t y = 0; y < height; ++y) {
        for (std::size_t x = 0; x < width; ++x) {
            for (std::size_t i = 0; i < components; ++i) {
                samples.push_back(static_cast<std::uint8_t>(40 * i + 3 * x + 2 * y));
            }
        }
    }
    return samples;
}

TEST(DecodeJpeg, RgbInOrder) {
    for (const bool progressive : {false, true}) {
        const Data samples = ramps(21, 17, 3);
        const DecodedImage image = decoded(jpegFile(21, 17, 3, samples, progressive));
        EXPECT_EQ(image.layout, (BitmapLayout{21, 17, 8, 24, 63, ColorSpace::deviceRGB,
                                              AlphaInfo::none, ByteOrder::standard}));
        EXPECT_LE(largestDifference(*image.samples, samples), 4);
    }
}

TEST(DecodeJpeg, GrayStaysGray) {
    const Data samples = ramps(21, 17, 1);
    const DecodedImage image = decoded(jpegFile(21, 17, 1, samples));
    EXPECT_EQ(image.layout, (BitmapLayout{21, 17, 8, 8, 21, ColorSpace::deviceGray, AlphaInfo::none,
                                          ByteOrder::standard}));
    EXPECT_LE(largestDifference(*image.samples, samples), 3);
}

TEST(DecodeJpeg, InksBecomeRgb) {
    const Data inks = ramps(16, 16, 4);
    Data expected;
    for (std::size_t i = 0; i < inks.size(); i += 4) {
        for (std::size_t ink = 0; ink < 3; ++ink) {
            expected.push_back(static_cast<std::uint8_t>(inks[i + ink] * inks[i + 3] / 255));
        }
    }
    const DecodedImage image = decoded(jpegFile(16, 16, 4, inks));
    EXPECT_EQ(image.layout.bitsPerPixel, 24U);
    EXPECT_LE(largestDifference(*image.samples, expected), 5);
}

TEST(DecodeJpeg, BytesAfterTheEndDoNotMatter) {
    Data file = jpegFile(8, 8, 3, ramps(8, 8, 3));
    const std::size_t size = file.size();
    file.resize(size + 100);
    EXPECT_EQ(*decoded(file).samples, *decoded(std::span(file).first(size)).samples);
}

Data indices(std::size_t size) {
    Data data = noise(size);
    std::ranges::for_each(data, [](std::uint8_t& byte) { byte %= 16; });
    return data;
}

class DecodeGif : public testing::TestWithParam<bool> {};

TEST_P(DecodeGif, OpaqueIsIndexed) {
    const Data pixels = indices(13 * 11);
    const DecodedImage image = decoded(gifFile({.interlaced = GetParam()}, pixels));
    EXPECT_EQ(image.layout, (BitmapLayout{13, 11, 8, 8, 13, ColorSpace::indexed, AlphaInfo::none,
                                          ByteOrder::standard}));
    EXPECT_EQ(*image.samples, pixels);
    EXPECT_EQ(image.palette, palette16());
}

TEST_P(DecodeGif, TransparentColourIsClear) {
    const Data pixels = indices(13 * 11);
    Data expected;
    for (const std::uint8_t index : pixels) {
        const PaletteEntry entry = palette16()[index];
        if (index == 5) {
            expected.insert(expected.end(), 4, 0);
        } else {
            expected.insert(expected.end(), {entry.red, entry.green, entry.blue, 255});
        }
    }
    const DecodedImage image =
        decoded(gifFile({.interlaced = GetParam(), .transparentIndex = 5}, pixels));
    EXPECT_EQ(image.layout, (BitmapLayout{13, 11, 8, 32, 52, ColorSpace::deviceRGB, AlphaInfo::last,
                                          ByteOrder::standard}));
    EXPECT_EQ(*image.samples, expected);
}

INSTANTIATE_TEST_SUITE_P(Interlaced, DecodeGif, testing::Bool());

TEST(DecodeGif, SmallFrameStandsOnAClearCanvas) {
    const DecodedImage image = decoded(
        gifFile({.canvasWidth = 3, .canvasHeight = 3, .left = 1, .top = 2, .width = 2, .height = 1},
                Data{1, 15}));
    Data expected(36);
    const std::array<std::uint8_t, 8> frame = {17, 254, 1, 255, 255, 240, 225, 255};
    std::ranges::copy(frame, expected.begin() + 28);
    EXPECT_EQ(image.layout.width, 3U);
    EXPECT_EQ(image.layout.height, 3U);
    EXPECT_EQ(*image.samples, expected);
}

TEST(DecodeGif, CanvasGrowsToHoldTheFrame) {
    const DecodedImage image = decoded(gifFile(
        {.canvasWidth = 1, .canvasHeight = 1, .left = 1, .width = 2, .height = 1}, Data{0, 0}));
    EXPECT_EQ(image.layout.width, 3U);
    EXPECT_EQ(image.layout.height, 1U);
}

TEST(DecodeGif, FirstFrameOfMany) {
    const Data pixels = indices(13 * 11);
    EXPECT_EQ(*decoded(gifFile({.frames = 3}, pixels)).samples, pixels);
}

struct TiffKind {
    const char* name;
    TiffSpec spec;
    BitmapLayout layout;
};

class DecodeTiffKind : public testing::TestWithParam<TiffKind> {};

TEST_P(DecodeTiffKind, KeepsTheSamples) {
    const TiffKind& kind = GetParam();
    const Data rows = noiseRows(13, 11, std::size_t{kind.spec.components} * 8);
    const DecodedImage image = decoded(tiffFile(kind.spec, rows));
    EXPECT_EQ(image.layout, kind.layout);
    EXPECT_EQ(*image.samples, rows);
}

constexpr std::uint16_t kLzw = 5;
constexpr std::uint16_t kAdobeDeflate = 8;

INSTANTIATE_TEST_SUITE_P(
    All, DecodeTiffKind,
    testing::Values(TiffKind{"Gray",
                             {.components = 1, .photometric = 1},
                             {13, 11, 8, 8, 13, ColorSpace::deviceGray, AlphaInfo::none}},
                    TiffKind{"GrayAlpha",
                             {.components = 2, .photometric = 1, .extraSample = 2},
                             {13, 11, 8, 16, 26, ColorSpace::deviceGray, AlphaInfo::last}},
                    TiffKind{"RgbLzw",
                             {.components = 3, .compression = kLzw},
                             {13, 11, 8, 24, 39, ColorSpace::deviceRGB, AlphaInfo::none}},
                    TiffKind{"RgbaBigEndianDeflate",
                             {.compression = kAdobeDeflate, .extraSample = 2, .bigEndian = true},
                             {13, 11, 8, 32, 52, ColorSpace::deviceRGB, AlphaInfo::last}},
                    TiffKind{
                        "RgbaPremultiplied",
                        {.extraSample = 1},
                        {13, 11, 8, 32, 52, ColorSpace::deviceRGB, AlphaInfo::premultipliedLast}},
                    TiffKind{"RgbTurned",
                             {.components = 3, .orientation = 3},
                             {13, 11, 8, 24, 39, ColorSpace::deviceRGB, AlphaInfo::none}}),
    [](const auto& sample) { return std::string(sample.param.name); });

TEST(DecodeTiff, TilesAreConverted) {
    for (const std::uint16_t orientation : {std::uint16_t{1}, std::uint16_t{3}, std::uint16_t{4}}) {
        const Data rows = noiseRows(13, 11, 24);
        Data expected;
        for (std::size_t i = 0; i < rows.size(); i += 3) {
            expected.insert(expected.end(), {rows[i], rows[i + 1], rows[i + 2], 255});
        }
        const DecodedImage image =
            decoded(tiffFile({.components = 3, .tiled = true, .orientation = orientation}, rows));
        EXPECT_EQ(image.layout, (BitmapLayout{13, 11, 8, 32, 52, ColorSpace::deviceRGB,
                                              AlphaInfo::premultipliedLast, ByteOrder::standard}));
        EXPECT_EQ(*image.samples, expected) << orientation;
    }
}

TEST(DecodeTiff, WhiteIsZeroIsConverted) {
    const DecodedImage image = decoded(tiffFile(
        {.width = 8, .height = 1, .components = 1, .bitDepth = 1, .photometric = 0}, Data{0xA0}));
    const Data blackWhiteBlack = {0, 0, 0, 255, 255, 255, 255, 255, 0, 0, 0, 255};
    EXPECT_TRUE(std::equal(blackWhiteBlack.begin(), blackWhiteBlack.end(), image.samples->begin()));
}

}  // namespace
}  // namespace velmoranth::desktop::test_images::decode_other_test
