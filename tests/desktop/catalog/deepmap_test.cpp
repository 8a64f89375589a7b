#include "tests/support/catalog/lzfse_writer.h"

#include "test_pictures.h"
#include <gtest/gtest.h>

namespace velmoranth::tests::deepmap_test {

namespace {

using catalog::BitmapShape;
using catalog::Compression;
using catalog::decodeBitmap;
using catalog::Picture;

Compression compressionOf(const DeepmapOptions& options) {
    return options.version == DeepmapVersion::first ? Compression::deepmap : Compression::deepmap2;
}

// What comes of the picture when it is stored and decoded.
std::string lost(const Picture& picture, DeepmapOptions options, std::size_t rows = 1000) {
    options.pixelCode = picture.format == Format::bgra ? 4 : 2;
    const auto encode = [&](const StoredPixels& band) { return deepmap(band, options); };
    return differenceFrom(picture, inBands(picture, compressionOf(options), rows, encode));
}

std::string decoded(const ByteVector& data, const Picture& picture,
                    Compression compression = Compression::deepmap2) {
    return problemOf(decodeBitmap(bitmapPayload(compression, data), shapeOf(picture), {}));
}

// The data with a byte put in place of another.
ByteVector with(ByteVector data, std::size_t offset, std::uint8_t byte) {
    data.at(offset) = byte;
    return data;
}

constexpr std::array kVersions{DeepmapVersion::first, DeepmapVersion::second};

}  // namespace

TEST(Deepmap, ReadsPixelsAsTheyAre) {
    const BitmapShape shape{.width = 2,
                            .height = 1,
                            .pixelFormat = catalog::fourCharacterCode("GA8 "),
                            .colorSpace = 2,
                            .rowBytes = 16};
    const ByteVector second = ByteWriter()
                                  .u32(1)
                                  .u32(2)
                                  .u64(16)
                                  .text("dmp2")
                                  .bytes(ByteVector{1, 1, 10, 2})
                                  .u16(2)
                                  .u16(1)
                                  .bytes(ByteVector{7, 8, 9, 255})
                                  .take();
    const auto picture = decodeBitmap(bitmapPayload(Compression::deepmap2, second), shape, {});
    ASSERT_TRUE(picture) << problemOf(picture);
    EXPECT_EQ(picture->pixels, (ByteVector{7, 8, 9, 255}));
}

TEST(Deepmap, EveryMethodRoundTrips) {
    for (const DeepmapVersion version : kVersions) {
        for (const std::size_t method : {1U, 2U, 3U}) {
            for (const Format format : {Format::bgra, Format::grayAlpha}) {
                for (const auto& picture : {artwork(67, 70, format), artwork(1, 1, format),
                                            artwork(3, 200, format), artwork(130, 1, format)}) {
                    const DeepmapOptions options{.version = version, .method = method};
                    EXPECT_EQ(lost(picture, options), "") << method << " " << picture.width;
                    EXPECT_EQ(lost(picture, options, 33), "") << method << " " << picture.width;
                }
            }
        }
    }
}

TEST(Deepmap, EveryPredictorRoundTrips) {
    for (const DeepmapVersion version : kVersions) {
        for (std::uint8_t predictor = 0; predictor < 5; ++predictor) {
            for (const std::size_t chromaScale : {0U, 1U}) {
                DeepmapOptions options{.version = version, .chromaScale = chromaScale};
                options.predictors = {predictor};
                EXPECT_EQ(lost(artwork(90, 40, Format::bgra), options), "") << int{predictor};
                EXPECT_EQ(lost(artwork(90, 40, Format::grayAlpha), options), "") << int{predictor};
                EXPECT_EQ(lost(noise(50, 40, Format::grayAlpha), options), "") << int{predictor};
            }
        }
    }
}

TEST(Deepmap, FullDifferencesOfColorLoseNothing) {
    for (std::uint8_t predictor = 0; predictor < 5; ++predictor) {
        DeepmapOptions options{.chromaScale = 0};
        options.predictors = {predictor};
        EXPECT_EQ(lost(noise(64, 64, Format::bgra), options), "") << int{predictor};
    }
}

TEST(Deepmap, HalvedDifferencesOfColorLoseOneAtMost) {
    const Picture picture = noise(64, 64, Format::bgra);
    const auto data = deepmap(storedPixels(picture), {.chromaScale = 1});
    const auto back =
        decodeBitmap(bitmapPayload(Compression::deepmap2, data), shapeOf(picture), {});
    ASSERT_TRUE(back) << problemOf(back);
    std::size_t others = 0;
    for (std::size_t i = 0; i < picture.pixels.size(); ++i) {
        const int difference = back->pixels[i] - picture.pixels[i];
        ASSERT_LE(std::abs(difference), i % 4 == 0 ? 2 : 1) << i;
        others += difference == 0 ? 0 : 1;
    }
    EXPECT_GT(others, 0);
}

TEST(Deepmap, TilesAre256PixelsWide) {
    for (const auto& [width, height] :
         {std::pair{255U, 3U}, {256U, 256U}, {257U, 2U}, {2U, 257U}, {513U, 300U}}) {
        for (const std::size_t method : {2U, 3U}) {
            const DeepmapOptions options{.version = DeepmapVersion::first, .method = method};
            EXPECT_EQ(lost(artwork(width, height, Format::bgra), options), "") << width;
            EXPECT_EQ(lost(artwork(width, height, Format::grayAlpha), options), "") << width;
        }
    }
}

TEST(Deepmap, SegmentsMayBeOfAnyHeight) {
    for (const std::size_t rows : {1U, 2U, 39U, 40U, 41U, 65535U}) {
        for (const std::size_t method : {2U, 3U}) {
            const DeepmapOptions options{.method = method, .segmentRows = rows};
            EXPECT_EQ(lost(artwork(30, 40, Format::bgra), options), "") << rows;
        }
    }
}

TEST(Deepmap, BothPalettesRoundTrip) {
    for (const std::uint32_t colors : {1U, 2U, 255U, 256U}) {
        const Picture picture = ofColors(300, 20, colors);
        EXPECT_EQ(lost(picture, {.method = 4, .paletteType = 3}), "");
        EXPECT_EQ(lost(picture, {.method = 4, .paletteType = 4}), "");
        EXPECT_EQ(lost(picture, {.version = DeepmapVersion::first, .method = 4}), "");
    }
}

TEST(Deepmap, PaletteIndexesMayBeCutIntoSegments) {
    const Picture picture = ofColors(4, 1, 2);
    ByteVector data = deepmap(storedPixels(picture), {.method = 4, .paletteType = 4});
    // The header, two colours, and two segments of two indexes in place of the one of four.
    data.resize(16 + 12 + 4 + 8);
    const auto first = lzvn(ByteVector{0, 1});
    const auto second = lzvn(ByteVector{1, 0});
    ByteWriter writer;
    writer.bytes(data).u32(first.size()).bytes(first).u32(second.size()).bytes(second);
    data = writer.take();
    data[8] = static_cast<std::uint8_t>(data.size() - 16);
    const auto back =
        decodeBitmap(bitmapPayload(Compression::deepmap2, data), shapeOf(picture), {});
    ASSERT_TRUE(back) << problemOf(back);
    EXPECT_EQ(ByteVector(back->pixels.begin(), back->pixels.begin() + 8),
              ByteVector(picture.pixels.begin(), picture.pixels.begin() + 8));
    EXPECT_EQ(ByteVector(back->pixels.begin() + 8, back->pixels.begin() + 12),
              ByteVector(picture.pixels.begin() + 4, picture.pixels.begin() + 8));
}

TEST(Deepmap, PixelsWithoutAlphaAreOpaque) {
    const Picture gray = opaque(artwork(300, 20, Format::grayAlpha));
    const Picture color = opaque(artwork(300, 20, Format::bgra));
    StoredPixels bare{.width = 300, .rows = 20, .bytesPerPixel = 1};
    for (std::size_t i = 0; i < gray.pixels.size(); i += 2) {
        bare.bytes.push_back(gray.pixels[i]);
    }
    StoredPixels threes{.width = 300, .rows = 20, .bytesPerPixel = 3};
    for (std::size_t i = 0; i < color.pixels.size(); i += 4) {
        threes.bytes.insert(threes.bytes.end(),
                            {color.pixels[i], color.pixels[i + 1], color.pixels[i + 2]});
    }
    for (const DeepmapVersion version : kVersions) {
        for (const std::size_t method : {1U, 2U, 3U}) {
            DeepmapOptions options{.version = version, .method = method, .pixelCode = 1};
            const auto payload = [&](const StoredPixels& stored) {
                return bitmapPayload(compressionOf(options), deepmap(stored, options));
            };
            EXPECT_EQ(differenceFrom(gray, decodeBitmap(payload(bare), shapeOf(gray), {})), "");
            options.pixelCode = 3;
            EXPECT_EQ(differenceFrom(color, decodeBitmap(payload(threes), shapeOf(color), {})), "");
        }
    }
}

TEST(Deepmap, OpaqueBitmapsHaveNoAlpha) {
    const Picture picture = artwork(40, 40, Format::bgra);
    const auto data = deepmap(storedPixels(picture), {});
    EXPECT_EQ(differenceFrom(opaque(picture),
                             decodeBitmap(bitmapPayload(Compression::deepmap2, data, true),
                                          shapeOf(picture), {})),
              "");
}

TEST(Deepmap, HeaderIsChecked) {
    const Picture picture = artwork(8, 4, Format::bgra);
    const ByteVector data = deepmap(storedPixels(picture), {.segmentRows = 4});
    ASSERT_EQ(decoded(data, picture), "");
    EXPECT_EQ(decoded(with(data, 0, 2), picture), "the deepmap does not begin as one");
    EXPECT_EQ(decoded(with(data, 19, '3'), picture), "the deepmap does not begin as one");
    EXPECT_EQ(decoded(data, picture, Compression::deepmap), "the deepmap does not begin as one");
    EXPECT_EQ(decoded(with(data, 8, 0), picture), "the deepmap is not as long as it says");
    EXPECT_EQ(decoded(with(data, 15, 1), picture), "the deepmap is not as long as it says");
    EXPECT_EQ(decoded(with(data, 24, 9), picture), "the deepmap has segments of 9x4 pixels");
    EXPECT_EQ(decoded(with(data, 26, 0), picture), "the deepmap has segments of 8x0 pixels");
    EXPECT_EQ(decoded(with(data, 23, 2), picture), "the deepmap has pixels of another format");
    EXPECT_EQ(decoded(with(data, 23, 0x14), picture),
              "the deepmap has pixels of code 20, which is not supported");
    EXPECT_EQ(decoded(with(data, 20, 5), picture), "the deepmap's method 5 is not supported");
    EXPECT_EQ(decoded(with(data, 20, 0), picture), "the deepmap's method 0 is not supported");
}

TEST(Deepmap, NestedGridsAreNotSupported) {
    const Picture picture = artwork(8, 4, Format::bgra);
    ByteWriter writer;
    writer.u32(1).u32(4).u64(40).text("KCBC").zeros(36);
    EXPECT_EQ(decoded(writer.take(), picture), "the deepmap is a grid, which is not supported");
    writer.text("KCBC").zeros(36);
    EXPECT_EQ(decoded(writer.take(), picture), "the deepmap is a grid, which is not supported");
}

TEST(Deepmap, SegmentsHaveToFit) {
    const Picture picture = artwork(8, 4, Format::bgra);
    const auto map = [&](std::size_t method, const ByteVector& contents) {
        const ByteVector segment = lzvn(contents);
        ByteWriter writer;
        writer.u32(1).u32(4).u64(16 + segment.size()).text("dmp2").u8(method).u8(1).u8(10).u8(4);
        return writer.u16(8).u16(4).u32(segment.size()).bytes(segment).take();
    };
    // Alpha, predictors and three components of two bytes: 228, and up to 240 with padding.
    EXPECT_EQ(decoded(map(2, ByteVector(228)), picture), "");
    EXPECT_EQ(decoded(map(2, ByteVector(240)), picture), "");
    EXPECT_EQ(decoded(map(2, ByteVector(227)), picture),
              "a segment of the deepmap is shorter than its planes");
    EXPECT_EQ(decoded(map(2, ByteVector(241)), picture), "a segment of the deepmap is damaged");
    EXPECT_EQ(decoded(map(2, ByteVector(228, 5)), picture),
              "a row of the deepmap has a predictor that nobody knows");
    EXPECT_EQ(decoded(map(3, ByteVector(128)), picture), "");
    EXPECT_EQ(decoded(map(3, ByteVector(96)), picture),
              "a segment of the deepmap is shorter than its pixels");
    EXPECT_EQ(decoded(map(3, ByteVector(129)), picture), "a segment of the deepmap is damaged");
    EXPECT_EQ(decoded(with(map(3, ByteVector(128)), 28, 200), picture),
              "the deepmap ends before its segments do");
    EXPECT_EQ(decoded(with(map(3, ByteVector(128)), 31, 255), picture),
              "the deepmap ends before its segments do");
}

TEST(Deepmap, NothingFollowsTheLastSegment) {
    const Picture picture = artwork(8, 4, Format::bgra);
    for (const std::size_t method : {1U, 2U, 3U}) {
        ByteVector data = deepmap(storedPixels(picture), {.method = method});
        data.push_back(0);
        ++data[8];
        EXPECT_EQ(decoded(data, picture), "the deepmap goes on behind its pixels") << method;
    }
}

TEST(Deepmap, PaletteIsChecked) {
    const Picture picture = ofColors(8, 4, 3);
    const ByteVector data = deepmap(storedPixels(picture), {.method = 4});
    ASSERT_EQ(decoded(data, picture), "");
    EXPECT_EQ(decoded(with(data, 28, 0), picture), "the deepmap has a palette of 0 colours");
    EXPECT_EQ(decoded(with(data, 28, 200), picture), "the deepmap ends within its palette");
    EXPECT_EQ(decoded(with(data, 30, 5), picture),
              "the deepmap has a palette of type 5 for pixels of code 4, which is not supported");
    EXPECT_EQ(decoded(with(data, 30, 0), picture),
              "the deepmap has a palette of type 0 for pixels of code 4, which is not supported");
    const ByteVector gray = deepmap(storedPixels(artwork(8, 4, Format::bgra)), {.method = 4});
    EXPECT_EQ(decoded(with(gray, 23, 2), artwork(8, 4, Format::grayAlpha)),
              "the deepmap has a palette of type 4 for pixels of code 2, which is not supported");
}

TEST(Deepmap, IndexesBeyondThePaletteAreAProblem) {
    const Picture picture = ofColors(8, 4, 3);
    for (const std::size_t type : {3U, 4U}) {
        ByteVector data = deepmap(storedPixels(picture), {.method = 4, .paletteType = type});
        // One colour less, and its four bytes.
        --data[28];
        data[8] = static_cast<std::uint8_t>(data[8] - 4);
        data.erase(data.begin() + 32, data.begin() + 36);
        EXPECT_EQ(decoded(data, picture), "the deepmap has an index beyond its palette") << type;
    }
}

TEST(Deepmap, EveryTruncationIsAProblem) {
    const Picture picture = ofColors(8, 6, 3);
    for (const DeepmapVersion version : kVersions) {
        for (const std::size_t method : {1U, 2U, 3U, 4U}) {
            const DeepmapOptions options{.version = version, .method = method, .segmentRows = 4};
            const ByteVector data = deepmap(storedPixels(picture), options);
            ASSERT_EQ(decoded(data, picture, compressionOf(options)), "");
            for (std::size_t size = 0; size < data.size(); ++size) {
                ByteVector cut(data.begin(), data.begin() + static_cast<std::ptrdiff_t>(size));
                EXPECT_NE(decoded(cut, picture, compressionOf(options)), "") << size;
                // The same with a length that fits.
                const ByteVector length =
                    ByteWriter().u64(size - std::min<std::size_t>(size, 16)).take();
                std::copy_n(
                    length.begin(), size < 16 ? 0 : 8,
                    cut.begin() + static_cast<std::ptrdiff_t>(std::min<std::size_t>(size, 8)));
                EXPECT_NE(decoded(cut, picture, compressionOf(options)), "") << size;
            }
        }
    }
}

}  // namespace velmoranth::tests::deepmap_test
