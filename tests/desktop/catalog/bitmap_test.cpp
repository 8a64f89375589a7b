#include "tests/support/catalog/lzfse_writer.h"

#include "test_pictures.h"
#include <gtest/gtest.h>

namespace velmoranth::tests::bitmap_test {

namespace {

using catalog::BitmapHeader;
using catalog::BitmapShape;
using catalog::Compression;
using catalog::decodeBitmap;
using catalog::fourCharacterCode;
using catalog::Limits;
using catalog::Picture;
using catalog::readBitmapHeader;

// How to store rows of a stride in a compression.
struct Encoder {
    Compression compression;
    std::string name;
    std::function<ByteVector(const ByteVector&)> encode;
};

const std::vector<Encoder>& encoders() {
    static const std::vector<Encoder> all{
        {Compression::uncompressed, "none", [](const ByteVector& rows) { return rows; }},
        {Compression::zip, "gzip",
         [](const ByteVector& rows) { return deflated(rows, DeflateWrapping::gzip); }},
        {Compression::zip, "zlib",
         [](const ByteVector& rows) { return deflated(rows, DeflateWrapping::zlib); }},
        {Compression::zip, "deflate",
         [](const ByteVector& rows) { return deflated(rows, DeflateWrapping::none); }},
        {Compression::lzvn, "LZVN", [](const ByteVector& rows) { return lzvn(rows); }},
        {Compression::lzvn, "LZFSE as LZVN", [](const ByteVector& rows) { return lzfse(rows); }},
        {Compression::lzfse, "LZFSE", [](const ByteVector& rows) { return lzfse(rows); }},
        {Compression::lzfse, "stored LZFSE",
         [](const ByteVector& rows) { return lzfse(rows, LzfseBlock::stored); }},
    };
    return all;
}

BitmapShape pixels(std::uint32_t width, std::uint32_t height, std::uint32_t rowBytes = 0) {
    return {.width = width,
            .height = height,
            .pixelFormat = fourCharacterCode("ARGB"),
            .colorSpace = 1,
            .rowBytes = rowBytes};
}

ByteVector cut(const ByteVector& bytes, std::size_t size) {
    return {bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(size)};
}

std::string decoded(const ByteVector& payload, const BitmapShape& shape,
                    const Limits& limits = {}) {
    return problemOf(decodeBitmap(payload, shape, limits));
}

}  // namespace

TEST(BitmapHeader, SaysHowTheBitmapIsStored) {
    EXPECT_EQ(readBitmapHeader(ByteWriter().text("MLEC").u32(0).u32(4).u32(7).take()).value(),
              (BitmapHeader{.banded = false,
                            .opaque = false,
                            .compression = Compression::lzfse,
                            .lengthOrBands = 7}));
    EXPECT_EQ(readBitmapHeader(ByteWriter().text("MLEC").u32(3).u32(77).u32(2).take()).value(),
              (BitmapHeader{.banded = true,
                            .opaque = true,
                            .compression = static_cast<Compression>(77),
                            .lengthOrBands = 2}));
}

TEST(BitmapHeader, DamageIsAProblem) {
    const ByteVector header = ByteWriter().text("MLEC").zeros(12).take();
    EXPECT_TRUE(readBitmapHeader(header));
    for (std::size_t size = 0; size < header.size(); ++size) {
        EXPECT_FALSE(readBitmapHeader(cut(header, size))) << size;
    }
    const auto other = readBitmapHeader(ByteWriter().text("DWAR").zeros(12).take());
    ASSERT_FALSE(other);
    EXPECT_EQ(other.error().message, "the bitmap does not begin as one");
}

TEST(Bitmap, RowsMayLieFarApart) {
    for (const Encoder& encoder : encoders()) {
        for (const Format format : {Format::bgra, Format::grayAlpha}) {
            for (const auto& picture : {artwork(61, 47, format), noise(20, 33, format)}) {
                const auto size = static_cast<std::uint32_t>(Picture::bytesPerPixel(format));
                for (const std::uint32_t stride :
                     {picture.width * size, picture.width * size + 1, 512U}) {
                    const auto encode = [&](const StoredPixels& band) {
                        return encoder.encode(paddedRows(band, stride));
                    };
                    for (const std::size_t rows : {1U, 16U, 100U}) {
                        EXPECT_EQ(differenceFrom(picture, inBands(picture, encoder.compression,
                                                                  rows, encode, stride)),
                                  "")
                            << encoder.name << ", stride " << stride;
                    }
                }
            }
        }
    }
}

TEST(Bitmap, BandsAreOptional) {
    const Picture picture = artwork(30, 20, Format::bgra);
    for (const Encoder& encoder : encoders()) {
        const ByteVector data = encoder.encode(picture.pixels);
        for (const std::uint32_t rowBytes : {0U, 120U}) {
            EXPECT_EQ(differenceFrom(picture, decodeBitmap(bitmapPayload(encoder.compression, data),
                                                           shapeOf(picture, rowBytes), {})),
                      "")
                << encoder.name;
        }
    }
}

TEST(Bitmap, OpaqueBitmapsHaveNoAlpha) {
    for (const Encoder& encoder : encoders()) {
        const Picture picture = noise(30, 20, Format::bgra);
        const StoredPixels stored = storedPixels(picture);
        const std::vector<CarBand> bands{
            {.rows = 15, .data = encoder.encode(paddedRows(stored.band(0, 15), 128))},
            {.rows = 5, .data = encoder.encode(paddedRows(stored.band(15, 5), 128))}};
        EXPECT_EQ(differenceFrom(opaque(picture),
                                 decodeBitmap(bandedPayload(encoder.compression, bands, true),
                                              shapeOf(picture, 128), {})),
                  "");
    }
}

TEST(Bitmap, FormatsThatAreConvertedMayHavePaddedRows) {
    BitmapShape shape = pixels(2, 2, 5);
    shape.pixelFormat = fourCharacterCode("GRAY");
    const auto picture = decodeBitmap(
        bitmapPayload(Compression::uncompressed, ByteVector{1, 2, 0, 0, 0, 3, 4, 0, 0, 0}), shape,
        {});
    ASSERT_TRUE(picture) << problemOf(picture);
    EXPECT_EQ(picture->pixels, (ByteVector{1, 255, 2, 255, 3, 255, 4, 255}));
}

TEST(Bitmap, UndescribedCompressionsAreNamed) {
    for (const auto& [number, problem] : std::map<std::uint32_t, std::string>{
             {5, "the compression JPEG with LZFSE is not supported"},
             {6, "the compression blurred is not supported"},
             {7, "the compression ASTC is not supported"},
             {9, "the compression HEVC is not supported"},
             {12, "the compression DXTC is not supported"},
             {13, "compression 13 is not supported"},
             {0xFFFFFFFF, "compression 4294967295 is not supported"}}) {
        EXPECT_EQ(
            decoded(bitmapPayload(static_cast<Compression>(number), ByteVector(4)), pixels(1, 1)),
            problem);
    }
}

TEST(Bitmap, SizeIsLimited) {
    const ByteVector payload = bitmapPayload(Compression::uncompressed, ByteVector(2 * 3 * 4));
    EXPECT_EQ(decoded(payload, pixels(2, 3), {.maxPixels = 6, .maxBytes = 24}), "");
    EXPECT_EQ(decoded(payload, pixels(2, 3), {.maxPixels = 5}),
              "the bitmap of 2x3 pixels is beyond the limit");
    EXPECT_EQ(decoded(payload, pixels(2, 3), {.maxBytes = 23}),
              "the bitmap of 2x3 pixels is beyond the limit");
    EXPECT_EQ(decoded(payload, pixels(0xFFFFFFFF, 0xFFFFFFFF)),
              "the bitmap of 4294967295x4294967295 pixels is beyond the limit");
    EXPECT_EQ(decoded(payload, pixels(0x80000000, 2)),
              "the bitmap of 2147483648x2 pixels is beyond the limit");
    // Rows that lie far apart, or have wide pixels, take their memory as well.
    EXPECT_EQ(decoded(payload, pixels(2, 3, 9), {.maxBytes = 26}),
              "the bitmap of 2x3 pixels is beyond the limit");
    BitmapShape wide = pixels(2, 3);
    wide.pixelFormat = fourCharacterCode("RGBW");
    EXPECT_EQ(decoded(payload, wide, {.maxBytes = 47}),
              "the bitmap of 2x3 pixels is beyond the limit");
    BitmapShape gray = pixels(2, 3);
    gray.pixelFormat = fourCharacterCode("GRAY");
    EXPECT_EQ(decoded(payload, gray, {.maxBytes = 11}),
              "the bitmap of 2x3 pixels is beyond the limit");
}

TEST(Bitmap, NoPixelsAreAProblem) {
    const ByteVector payload = bitmapPayload(Compression::uncompressed, {});
    for (const auto& [width, height] : {std::pair{0U, 0U}, {1U, 0U}, {0U, 1U}}) {
        EXPECT_EQ(decoded(payload, pixels(width, height)), "the bitmap has no pixels");
    }
}

TEST(Bitmap, RowsDoNotOverlap) {
    const ByteVector payload = bitmapPayload(Compression::uncompressed, ByteVector(14));
    EXPECT_EQ(decoded(payload, pixels(2, 2, 7)), "the bitmap's rows of 8 bytes lie 7 bytes apart");
}

TEST(Bitmap, ShortFilesDoNotClaimLargePictures) {
    const std::string problem = "the bitmap is too short for its pixels";
    const BitmapShape large = pixels(8192, 8192);
    for (const Compression compression :
         {Compression::uncompressed, Compression::rle, Compression::zip, Compression::lzvn,
          Compression::lzfse, Compression::deepmap, Compression::deepmap2}) {
        EXPECT_EQ(decoded(bitmapPayload(compression, ByteVector(4000)), large), problem);
    }
    EXPECT_EQ(decoded(bitmapPayload(Compression::paletteImage, ByteVector(4000)), large), problem);
}

TEST(Bitmap, FlatPicturesAreNotTooShort) {
    const Picture picture{.format = Format::bgra,
                          .width = 1024,
                          .height = 1024,
                          .pixels = ByteVector(std::size_t{4} * 1024 * 1024)};
    const StoredPixels stored = storedPixels(picture);
    EXPECT_EQ(differenceFrom(picture,
                             inBands(picture, Compression::lzfse, 1024,
                                     [](const StoredPixels& band) { return lzfse(band.bytes); })),
              "");
    EXPECT_EQ(differenceFrom(picture, inBands(picture, Compression::zip, 1024,
                                              [](const StoredPixels& band) {
                                                  return deflated(band.bytes,
                                                                  DeflateWrapping::none);
                                              })),
              "");
    EXPECT_EQ(differenceFrom(picture, inBands(picture, Compression::paletteImage, 1024,
                                              [](const StoredPixels& band) {
                                                  return lzfse(paletteImage(band));
                                              })),
              "");
    EXPECT_EQ(
        differenceFrom(picture, inBands(picture, Compression::rle, 1024,
                                        [](const StoredPixels& band) { return rle(band, 4); })),
        "");
}

TEST(Bitmap, DataIsExactlyTheRows) {
    const BitmapShape shape = pixels(2, 3, 12);
    EXPECT_EQ(decoded(bitmapPayload(Compression::uncompressed, ByteVector(36)), shape), "");
    EXPECT_EQ(decoded(bitmapPayload(Compression::uncompressed, ByteVector(37)), shape),
              "a band of the bitmap has 37 bytes, not 36");
    for (const Encoder& encoder : encoders()) {
        if (encoder.compression == Compression::uncompressed) {
            continue;
        }
        const auto payload = [&](std::size_t size) {
            return bitmapPayload(encoder.compression, encoder.encode(ByteVector(size)));
        };
        EXPECT_EQ(decoded(payload(36), shape), "") << encoder.name;
        EXPECT_EQ(decoded(payload(35), shape),
                  "a band of the bitmap decompresses to 35 bytes, not 36")
            << encoder.name;
        EXPECT_EQ(decoded(payload(37), shape), "the bitmap's compressed data is damaged")
            << encoder.name;
    }
}

TEST(Bitmap, PayloadIsAsLongAsItSays) {
    ByteVector payload = bitmapPayload(Compression::uncompressed, ByteVector(4));
    EXPECT_EQ(decoded(payload, pixels(1, 1)), "");
    payload.push_back(0);
    EXPECT_EQ(decoded(payload, pixels(1, 1)), "the bitmap is longer than it says");
    payload[12] = 6;
    EXPECT_EQ(decoded(payload, pixels(1, 1)), "the bitmap is shorter than it says");
    payload[12] = payload[13] = payload[14] = payload[15] = 0xFF;
    EXPECT_EQ(decoded(payload, pixels(1, 1)), "the bitmap is shorter than it says");
}

TEST(Bitmap, BandsMakeUpTheHeight) {
    const auto payload = [](const std::vector<std::uint32_t>& rows) {
        std::vector<CarBand> bands;
        for (const std::uint32_t count : rows) {
            bands.push_back({.rows = count, .data = ByteVector(count < 100 ? count * 4 : 4)});
        }
        return bandedPayload(Compression::uncompressed, bands);
    };
    EXPECT_EQ(decoded(payload({1, 2, 1}), pixels(1, 4)), "");
    EXPECT_EQ(decoded(payload({1, 2}), pixels(1, 4)), "the bitmap's bands have 3 rows, not 4");
    EXPECT_EQ(decoded(payload({1, 2, 2}), pixels(1, 4)), "the bitmap's bands have 5 rows, not 4");
    EXPECT_EQ(decoded(payload({}), pixels(1, 4)), "the bitmap's bands have 0 rows, not 4");
    EXPECT_EQ(decoded(payload({4, 0}), pixels(1, 4)), "a band of the bitmap has no rows");
    EXPECT_EQ(decoded(payload({0xFFFFFFFF, 5}), pixels(1, 4)),
              "the bitmap's bands have 4294967300 rows, not 4");
}

TEST(Bitmap, BandsAreWithinThePayload) {
    ByteVector payload =
        bandedPayload(Compression::uncompressed, {{.rows = 1, .data = ByteVector(4)}});
    ASSERT_EQ(decoded(payload, pixels(1, 1)), "");
    ByteVector changed = payload;
    changed[32] = 5;
    EXPECT_EQ(decoded(changed, pixels(1, 1)), "the bitmap ends within a band");
    changed = payload;
    changed[16] = 'X';
    EXPECT_EQ(decoded(changed, pixels(1, 1)), "a band of the bitmap does not begin as one");
    changed = payload;
    changed[15] = 0x7F;
    EXPECT_EQ(decoded(changed, pixels(1, 1)), "the bitmap is too short for its 2130706433 bands");
    changed = payload;
    changed.push_back(0);
    EXPECT_EQ(decoded(changed, pixels(1, 1)), "the bitmap is longer than it says");
}

TEST(Bitmap, EveryTruncationIsAProblem) {
    const Picture picture = artwork(9, 8, Format::bgra);
    for (const Encoder& encoder : encoders()) {
        const StoredPixels stored = storedPixels(picture);
        const ByteVector payload =
            bandedPayload(encoder.compression,
                          {{.rows = 5, .data = encoder.encode(paddedRows(stored.band(0, 5), 40))},
                           {.rows = 3, .data = encoder.encode(paddedRows(stored.band(5, 3), 40))}});
        ASSERT_EQ(decoded(payload, shapeOf(picture, 40)), "");
        for (std::size_t size = 0; size < payload.size(); ++size) {
            EXPECT_NE(decoded(cut(payload, size), shapeOf(picture, 40)), "") << size;
        }
        // The same without bands, so that the data alone is cut.
        const ByteVector data = encoder.encode(picture.pixels);
        for (std::size_t size = 0; size < data.size(); ++size) {
            EXPECT_NE(
                decoded(bitmapPayload(encoder.compression, cut(data, size)), shapeOf(picture)), "")
                << encoder.name << " " << size;
        }
    }
}

}  // namespace velmoranth::tests::bitmap_test
