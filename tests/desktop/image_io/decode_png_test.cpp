#include "desktop/image_io/image_io.h"
#include "platform/core_graphics.h"

#include "test_images.h"
#include <gtest/gtest.h>

#include <string>
#include <tuple>

namespace velmoranth::desktop::test_images::decode_png_test {
namespace {

using platform::AlphaInfo;
using platform::BitmapLayout;
using platform::ByteOrder;
using platform::ColorSpace;

std::vector<PaletteEntry> somePalette(std::size_t size) {
    const Data bytes = noise(3 * size, 99);
    std::vector<PaletteEntry> palette;
    for (std::size_t i = 0; i < size; ++i) {
        palette.push_back({bytes[3 * i], bytes[3 * i + 1], bytes[3 * i + 2]});
    }
    return palette;
}

// --- Samples as they stand in the file: every colour type, depth and interlacing.

struct Kind {
    int colorType;
    int bitDepth;
    ColorSpace space;
    AlphaInfo alpha;
};

class DecodePngKind : public testing::TestWithParam<std::tuple<Kind, bool>> {};

TEST_P(DecodePngKind, KeepsTheSamples) {
    const auto& [kind, interlaced] = GetParam();
    PngSpec spec{.colorType = kind.colorType, .bitDepth = kind.bitDepth, .interlaced = interlaced};
    if (kind.colorType == 3) {
        spec.palette = somePalette(std::size_t{1} << kind.bitDepth);
    }
    const Data rows = noiseRows(spec.width, spec.height, bitsPerPixel(spec));

    const DecodedImage image = decoded(pngFile(spec, rows));

    EXPECT_EQ(image.layout,
              (BitmapLayout{.width = 13,
                            .height = 11,
                            .bitsPerComponent = static_cast<std::size_t>(kind.bitDepth),
                            .bitsPerPixel = bitsPerPixel(spec),
                            .bytesPerRow = (13 * bitsPerPixel(spec) + 7) / 8,
                            .colorSpace = kind.space,
                            .alphaInfo = kind.alpha,
                            .byteOrder = ByteOrder::standard}));
    EXPECT_EQ(*image.samples, rows);
    EXPECT_EQ(image.palette, spec.palette);
}

constexpr ColorSpace kGray = ColorSpace::deviceGray;
constexpr ColorSpace kRgb = ColorSpace::deviceRGB;
constexpr ColorSpace kIndexed = ColorSpace::indexed;
constexpr AlphaInfo kNone = AlphaInfo::none;
constexpr AlphaInfo kLast = AlphaInfo::last;

std::string kindName(const testing::TestParamInfo<std::tuple<Kind, bool>>& info) {
    const auto& [kind, interlaced] = info.param;
    return "Type" + std::to_string(kind.colorType) + "Depth" + std::to_string(kind.bitDepth) +
           (interlaced ? "Interlaced" : "Plain");
}

INSTANTIATE_TEST_SUITE_P(
    All, DecodePngKind,
    testing::Combine(testing::Values(Kind{0, 1, kGray, kNone}, Kind{0, 2, kGray, kNone},
                                     Kind{0, 4, kGray, kNone}, Kind{0, 8, kGray, kNone},
                                     Kind{0, 16, kGray, kNone}, Kind{2, 8, kRgb, kNone},
                                     Kind{2, 16, kRgb, kNone}, Kind{3, 1, kIndexed, kNone},
                                     Kind{3, 2, kIndexed, kNone}, Kind{3, 4, kIndexed, kNone},
                                     Kind{3, 8, kIndexed, kNone}, Kind{4, 8, kGray, kLast},
                                     Kind{4, 16, kGray, kLast}, Kind{6, 8, kRgb, kLast},
                                     Kind{6, 16, kRgb, kLast}),
                     testing::Bool()),
    kindName);

// --- Transparency beside the pixels becomes alpha.

// Sample number `index` of row `y`, read bit by bit.
unsigned sampleAt(const PngSpec& spec, const Data& rows, std::size_t y, std::size_t index) {
    const std::size_t rowBytes = (spec.width * bitsPerPixel(spec) + 7) / 8;
    const auto depth = static_cast<std::size_t>(spec.bitDepth);
    unsigned value = 0;
    for (std::size_t bit = index * depth; bit < (index + 1) * depth; ++bit) {
        value = value << 1 | (rows[y * rowBytes + bit / 8] >> (7 - bit % 8) & 1U);
    }
    return value;
}

void append(Data& samples, unsigned value, std::size_t bits) {
    if (bits == 16) {
        samples.push_back(static_cast<std::uint8_t>(value >> 8));
    }
    samples.push_back(static_cast<std::uint8_t>(value));
}

class DecodePngPalette : public testing::TestWithParam<std::tuple<int, bool>> {};

TEST_P(DecodePngPalette, WithAlphaComesAsRgba) {
    const auto& [depth, interlaced] = GetParam();
    PngSpec spec{.colorType = 3,
                 .bitDepth = depth,
                 .interlaced = interlaced,
                 .palette = somePalette(std::size_t{1} << depth),
                 .transparency = {0x40}};
    if (depth > 1) {
        spec.transparency = {0, 200, 255};  // fewer than colours: the rest is opaque
    }
    const Data rows = noiseRows(spec.width, spec.height, bitsPerPixel(spec));
    Data expected;
    for (std::size_t y = 0; y < spec.height; ++y) {
        for (std::size_t x = 0; x < spec.width; ++x) {
            const unsigned index = sampleAt(spec, rows, y, x);
            const PaletteEntry& entry = spec.palette[index];
            const std::uint16_t alpha =
                index < spec.transparency.size() ? spec.transparency[index] : std::uint16_t{255};
            expected.insert(expected.end(),
                            {entry.red, entry.green, entry.blue, static_cast<std::uint8_t>(alpha)});
        }
    }

    const DecodedImage image = decoded(pngFile(spec, rows));

    EXPECT_EQ(image.layout, (BitmapLayout{13, 11, 8, 32, 52, kRgb, kLast, ByteOrder::standard}));
    EXPECT_EQ(*image.samples, expected);
    EXPECT_TRUE(image.palette.empty());
}

INSTANTIATE_TEST_SUITE_P(All, DecodePngPalette,
                         testing::Combine(testing::Values(1, 2, 4, 8), testing::Bool()));

class DecodePngColorKey : public testing::TestWithParam<std::tuple<int, int, bool>> {};

TEST_P(DecodePngColorKey, BecomesAlpha) {
    const auto& [colorType, depth, interlaced] = GetParam();
    PngSpec spec{.colorType = colorType, .bitDepth = depth, .interlaced = interlaced};
    const Data rows = noiseRows(spec.width, spec.height, bitsPerPixel(spec));
    const std::size_t colors = colorType == 0 ? 1 : 3;
    const std::size_t keyX = 5;  // the pixel in row 3 whose colour is transparent
    for (std::size_t i = 0; i < colors; ++i) {
        spec.transparency.push_back(
            static_cast<std::uint16_t>(sampleAt(spec, rows, 3, keyX * colors + i)));
    }
    const std::size_t outDepth = depth == 16 ? 16 : 8;
    const unsigned scale = depth < 8 ? 255U / ((1U << depth) - 1) : 1U;
    Data expected;
    for (std::size_t y = 0; y < spec.height; ++y) {
        for (std::size_t x = 0; x < spec.width; ++x) {
            bool hidden = true;
            for (std::size_t i = 0; i < colors; ++i) {
                const unsigned sample = sampleAt(spec, rows, y, x * colors + i);
                hidden = hidden && sample == spec.transparency[i];
                append(expected, sample * scale, outDepth);
            }
            append(expected, hidden ? 0 : 0xFFFF, outDepth);
        }
    }

    const DecodedImage image = decoded(pngFile(spec, rows));

    EXPECT_EQ(image.layout.colorSpace, colorType == 0 ? kGray : kRgb);
    EXPECT_EQ(image.layout.alphaInfo, kLast);
    EXPECT_EQ(image.layout.bitsPerComponent, outDepth);
    EXPECT_EQ(image.layout.bitsPerPixel, outDepth * (colors + 1));
    EXPECT_EQ(*image.samples, expected);
}

INSTANTIATE_TEST_SUITE_P(Gray, DecodePngColorKey,
                         testing::Combine(testing::Values(0), testing::Values(1, 2, 4, 8, 16),
                                          testing::Bool()));
INSTANTIATE_TEST_SUITE_P(Rgb, DecodePngColorKey,
                         testing::Combine(testing::Values(2), testing::Values(8, 16),
                                          testing::Bool()));

// --- Files as they come.

TEST(DecodePng, EverySmallSizeInterlaced) {
    for (std::size_t width = 1; width <= 9; ++width) {
        for (std::size_t height = 1; height <= 9; ++height) {
            const PngSpec spec{.width = width, .height = height, .interlaced = true};
            const Data rows = noiseRows(width, height, 32);
            EXPECT_EQ(*decoded(pngFile(spec, rows)).samples, rows) << width << " x " << height;
        }
    }
}

TEST(DecodePng, BytesAfterTheEndDoNotMatter) {
    const PngSpec spec;
    const Data rows = noiseRows(spec.width, spec.height, 32);
    Data file = pngFile(spec, rows);
    const Data more = noise(1000);
    file.insert(file.end(), more.begin(), more.end());
    EXPECT_EQ(*decoded(file).samples, rows);
}

TEST(DecodePng, DescribingChunksAreSkippedEvenWhenDamaged) {
    const Data rows = {0, 10, 20, 30, 40};  // filter, then one pixel
    Data file = pngSignature();
    appendChunk(file, "IHDR", pngHeader(1, 1, 8, 6));
    appendChunk(file, "gAMA", noise(2));
    appendChunk(file, "iCCP", noise(100));
    appendChunk(file, "zTXt", noise(100), 0x12345678);
    appendChunk(file, "prVt", noise(10));
    appendChunk(file, "IDAT", zlibStream(rows));
    appendChunk(file, "tEXt", noise(5));
    appendChunk(file, "IEND", {});
    EXPECT_EQ(*decoded(file).samples, (Data{10, 20, 30, 40}));
}

TEST(DecodePng, ImageDataInManyPieces) {
    Data rows = {0};
    const Data pixels = noise(40);
    rows.insert(rows.end(), pixels.begin(), pixels.end());
    const Data stream = zlibStream(rows);
    Data file = pngSignature();
    appendChunk(file, "IHDR", pngHeader(10, 1, 8, 6));
    for (const std::uint8_t byte : stream) {
        appendChunk(file, "IDAT", Data{byte});
        appendChunk(file, "IDAT", {});
    }
    appendChunk(file, "IEND", {});
    EXPECT_EQ(*decoded(file).samples, pixels);
}

}  // namespace
}  // namespace velmoranth::desktop::test_images::decode_png_test
