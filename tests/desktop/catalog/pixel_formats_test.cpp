#include "test_pictures.h"
#include <gtest/gtest.h>

namespace velmoranth::tests::pixel_formats_test {

namespace {

using catalog::BitmapShape;
using catalog::Compression;
using catalog::decodeBitmap;
using catalog::fourCharacterCode;
using catalog::Picture;

// One row of stored pixels, decoded.
Picture row(const char (&format)[5], std::uint32_t width, const ByteVector& stored,
            std::uint32_t colorSpace = 1, bool isOpaque = false) {
    const BitmapShape shape{.width = width,
                            .height = 1,
                            .pixelFormat = fourCharacterCode(format),
                            .colorSpace = colorSpace,
                            .rowBytes = 0};
    auto picture =
        decodeBitmap(bitmapPayload(Compression::uncompressed, stored, isOpaque), shape, {});
    EXPECT_TRUE(picture) << problemOf(picture);
    return picture.value_or(Picture{});
}

ByteVector words(const std::vector<std::uint16_t>& values) {
    ByteWriter writer;
    for (const std::uint16_t value : values) {
        writer.u16(value);
    }
    return writer.take();
}

}  // namespace

TEST(PixelFormats, ColorsAndGraysStayAsTheyAre) {
    EXPECT_EQ(row("ARGB", 1, {1, 2, 3, 4}).pixels, (ByteVector{1, 2, 3, 4}));
    EXPECT_EQ(row("GA8 ", 2, {1, 2, 3, 4}).pixels, (ByteVector{1, 2, 3, 4}));
    EXPECT_EQ(row("GA8 ", 2, {1, 2, 3, 4}).format, Format::grayAlpha);
}

TEST(PixelFormats, GrayIsOpaque) {
    const Picture picture = row("GRAY", 3, {0, 7, 255});
    EXPECT_EQ(picture.format, Format::grayAlpha);
    EXPECT_EQ(picture.pixels, (ByteVector{0, 255, 7, 255, 255, 255}));
}

TEST(PixelFormats, FiveBitsAChannelAreExpanded) {
    const Picture picture = row("RGB5", 4, words({0x7C00, 0x03E0, 0x001F, 0x8421}));
    EXPECT_EQ(picture.format, Format::bgra);
    EXPECT_EQ(picture.pixels, (ByteVector{0, 0, 255, 255, 0, 255, 0, 255,  //
                                          255, 0, 0, 255, 8, 8, 8, 255}));
    EXPECT_EQ(row("RGB5", 1, words({17U << 10U})).pixels[2], 17 << 3 | 17 >> 2);
}

TEST(PixelFormats, WideColorsAreIntegersInPlainColorSpaces) {
    const ByteVector stored = words({0xFFFF, 0x8000, 0x0101, 0x00FF});
    for (const std::uint32_t colorSpace : {0U, 1U, 3U, 6U}) {
        EXPECT_EQ(row("RGBW", 1, stored, colorSpace).pixels, (ByteVector{1, 128, 255, 1}));
    }
    EXPECT_EQ(row("RGBW", 1, words({128, 129, 385, 386})).pixels, (ByteVector{1, 1, 0, 2}));
}

TEST(PixelFormats, WideColorsAreFloatsInExtendedColorSpaces) {
    // 1, 0.5, 2 and the largest subnormal; then -1, infinity, 0 and 1/255.
    const ByteVector stored = words({0x3C00, 0x3800, 0x4000, 0x03FF,  //
                                     0xBC00, 0x7C00, 0x0000, 0x1C04});
    for (const std::uint32_t colorSpace : {4U, 5U}) {
        EXPECT_EQ(row("RGBW", 2, stored, colorSpace).pixels,
                  (ByteVector{255, 128, 255, 0, 0, 255, 0, 1}));
    }
}

TEST(PixelFormats, WideGraysAreNarrowed) {
    const Picture picture = row("GA16", 2, words({0x8000, 0xFFFF, 0x0000, 0x0101}));
    EXPECT_EQ(picture.format, Format::grayAlpha);
    EXPECT_EQ(picture.pixels, (ByteVector{128, 255, 0, 1}));
}

TEST(PixelFormats, OpaqueBitmapsHaveNoAlpha) {
    EXPECT_EQ(row("ARGB", 2, {1, 2, 3, 4, 5, 6, 7, 0}, 1, true).pixels,
              (ByteVector{1, 2, 3, 255, 5, 6, 7, 255}));
    EXPECT_EQ(row("GA8 ", 2, {1, 2, 3, 0}, 2, true).pixels, (ByteVector{1, 255, 3, 255}));
    EXPECT_EQ(row("GA16", 1, words({0x8000, 0}), 2, true).pixels, (ByteVector{128, 255}));
    EXPECT_EQ(row("RGBW", 1, words({0xFFFF, 0, 0, 0}), 1, true).pixels,
              (ByteVector{0, 0, 255, 255}));
}

TEST(PixelFormats, OthersAreNotSupported) {
    const BitmapShape shape{.width = 1,
                            .height = 1,
                            .pixelFormat = fourCharacterCode("JPEG"),
                            .colorSpace = 1,
                            .rowBytes = 0};
    EXPECT_EQ(
        problemOf(decodeBitmap(bitmapPayload(Compression::uncompressed, ByteVector(4)), shape, {})),
        "the pixel format JPEG is not supported");
}

TEST(PixelFormats, PicturesTurnIntoRgbaAndBgra) {
    const Picture color{
        .format = Format::bgra, .width = 2, .height = 1, .pixels = {1, 2, 3, 4, 5, 6, 7, 8}};
    EXPECT_EQ(toRgba(color), (ByteVector{3, 2, 1, 4, 7, 6, 5, 8}));
    EXPECT_EQ(toBgra(color), color.pixels);
    const Picture gray{
        .format = Format::grayAlpha, .width = 1, .height = 2, .pixels = {1, 2, 250, 255}};
    EXPECT_EQ(toRgba(gray), (ByteVector{1, 1, 1, 2, 250, 250, 250, 255}));
    EXPECT_EQ(toBgra(gray), toRgba(gray));
}

}  // namespace velmoranth::tests::pixel_formats_test
