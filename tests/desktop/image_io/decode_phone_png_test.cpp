#include "desktop/image_io/image_io.h"
#include "platform/core_graphics.h"

#include "test_images.h"
#include <gtest/gtest.h>

#include <tuple>

namespace velmoranth::desktop::test_images::decode_phone_png_test {
namespace {

using platform::AlphaInfo;
using platform::BitmapLayout;
using platform::ByteOrder;
using platform::ColorSpace;

BitmapLayout bgraLayout(const PngSpec& spec) {
    return {.width = spec.width,
            .height = spec.height,
            .bitsPerComponent = 8,
            .bitsPerPixel = 32,
            .bytesPerRow = spec.width * 4,
            .colorSpace = ColorSpace::deviceRGB,
            .alphaInfo = AlphaInfo::premultipliedFirst,
            .byteOrder = ByteOrder::little32};
}

class DecodePhonePng : public testing::TestWithParam<std::tuple<int, bool>> {};

TEST_P(DecodePhonePng, KeepsBgraUnderEveryFilter) {
    const auto& [filter, interlaced] = GetParam();
    const PngSpec spec{.interlaced = interlaced};
    const Data rows = noiseRows(spec.width, spec.height, 32);
    const DecodedImage image = decoded(phonePngFile(spec, rows, {.filter = filter}));
    EXPECT_EQ(image.layout, bgraLayout(spec));
    EXPECT_EQ(*image.samples, rows);
}

INSTANTIATE_TEST_SUITE_P(Filters, DecodePhonePng,
                         testing::Combine(testing::Values(-1, 0, 1, 2, 3, 4), testing::Bool()));

TEST(DecodePhonePng, EverySmallSizeInterlaced) {
    for (std::size_t width = 1; width <= 9; ++width) {
        for (std::size_t height = 1; height <= 9; ++height) {
            const PngSpec spec{.width = width, .height = height, .interlaced = true};
            const Data rows = noiseRows(width, height, 32);
            EXPECT_EQ(*decoded(phonePngFile(spec, rows)).samples, rows) << width << " x " << height;
        }
    }
}

TEST(DecodePhonePng, RgbIsStoredBlueFirst) {
    for (const bool interlaced : {false, true}) {
        const PngSpec spec{.colorType = 2, .interlaced = interlaced};
        const Data rows = noiseRows(spec.width, spec.height, 24);
        Data expected;
        for (std::size_t i = 0; i < rows.size(); i += 3) {
            expected.insert(expected.end(), {rows[i], rows[i + 1], rows[i + 2], 255});
        }
        const DecodedImage image = decoded(phonePngFile(spec, rows));
        EXPECT_EQ(image.layout, bgraLayout(spec));
        EXPECT_EQ(*image.samples, expected);
    }
}

TEST(DecodePhonePng, RgbColorKeyNamesRedFirst) {
    const PngSpec spec{.width = 2, .height = 1, .colorType = 2, .transparency = {30, 20, 10}};
    EXPECT_EQ(*decoded(phonePngFile(spec, Data{10, 20, 30, 30, 20, 10})).samples,
              (Data{0, 0, 0, 0, 30, 20, 10, 255}));
}

TEST(DecodePhonePng, GrayWithAlphaIsPremultiplied) {
    const PngSpec spec{.width = 2, .height = 1, .colorType = 4};
    EXPECT_EQ(*decoded(phonePngFile(spec, Data{50, 60, 7, 255})).samples,
              (Data{50, 50, 50, 60, 7, 7, 7, 255}));
}

TEST(DecodePhonePng, GrayOfEveryDepth) {
    for (const int depth : {1, 2, 4, 8}) {
        for (const bool interlaced : {false, true}) {
            const PngSpec spec{.width = 4,
                               .height = 1,
                               .colorType = 0,
                               .bitDepth = depth,
                               .interlaced = interlaced};
            const unsigned maximum = (1U << depth) - 1;
            // 0, 1, maximum, 0
            Data row((4 * static_cast<std::size_t>(depth) + 7) / 8);
            for (std::size_t bit = 0; bit < static_cast<std::size_t>(depth) * 4; ++bit) {
                const std::size_t pixel = bit / static_cast<std::size_t>(depth);
                const bool isLastBit =
                    bit % static_cast<std::size_t>(depth) + 1 == static_cast<std::size_t>(depth);
                if (pixel == 2 || (pixel == 1 && isLastBit)) {
                    row[bit / 8] |= static_cast<std::uint8_t>(0x80U >> (bit % 8));
                }
            }
            const auto one = static_cast<std::uint8_t>(255 / maximum);
            EXPECT_EQ(*decoded(phonePngFile(spec, row)).samples,
                      (Data{0, 0, 0, 255, one, one, one, 255, 255, 255, 255, 255, 0, 0, 0, 255}))
                << depth;
        }
    }
}

TEST(DecodePhonePng, GrayColorKey) {
    const PngSpec spec{.width = 2, .height = 1, .colorType = 0, .bitDepth = 4, .transparency = {3}};
    EXPECT_EQ(*decoded(phonePngFile(spec, Data{0x3A})).samples,
              (Data{0, 0, 0, 0, 170, 170, 170, 255}));
}

TEST(DecodePhonePng, PaletteIsExpandedAndPremultiplied) {
    const PngSpec spec{.width = 4,
                       .height = 1,
                       .colorType = 3,
                       .bitDepth = 2,
                       .palette = {{255, 100, 3}, {10, 20, 30}, {1, 2, 3}},
                       .transparency = {128, 0}};
    // 0, 1, 2 and 3, which the palette does not have.
    EXPECT_EQ(*decoded(phonePngFile(spec, Data{0b00011011})).samples,
              (Data{2, 50, 128, 128, 0, 0, 0, 0, 3, 2, 1, 255, 0, 0, 0, 255}));
}

TEST(DecodePhonePng, MarkedWithoutAlphaIsOpaque) {
    const PngSpec spec{.width = 1, .height = 1};
    EXPECT_EQ(*decoded(phonePngFile(spec, Data{1, 2, 3, 4}, {.bitmapInfo = 0x50002006})).samples,
              (Data{1, 2, 3, 255}));
}

TEST(DecodePhonePng, ImageDataInPieces) {
    const PngSpec spec;
    const Data rows = noiseRows(spec.width, spec.height, 32);
    EXPECT_EQ(*decoded(phonePngFile(spec, rows, {.pieces = 7})).samples, rows);
}

TEST(DecodePhonePng, AcceptsAZlibHeader) {
    const PngSpec spec;
    const Data rows = noiseRows(spec.width, spec.height, 32);
    EXPECT_EQ(*decoded(phonePngFile(spec, rows, {.zlibWrapped = true})).samples, rows);
}

TEST(DecodePhonePng, RefusesTooFewRows) {
    const PngSpec spec;
    const Data rows = noiseRows(spec.width, spec.height, 32);
    EXPECT_EQ(problemOf(phonePngFile(spec, rows, {.extraRows = -1})),
              "the image data of the PNG file is too short for its size");
}

TEST(DecodePhonePng, RefusesTooManyRows) {
    const PngSpec spec;
    const Data rows = noiseRows(spec.width, spec.height, 32);
    EXPECT_EQ(problemOf(phonePngFile(spec, rows, {.extraRows = 1})),
              "the image data of the PNG file is too long for its size");
}

TEST(DecodePhonePng, RefusesAnUnknownFilter) {
    // Built without filters, then with the filter byte as a pixel: a 1-bit picture of 8 pixels is
    // the filter and one byte.
    Data file = pngSignature();
    appendChunk(file, "CgBI", Data{0x50, 0, 0x20, 2});
    appendChunk(file, "IHDR", pngHeader(8, 1, 1, 0));
    appendChunk(file, "IDAT", zlibStream(Data{5, 0}));
    appendChunk(file, "IEND", {});
    EXPECT_EQ(problemOf(file), "a row of the PNG file names an unknown filter");
}

TEST(DecodePhonePng, RefusesDamagedImageData) {
    Data file = pngSignature();
    appendChunk(file, "CgBI", Data{0x50, 0, 0x20, 2});
    appendChunk(file, "IHDR", pngHeader(8, 1, 1, 0));
    appendChunk(file, "IDAT", Data{0xFF, 0xFF, 0xFF, 0xFF});
    appendChunk(file, "IEND", {});
    EXPECT_EQ(problemOf(file), "the image data of the PNG file is damaged");
}

TEST(DecodePhonePng, Refuses16Bits) {
    const PngSpec spec{.bitDepth = 16};
    EXPECT_EQ(problemOf(phonePngFile(spec, noiseRows(spec.width, spec.height, 64))),
              "the phone's PNG variant is not read with 16 bits a component");
}

TEST(DecodePhonePng, RefusesAPaletteThatIsMissingOrTooLong) {
    PngSpec spec{.width = 8, .height = 1, .colorType = 3, .bitDepth = 1};
    EXPECT_EQ(problemOf(phonePngFile(spec, Data{0x55})),
              "the palette of the PNG file is missing or not valid");
    spec.palette.resize(3);
    EXPECT_EQ(problemOf(phonePngFile(spec, Data{0x55})),
              "the palette of the PNG file is missing or not valid");
}

TEST(DecodePhonePng, RefusesAFirstChunkOfAnotherSize) {
    Data file = pngSignature();
    appendChunk(file, "CgBI", {});
    appendChunk(file, "IHDR", pngHeader(8, 1, 1, 0));
    EXPECT_EQ(problemOf(file), "the first chunk of the PNG file is not valid");
}

}  // namespace
}  // namespace velmoranth::desktop::test_images::decode_phone_png_test
