#include "tests/support/catalog/lzfse_writer.h"

#include "test_pictures.h"
#include <gtest/gtest.h>

namespace velmoranth::tests::palette_image_test {

namespace {

using catalog::BitmapShape;
using catalog::Compression;
using catalog::decodeBitmap;
using catalog::fourCharacterCode;

// A row of three pixels and two rows, of three colours: two bits a pixel.
ByteVector small() {
    return ByteWriter()
        .u32(0xCAFEF00D)
        .u32(1)
        .u16(3)
        .bytes(ByteVector{0xFF, 3, 2, 1, 0x80, 6, 5, 4, 0, 0, 0, 0})
        .u16(0b00'01'10'11'11'11'11'11)
        .u16(0b10'01'00'00'00'00'00'00)
        .take();
}

constexpr BitmapShape kSmall{.width = 3,
                             .height = 2,
                             .pixelFormat = fourCharacterCode("ARGB"),
                             .colorSpace = 1,
                             .rowBytes = 16};

std::string decoded(const ByteVector& data, const BitmapShape& shape = kSmall) {
    return problemOf(decodeBitmap(bitmapPayload(Compression::paletteImage, data), shape, {}));
}

std::string decodedWith(std::size_t offset, std::uint8_t byte) {
    ByteVector data = small();
    data[offset] = byte;
    return decoded(data);
}

}  // namespace

TEST(PaletteImage, FirstPixelIsInTheHighestBits) {
    const auto picture =
        decodeBitmap(bitmapPayload(Compression::paletteImage, small()), kSmall, {});
    ASSERT_TRUE(picture) << problemOf(picture);
    EXPECT_EQ(picture->pixels, (ByteVector{1, 2, 3, 255, 4, 5, 6, 128, 0, 0, 0, 0,  //
                                           0, 0, 0, 0,   4, 5, 6, 128, 1, 2, 3, 255}));
}

TEST(PaletteImage, RoundTripsWithEverySizeOfIndex) {
    for (const std::uint32_t colors : {1U, 2U, 3U, 4U, 5U, 16U, 17U, 256U, 257U, 4096U}) {
        for (const std::uint32_t width : {101U, 128U}) {
            const auto picture = ofColors(width, 64, colors);
            const auto raw = [](const StoredPixels& band) { return paletteImage(band); };
            const auto stream = [](const StoredPixels& band) { return lzfse(paletteImage(band)); };
            EXPECT_EQ(differenceFrom(picture, inBands(picture, Compression::paletteImage, 64, raw)),
                      "")
                << colors;
            EXPECT_EQ(
                differenceFrom(picture, inBands(picture, Compression::paletteImage, 24, stream)),
                "")
                << colors;
        }
    }
}

TEST(PaletteImage, UnusedColorsCountForTheSizeOfAnIndex) {
    for (const std::size_t unused : {2U, 200U, 2000U}) {
        const auto picture = ofColors(33, 7, 2);
        const auto encode = [&](const StoredPixels& band) { return paletteImage(band, unused); };
        EXPECT_EQ(differenceFrom(picture, inBands(picture, Compression::paletteImage, 7, encode)),
                  "");
    }
}

TEST(PaletteImage, RecordsStrideDoesNotMatter) {
    const auto picture = ofColors(5, 5, 3);
    const auto encode = [](const StoredPixels& band) { return paletteImage(band); };
    for (const std::uint32_t rowBytes : {0U, 1U, 64U}) {
        EXPECT_EQ(differenceFrom(picture,
                                 inBands(picture, Compression::paletteImage, 5, encode, rowBytes)),
                  "");
    }
}

TEST(PaletteImage, WideColorsAreOfTenThousand) {
    const BitmapShape shape{.width = 2,
                            .height = 1,
                            .pixelFormat = fourCharacterCode("RGBW"),
                            .colorSpace = 4,
                            .rowBytes = 0};
    const ByteVector data = ByteWriter()
                                .u32(0xCAFEF00D)
                                .u32(0)
                                .u16(2)
                                .u16(10000)
                                .u16(5000)
                                .u16(59)
                                .u16(10000)
                                .u16(0)
                                .u16(19)
                                .u16(20)
                                .u16(65535)
                                .u16(0x4000)
                                .take();
    const auto picture = decodeBitmap(bitmapPayload(Compression::paletteImage, data), shape, {});
    ASSERT_TRUE(picture) << problemOf(picture);
    EXPECT_EQ(picture->pixels, (ByteVector{255, 128, 2, 255, 0, 0, 1, 255}));
}

TEST(PaletteImage, GraysAreNotSupported) {
    BitmapShape shape = kSmall;
    shape.pixelFormat = fourCharacterCode("GA8 ");
    EXPECT_EQ(decoded(small(), shape), "a palette image of GA8 pixels is not supported");
}

TEST(PaletteImage, IndexesBeyondThePaletteAreAProblem) {
    // The first row's third pixel, in two bits of the word's high byte.
    EXPECT_EQ(decodedWith(23, 0b00'01'11'00), "the palette image has an index beyond its palette");
    for (const std::uint32_t colors : {3U, 15U, 255U, 4000U}) {
        const StoredPixels stored = storedPixels(ofColors(80, 60, colors));
        ByteVector data = paletteImage(stored);
        std::fill(data.end() - 160, data.end(), std::uint8_t{0xFF});
        BitmapShape shape = kSmall;
        shape.width = 80;
        shape.height = 60;
        EXPECT_EQ(decoded(data, shape), "the palette image has an index beyond its palette")
            << colors;
    }
}

TEST(PaletteImage, BitsBehindTheLastPixelDoNotMatter) {
    EXPECT_EQ(decodedWith(22, 0xFF), "");
    EXPECT_EQ(decodedWith(25, 0b10'01'00'11), "");
}

TEST(PaletteImage, HeaderIsChecked) {
    EXPECT_EQ(decodedWith(0, 0x0E), "the palette image does not begin as one");
    EXPECT_EQ(decodedWith(4, 2), "the palette image does not begin as one");
    EXPECT_EQ(decodedWith(4, 0), "");
    EXPECT_EQ(decodedWith(8, 0), "the palette image has a palette of 0 colours");
    EXPECT_EQ(decodedWith(8, 4), "the palette image is not as long as its rows");
    EXPECT_EQ(decodedWith(9, 0x10), "the palette image has a palette of 4099 colours");
    ByteVector longer = small();
    longer.push_back(0);
    EXPECT_EQ(decoded(longer), "the palette image is not as long as its rows");
}

TEST(PaletteImage, EveryTruncationIsAProblem) {
    for (const ByteVector& data : {small(), lzfse(small())}) {
        ASSERT_EQ(decoded(data), "");
        for (std::size_t size = 0; size < data.size(); ++size) {
            EXPECT_NE(decoded({data.begin(), data.begin() + static_cast<std::ptrdiff_t>(size)}), "")
                << size;
        }
    }
}

}  // namespace velmoranth::tests::palette_image_test
