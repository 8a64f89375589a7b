#include "test_pictures.h"
#include <gtest/gtest.h>

#include <utility>

namespace velmoranth::tests::rle_test {

namespace {

using catalog::BitmapShape;
using catalog::Compression;
using catalog::decodeBitmap;
using catalog::fourCharacterCode;

// Two rows of three pixels of gray and alpha: a run; then a pixel and a run.
ByteVector twoRows() {
    return ByteWriter()
        .u32(3)
        .u32(3)
        .u32(2)
        .u32(20)
        .u32(26)
        .u32(0x80000003)
        .u16(0xFF10)
        .u32(0x00000001)
        .u16(0x8001)
        .u32(0x80000002)
        .u16(0x4002)
        .take();
}

constexpr BitmapShape kTwoRows{.width = 3,
                               .height = 2,
                               .pixelFormat = fourCharacterCode("GA8 "),
                               .colorSpace = 2,
                               .rowBytes = 8};

std::string decoded(const ByteVector& data, const BitmapShape& shape = kTwoRows) {
    return problemOf(decodeBitmap(bitmapPayload(Compression::rle, data), shape, {}));
}

// The rows with one number of four bytes put in place of another.
std::string decodedWith(std::size_t offset, std::uint32_t number) {
    ByteVector data = twoRows();
    const ByteVector bytes = ByteWriter().u32(number).take();
    std::copy(bytes.begin(), bytes.end(), data.begin() + static_cast<std::ptrdiff_t>(offset));
    return decoded(data);
}

}  // namespace

TEST(RunLengths, ReadsRunsAndLiterals) {
    const auto picture = decodeBitmap(bitmapPayload(Compression::rle, twoRows()), kTwoRows, {});
    ASSERT_TRUE(picture);
    EXPECT_EQ(picture->pixels, (ByteVector{0x10, 0xFF, 0x10, 0xFF, 0x10, 0xFF,  //
                                           0x01, 0x80, 0x02, 0x40, 0x02, 0x40}));
}

TEST(RunLengths, RoundTripsInBands) {
    for (const auto& [format, code] : {std::pair{Format::bgra, 4U}, {Format::grayAlpha, 3U}}) {
        for (const auto& picture : {artwork(67, 50, format), noise(31, 9, format),
                                    noise(1, 1, format), artwork(1000, 3, format)}) {
            const auto encode = [pixelCode = code](const StoredPixels& band) {
                return rle(band, pixelCode);
            };
            EXPECT_EQ(differenceFrom(picture, inBands(picture, Compression::rle, 16, encode)), "");
        }
    }
}

TEST(RunLengths, RowsMaySharePackets) {
    ByteVector data = twoRows();
    data[16] = 20;
    const auto picture = decodeBitmap(bitmapPayload(Compression::rle, data), kTwoRows, {});
    ASSERT_TRUE(picture);
    EXPECT_EQ(picture->pixels[6], 0x10);
}

TEST(RunLengths, HeaderHasToFitTheRecord) {
    EXPECT_EQ(decodedWith(0, 4), "the run-length data has pixels of another format");
    EXPECT_EQ(decodedWith(0, 77), "the run-length data has pixels of another format");
    EXPECT_EQ(decodedWith(4, 4), "the run-length data is 4x2 pixels, not 3x2");
    EXPECT_EQ(decodedWith(8, 0), "the run-length data is 3x0 pixels, not 3x2");
}

TEST(RunLengths, RowsBeginWithinTheData) {
    for (const std::uint32_t offset : {0U, 11U, 39U, 0xFFFFFFFFU}) {
        EXPECT_EQ(decodedWith(12, offset), "a row of the run-length data begins outside of it")
            << offset;
    }
    EXPECT_EQ(decodedWith(16, 38), "the run-length data ends within a row");
}

TEST(RunLengths, PacketsMakeExactlyTheRow) {
    EXPECT_EQ(decodedWith(20, 0x80000004), "a row's run-length packets have too many pixels");
    EXPECT_EQ(decodedWith(20, 0x80FFFFFF), "a row's run-length packets have too many pixels");
    EXPECT_EQ(decodedWith(20, 4), "a row's run-length packets have too many pixels");
    EXPECT_EQ(decodedWith(32, 0x80000001), "the run-length data ends within a row");
}

TEST(RunLengths, PacketsAreOfKnownKinds) {
    const std::string unknown = "the run-length data has a packet that nobody knows";
    EXPECT_EQ(decodedWith(20, 0), unknown);
    EXPECT_EQ(decodedWith(20, 0x80000000), unknown);
    EXPECT_EQ(decodedWith(20, 0x40000003), unknown);
    EXPECT_EQ(decodedWith(20, 0xFF000003), unknown);
}

TEST(RunLengths, EveryTruncationIsAProblem) {
    const ByteVector data = twoRows();
    ASSERT_EQ(decoded(data), "");
    for (std::size_t size = 0; size < data.size(); ++size) {
        EXPECT_NE(decoded({data.begin(), data.begin() + static_cast<std::ptrdiff_t>(size)}), "")
            << size;
    }
}

TEST(RunLengths, EveryPixelSizeHasItsCode) {
    struct Case {
        std::uint32_t format;
        std::uint32_t code;
        std::size_t bytes;
    };

    for (const Case& each :
         {Case{fourCharacterCode("GRAY"), 1, 1}, Case{fourCharacterCode("RGB5"), 3, 2},
          Case{fourCharacterCode("GA16"), 4, 4}, Case{fourCharacterCode("RGBW"), 20, 8}}) {
        StoredPixels stored{.width = 20, .rows = 3, .bytesPerPixel = each.bytes};
        for (std::size_t i = 0; i < 60 * each.bytes; ++i) {
            stored.bytes.push_back(
                static_cast<std::uint8_t>(i / each.bytes / 7 * 37 + i % each.bytes));
        }
        const BitmapShape shape{
            .width = 20, .height = 3, .pixelFormat = each.format, .colorSpace = 1, .rowBytes = 0};
        const auto plain =
            decodeBitmap(bitmapPayload(Compression::uncompressed, stored.bytes), shape, {});
        ASSERT_TRUE(plain);
        EXPECT_EQ(differenceFrom(
                      *plain, decodeBitmap(bitmapPayload(Compression::rle, rle(stored, each.code)),
                                           shape, {})),
                  "")
            << each.code;
    }
}

}  // namespace velmoranth::tests::rle_test
