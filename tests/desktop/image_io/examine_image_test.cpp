// What is said of an image without decoding it is what decoding it says.
#include "desktop/image_io/image_io.h"

#include "test_images.h"
#include <gtest/gtest.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace velmoranth::desktop::test_images::examine_image_test {
namespace {

using Bytes = std::span<const std::uint8_t>;

// What whole decoding says.
Result<ImageFacts> factsOfDecoded(Bytes file, const DecodeLimits& limits) {
    const auto image = decodeImage(file, limits);
    if (!image) {
        return tl::unexpected(image.error());
    }
    const auto pixels = toPremultipliedBgra(*image);
    bool isClear = !pixels.empty();
    for (std::size_t i = 3; i < pixels.size(); i += 4) {
        isClear = isClear && pixels[i] == 0;
    }
    return ImageFacts{
        .width = image->layout.width, .height = image->layout.height, .isClear = isClear};
}

std::string textOf(const Result<ImageFacts>& facts) {
    if (!facts) {
        return facts.error().message;
    }
    return std::to_string(facts->width) + " x " + std::to_string(facts->height) +
           (facts->isClear ? ", clear" : "");
}

void expectSameVerdict(Bytes file, const DecodeLimits& limits = {}) {
    EXPECT_EQ(textOf(examineImage(file, limits)), textOf(factsOfDecoded(file, limits)));
}

struct Parts {
    std::uint8_t colorType = 6;
    std::uint8_t bitDepth = 8;
    std::uint32_t width = 5;
    std::uint32_t height = 3;
    std::uint8_t interlace = 0;
};

std::size_t channelsOf(std::uint8_t colorType) {
    return colorType == 6 ? 4 : colorType == 2 ? 3 : colorType == 4 ? 2 : 1;
}

// Rows of zeroes, each behind the filter.
Data clearRows(const Parts& parts, std::uint8_t filter = 0) {
    Data rows;
    const std::size_t bits = channelsOf(parts.colorType) * parts.bitDepth * parts.width;
    for (std::uint32_t y = 0; y < parts.height; ++y) {
        rows.push_back(filter);
        rows.insert(rows.end(), (bits + 7) / 8, 0);
    }
    return rows;
}

struct ChunkSpec {
    const char* type;
    Data data;
};

// With the header before these and the end behind them.
Data pngOf(const Parts& parts, const std::vector<ChunkSpec>& chunks) {
    Data file = pngSignature();
    appendChunk(
        file, "IHDR",
        pngHeader(parts.width, parts.height, parts.bitDepth, parts.colorType, parts.interlace));
    for (const ChunkSpec& chunk : chunks) {
        appendChunk(file, chunk.type, chunk.data);
    }
    appendChunk(file, "IEND", {});
    return file;
}

Data pngOfRows(const Parts& parts, const Data& rows) {
    return pngOf(parts, {{"IDAT", zlibStream(rows)}});
}

TEST(ExamineImage, TellsSizeAndWhetherAnythingShows) {
    Data rows = clearRows({});
    EXPECT_EQ(textOf(examineImage(pngOfRows({}, rows))), "5 x 3, clear");
    rows[1] = 200;  // a colour without alpha
    EXPECT_EQ(textOf(examineImage(pngOfRows({}, rows))), "5 x 3, clear");
    rows.back() = 1;
    EXPECT_EQ(textOf(examineImage(pngOfRows({}, rows))), "5 x 3");
    const Parts opaque{.colorType = 2};
    EXPECT_EQ(textOf(examineImage(pngOfRows(opaque, clearRows(opaque)))), "5 x 3");
}

// A byte of each row is set: with a filter it shows up in others.
TEST(ExamineImage, TakesEveryFilterOff) {
    for (std::uint8_t filter = 0; filter < 6; ++filter) {
        for (std::size_t at = 0; at < clearRows({}).size(); ++at) {
            Data rows = clearRows({}, filter);
            rows[at] = static_cast<std::uint8_t>(rows[at] + 1);
            expectSameVerdict(pngOfRows({}, rows));
        }
    }
}

// 3 in the first row's alpha; the second takes it back by the row above.
TEST(ExamineImage, RowsThatEndOtherwiseThanTheyAreStored) {
    Parts parts{.width = 1, .height = 2};
    expectSameVerdict(pngOfRows(parts, {0, 9, 9, 9, 0, 2, 1, 1, 1, 0}));
    EXPECT_EQ(textOf(examineImage(pngOfRows(parts, {0, 9, 9, 9, 0, 2, 1, 1, 1, 0}))),
              "1 x 2, clear");
    parts.width = 2;
    parts.height = 1;
    // The second pixel's alpha is 255 more than 1 to its left.
    EXPECT_EQ(textOf(examineImage(pngOfRows(parts, {1, 0, 0, 0, 1, 0, 0, 0, 255}))), "2 x 1");
}

TEST(ExamineImage, EveryKindOfPng) {
    struct Kind {
        int colorType;
        std::vector<int> depths;
    };

    const std::vector<Kind> kinds{
        {0, {1, 2, 4, 8, 16}}, {2, {8, 16}}, {3, {1, 2, 4, 8}}, {4, {8, 16}}, {6, {8, 16}}};
    for (const Kind& kind : kinds) {
        for (const int depth : kind.depths) {
            for (const bool isInterlaced : {false, true}) {
                PngSpec spec{
                    .colorType = kind.colorType,
                    .bitDepth = depth,
                    .interlaced = isInterlaced,
                    .palette = kind.colorType == 3 ? palette16() : std::vector<PaletteEntry>()};
                if (kind.colorType == 3) {
                    spec.palette.resize(std::size_t{1} << depth);
                }
                SCOPED_TRACE(std::to_string(kind.colorType) + " of " + std::to_string(depth));
                const Data noisy = noiseRows(spec.width, spec.height, bitsPerPixel(spec));
                expectSameVerdict(pngFile(spec, noisy));
                expectSameVerdict(pngFile(spec, Data(noisy.size())));
                if (kind.colorType < 4) {
                    spec.transparency = kind.colorType == 2 ? std::vector<std::uint16_t>{0, 0, 0}
                                                            : std::vector<std::uint16_t>{0};
                    expectSameVerdict(pngFile(spec, noisy));
                    const Data clear = pngFile(spec, Data(noisy.size()));
                    expectSameVerdict(clear);
                    EXPECT_EQ(textOf(examineImage(clear)), "13 x 11, clear");
                }
            }
        }
    }
}

TEST(ExamineImage, OtherFormats) {
    expectSameVerdict(phonePngFile({}, noiseRows(13, 11, 32)));
    const Data clear = phonePngFile({}, Data(13 * 11 * 4));
    EXPECT_EQ(textOf(examineImage(clear)), "13 x 11, clear");
    expectSameVerdict(jpegFile(9, 7, 3, noise(9 * 7 * 3)));
    expectSameVerdict(gifFile({}, Data(13 * 11, 7)));
    EXPECT_EQ(textOf(examineImage(gifFile({.transparentIndex = 7}, Data(13 * 11, 7)))),
              "13 x 11, clear");
    expectSameVerdict(tiffFile({.extraSample = 2}, noiseRows(13, 11, 32)));
    expectSameVerdict({});
    expectSameVerdict(Data{'n', 'o'});
}

// What the chunks say besides the image data, and in which order they come, is for the decoder.
TEST(ExamineImage, ChunksThatAReaderLooksAt) {
    const Parts rgba{};
    const Parts rgb{.colorType = 2};
    const Data stream = zlibStream(clearRows(rgba));
    const Data rgbStream = zlibStream(clearRows(rgb));
    const auto half = static_cast<std::ptrdiff_t>(stream.size() / 2);
    const Data first(stream.begin(), stream.begin() + half);
    const Data second(stream.begin() + half, stream.end());
    const std::vector<std::vector<ChunkSpec>> cases{
        {{"IDAT", first}, {"IDAT", second}},
        {{"IDAT", first}, {"IDAT", {}}, {"IDAT", second}},
        {{"IDAT", {}}, {"IDAT", stream}},
        {{"IDAT", first}, {"tEXt", {'a', 0, 'b'}}, {"IDAT", second}},
        {{"IDAT", stream}, {"IDAT", {1, 2, 3}}},
        {{"tEXt", {'a', 0, 'b'}}, {"IDAT", stream}, {"tIME", {}}},
        {{"gAMA", {}}, {"iCCP", {1}}, {"sRGB", {77}}, {"IDAT", stream}},
        {{"PLTE", {1, 2, 3}}, {"IDAT", stream}},
        {{"PLTE", {1, 2}}, {"IDAT", stream}},
        {{"IDAT", stream}, {"PLTE", {1, 2, 3}}},
        {{"tRNS", {}}, {"IDAT", stream}},
        {{"tRNS", {0, 0, 0, 0, 0, 0}}, {"IDAT", stream}},
        {{"IHDR", pngHeader(5, 3, 8, 6)}, {"IDAT", stream}},
        {{"HARD", {1}}, {"IDAT", stream}},
        {{"IDAT", stream}, {"HARD", {1}}},
        {{"a1b2", {1}}, {"IDAT", stream}},
        {{"a[b]", {1}}, {"IDAT", stream}},
        {{"bIGG", Data(9000000)}, {"IDAT", stream}},
    };
    for (std::size_t i = 0; i < cases.size(); ++i) {
        SCOPED_TRACE(i);
        expectSameVerdict(pngOf(rgba, cases[i]));
    }
    expectSameVerdict(pngOf(rgb, {{"tRNS", {0, 0, 0, 0, 0, 0}}, {"IDAT", rgbStream}}));
    expectSameVerdict(pngOf(rgb, {{"tRNS", {0, 0}}, {"IDAT", rgbStream}}));
    expectSameVerdict(pngOf(rgb, {{"IDAT", rgbStream}, {"tRNS", {0, 0, 0, 0, 0, 0}}}));
    Data before = pngSignature();
    appendChunk(before, "IHDR", pngHeader(5, 3, 8, 6));
    appendChunk(before, "tEXt", Data{'a', 0, 'b'}, 1);
    appendChunk(before, "IDAT", stream);
    appendChunk(before, "IEND", {});
    expectSameVerdict(before);
}

// What a stream may have wrong that is no matter to some readers.
TEST(ExamineImage, StreamsOutOfOrder) {
    const Data rows = clearRows({});
    Data wrongSum = zlibStream(rows);
    wrongSum.back() ^= 1;
    expectSameVerdict(pngOf({}, {{"IDAT", wrongSum}}));
    Data withoutSum = zlibStream(rows);
    withoutSum.resize(withoutSum.size() - 4);
    expectSameVerdict(pngOf({}, {{"IDAT", withoutSum}}));
    Data longer = rows;
    longer.push_back(7);
    expectSameVerdict(pngOfRows({}, longer));
    Data shorter = rows;
    shorter.pop_back();
    expectSameVerdict(pngOfRows({}, shorter));
    Data junk = zlibStream(rows);
    junk.insert(junk.end(), {1, 2, 3});
    expectSameVerdict(pngOf({}, {{"IDAT", junk}}));
    Data dictionary = zlibStream(rows);
    dictionary[1] |= 0x20;
    expectSameVerdict(pngOf({}, {{"IDAT", dictionary}}));
}

// Behind a checksum that is right, so that it is the stream that counts.
TEST(ExamineImage, EveryChangedByteOfAStream) {
    Data rows = noiseRows(13, 11, 32);
    for (std::size_t y = 0; y < 11; ++y) {
        rows.insert(rows.begin() + static_cast<std::ptrdiff_t>(y * 53),
                    static_cast<std::uint8_t>(y % 5));
    }
    const Data stream = zlibStream(rows);
    for (std::size_t at = 0; at < stream.size(); ++at) {
        for (const std::uint8_t change : Data{0x01, 0x10, 0x80, 0xFF}) {
            Data changed = stream;
            changed[at] ^= change;
            expectSameVerdict(pngOf({.width = 13, .height = 11}, {{"IDAT", changed}}));
        }
    }
}

// A stream that says of itself that it looks back 256 bytes and looks back farther.
TEST(ExamineImage, WindowThatIsTooNarrow) {
    const Parts parts{.width = 200, .height = 4};
    Data rows;
    const Data pixels = noise(parts.width * 4);
    for (std::uint32_t y = 0; y < parts.height; ++y) {
        rows.push_back(0);
        rows.insert(rows.end(), pixels.begin(), pixels.end());
    }
    Data stream = zlibStream(rows);
    ASSERT_LT(stream.size(), rows.size() / 2);  // it looks back
    stream[0] = 0x08;
    stream[1] = static_cast<std::uint8_t>(31 - (0x08 << 8) % 31);
    const Data file = pngOf(parts, {{"IDAT", stream}});
    ASSERT_NE(problemOf(file), "none");
    expectSameVerdict(file);
}

TEST(ExamineImage, LimitsCutOffsAndEveryChangedByte) {
    const std::array files{pngFile({}, noiseRows(13, 11, 32)), pngFile({}, Data(13 * 11 * 4)),
                           pngFile({.colorType = 2}, noiseRows(13, 11, 24))};
    for (const Data& file : files) {
        expectSameVerdict(file, {.maxWidth = 12});
        expectSameVerdict(file, {.maxHeight = 10});
        expectSameVerdict(file, {.maxBytes = 400});
        for (std::size_t at = 0; at < file.size(); ++at) {
            expectSameVerdict(Bytes(file).first(at));
            for (const std::uint8_t change : Data{0x01, 0x20, 0x80, 0xFF}) {
                Data changed = file;
                changed[at] ^= change;
                expectSameVerdict(changed, {.maxWidth = 512, .maxHeight = 512});
            }
        }
    }
}

}  // namespace
}  // namespace velmoranth::desktop::test_images::examine_image_test
