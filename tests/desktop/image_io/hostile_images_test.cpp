// Files that are cut off, damaged or made to do harm.
#include "desktop/image_io/image_io.h"

#include "test_images.h"
#include <gtest/gtest.h>

#include <string>

namespace velmoranth::desktop::test_images::hostile_images_test {
namespace {

// Every beginning of the file, each in memory of its own so that a read beyond its end is seen.
void expectNoBeginningDecodes(const Data& file) {
    ASSERT_EQ(problemOf(file), "none");
    for (std::size_t size = 0; size < file.size(); ++size) {
        const Data beginning(file.begin(), file.begin() + static_cast<std::ptrdiff_t>(size));
        const auto image = decodeImage(beginning);
        ASSERT_FALSE(image) << size << " of " << file.size() << " bytes";
        ASSERT_FALSE(image.error().message.empty());
    }
}

// Whatever one changed byte does, the answer is a picture or a problem.
void expectEveryChangedByteIsAnswered(const Data& file) {
    const DecodeLimits limits{.maxWidth = 512, .maxHeight = 512, .maxBytes = 1 << 20};
    for (std::size_t at = 0; at < file.size(); ++at) {
        for (const std::uint8_t change : Data{0x01, 0x80, 0xFF}) {
            Data changed = file;
            changed[at] ^= change;
            const auto image = decodeImage(changed, limits);
            if (image) {
                EXPECT_EQ(image->samples->size(), image->layout.height * image->layout.bytesPerRow);
                EXPECT_FALSE(toPremultipliedBgra(*image).empty());
            }
        }
    }
}

struct Sample {
    const char* name;
    Data (*make)();
};

class SmallFile : public testing::TestWithParam<Sample> {};

TEST_P(SmallFile, CutOffAnywhereFails) {
    expectNoBeginningDecodes(GetParam().make());
}

TEST_P(SmallFile, EveryChangedByteIsAnswered) {
    expectEveryChangedByteIsAnswered(GetParam().make());
}

INSTANTIATE_TEST_SUITE_P(
    All, SmallFile,
    testing::Values(
        Sample{"Png", [] { return pngFile({}, noiseRows(13, 11, 32)); }},
        Sample{"PngInterlaced",
               [] { return pngFile({.interlaced = true}, noiseRows(13, 11, 32)); }},
        Sample{"PngPalette",
               [] {
                   return pngFile({.colorType = 3,
                                   .bitDepth = 4,
                                   .palette = palette16(),
                                   .transparency = {0, 100}},
                                  noiseRows(13, 11, 4));
               }},
        Sample{"PhonePng", [] { return phonePngFile({}, noiseRows(13, 11, 32), {.pieces = 3}); }},
        Sample{"PhonePngInterlaced",
               [] { return phonePngFile({.interlaced = true}, noiseRows(13, 11, 32)); }},
        Sample{"Jpeg", [] { return jpegFile(9, 9, 3, noise(9 * 9 * 3)); }},
        Sample{"JpegProgressive", [] { return jpegFile(9, 9, 3, noise(9 * 9 * 3), true); }},
        Sample{"JpegInks", [] { return jpegFile(9, 9, 4, noise(9 * 9 * 4)); }},
        Sample{"Gif", [] { return gifFile({}, Data(13 * 11, 7)); }},
        Sample{
            "GifTransparent",
            [] { return gifFile({.interlaced = true, .transparentIndex = 7}, Data(13 * 11, 7)); }},
        Sample{"Tiff", [] { return tiffFile({.extraSample = 2}, noiseRows(13, 11, 32)); }},
        Sample{"TiffLzw",
               [] { return tiffFile({.components = 3, .compression = 5}, noiseRows(13, 11, 24)); }},
        Sample{"TiffTiled",
               [] { return tiffFile({.components = 3, .tiled = true}, noiseRows(13, 11, 24)); }}),
    [](const auto& sample) { return std::string(sample.param.name); });

TEST(HostileImage, EmptyFile) {
    EXPECT_EQ(problemOf({}), "the file is empty");
}

TEST(HostileImage, OneByteIsNoImage) {
    for (unsigned byte = 0; byte < 256; ++byte) {
        EXPECT_EQ(problemOf(Data{static_cast<std::uint8_t>(byte)}),
                  "the file is not an image (PNG, JPEG, GIF or TIFF)");
    }
}

TEST(HostileImage, TextIsNoImage) {
    const std::string text = "<?xml version=\"1.0\"?><plist/>";
    EXPECT_EQ(problemOf(Data(text.begin(), text.end())),
              "the file is not an image (PNG, JPEG, GIF or TIFF)");
}

// A small file that claims a size; its image data is small, too.
Data pngOfSize(std::uint32_t width, std::uint32_t height, bool isPhoneVariant = false) {
    Data file = pngSignature();
    if (isPhoneVariant) {
        appendChunk(file, "CgBI", Data{0x50, 0, 0x20, 2});
    }
    appendChunk(file, "IHDR", pngHeader(width, height, 8, 6));
    appendChunk(file, "IDAT", zlibStream(Data(100)));
    appendChunk(file, "IEND", {});
    return file;
}

TEST(HostileImage, TooWideIsRefused) {
    const std::string expected =
        "the image is 100000 x 20 pixels, more than the 16384 x 16384 that are read";
    EXPECT_EQ(problemOf(pngOfSize(100000, 20)), expected);
    EXPECT_EQ(problemOf(pngOfSize(100000, 20, true)), expected);
    EXPECT_EQ(problemOf(tiffFile({.width = 100000, .height = 20, .components = 1, .photometric = 1},
                                 Data(2000000))),
              expected);
}

TEST(HostileImage, TooHighIsRefused) {
    EXPECT_EQ(problemOf(pngOfSize(0x7FFFFFFF, 0x7FFFFFFF)),
              "the image is 2147483647 x 2147483647 pixels, more than the 16384 x 16384 that are "
              "read");
    EXPECT_EQ(problemOf(jpegFile(8, 100, 1, Data(800)), {.maxHeight = 99}),
              "the image is 8 x 100 pixels, more than the 16384 x 99 that are read");
    EXPECT_EQ(problemOf(gifFile({}, Data(13 * 11)), {.maxHeight = 10}),
              "the image is 13 x 11 pixels, more than the 16384 x 10 that are read");
}

TEST(HostileImage, NoPixelsIsRefused) {
    for (const bool isPhoneVariant : {false, true}) {
        EXPECT_EQ(problemOf(pngOfSize(0, 5, isPhoneVariant)), "the image has no pixels");
        EXPECT_EQ(problemOf(pngOfSize(5, 0, isPhoneVariant)), "the image has no pixels");
    }
}

TEST(HostileImage, MoreMemoryThanAllowedIsRefused) {
    const std::string expected = "the image takes more than the 571 bytes that are allowed";
    const DecodeLimits limits{.maxBytes = 571};  // one less than 13 x 11 pixels of 4 bytes
    EXPECT_EQ(problemOf(pngFile({}, noiseRows(13, 11, 32)), limits), expected);
    EXPECT_EQ(problemOf(phonePngFile({}, noiseRows(13, 11, 32)), limits), expected);
    EXPECT_EQ(problemOf(gifFile({.transparentIndex = 1}, Data(13 * 11)), limits), expected);
    EXPECT_EQ(problemOf(jpegFile(64, 64, 3, Data(64 * 64 * 3)), limits), expected);
    EXPECT_EQ(problemOf(tiffFile({.extraSample = 2}, noiseRows(13, 11, 32)), limits), expected);
    EXPECT_EQ(problemOf(pngFile({}, noiseRows(13, 11, 32)), {.maxBytes = 572}), "none");
    EXPECT_EQ(problemOf(pngOfSize(16384, 16384)),
              "the image takes more than the 268435456 bytes that are allowed");
}

// A palette file takes little as stored and four bytes a pixel once it has alpha.
TEST(HostileImage, MemoryCountsWhatIsDelivered) {
    const PngSpec spec{.colorType = 3, .bitDepth = 1, .palette = {{}, {}}, .transparency = {0}};
    EXPECT_EQ(problemOf(pngFile(spec, noiseRows(13, 11, 1)), {.maxBytes = 571}),
              "the image takes more than the 571 bytes that are allowed");
    EXPECT_EQ(problemOf(phonePngFile(spec, noiseRows(13, 11, 1)), {.maxBytes = 571}),
              "the image takes more than the 571 bytes that are allowed");
}

TEST(HostileImage, ClaimBeyondWhatTheDataCanHoldIsRefused) {
    for (const bool isPhoneVariant : {false, true}) {
        EXPECT_EQ(problemOf(pngOfSize(8000, 8000, isPhoneVariant)),
                  "the image data of the PNG file is too short for its size");
    }
}

// 16 MB of zeroes in 16 kB, for a picture of four pixels.
TEST(HostileImage, ImageDataThatGrowsWithoutEndIsHeld) {
    const Data megabytes(std::size_t{16} << 20);
    for (const bool isPhoneVariant : {false, true}) {
        Data file = pngSignature();
        if (isPhoneVariant) {
            appendChunk(file, "CgBI", Data{0x50, 0, 0x20, 2});
        }
        appendChunk(file, "IHDR", pngHeader(2, 2, 8, 6));
        appendChunk(file, "IDAT", zlibStream(megabytes));
        appendChunk(file, "IEND", {});
        const auto image = decodeImage(file);
        if (image) {
            EXPECT_EQ(image->samples->size(), 16U);
        } else {
            EXPECT_EQ(image.error().message,
                      "the image data of the PNG file is too long for its size");
        }
    }
}

TEST(HostileImage, WrongChecksumOfACriticalChunk) {
    const Data pixel = {0, 1, 2, 3, 4};
    for (const std::string damaged : {"IHDR", "IDAT", "IEND"}) {
        Data file = pngSignature();
        const auto change = [&](const std::string& type) { return type == damaged ? 1U : 0U; };
        appendChunk(file, "IHDR", pngHeader(1, 1, 8, 6), change("IHDR"));
        appendChunk(file, "IDAT", zlibStream(pixel), change("IDAT"));
        appendChunk(file, "IEND", {}, change("IEND"));
        EXPECT_EQ(problemOf(file), "the checksum of a PNG chunk " + damaged + " is wrong");
    }
}

TEST(HostileImage, ProblemNamesThePlace) {
    Data file = pngSignature();
    appendChunk(file, "IHDR", pngHeader(1, 1, 8, 6));
    const std::size_t place = file.size();
    appendChunk(file, "IDAT", zlibStream(Data(5)), 1);
    const auto image = decodeImage(file);
    ASSERT_FALSE(image);
    EXPECT_EQ(image.error().offset, place);
}

TEST(HostileImage, ImageDataThatHoldsNothing) {
    Data file = pngSignature();
    appendChunk(file, "IHDR", pngHeader(10, 10, 8, 6));
    appendChunk(file, "IDAT", zlibStream({}));
    appendChunk(file, "IEND", {});
    EXPECT_EQ(problemOf(file), "the PNG file is damaged (Not enough image data)");
}

TEST(HostileImage, MissingParts) {
    Data file = pngSignature();
    appendChunk(file, "IDAT", zlibStream(Data(5)));
    EXPECT_EQ(problemOf(file), "the PNG file does not start with a header");
    file = pngSignature();
    appendChunk(file, "IHDR", pngHeader(1, 1, 8, 6));
    EXPECT_EQ(problemOf(file), "the PNG file is cut off");
    appendChunk(file, "IEND", {});
    EXPECT_EQ(problemOf(file), "the PNG file has no image data");
    EXPECT_EQ(problemOf(pngSignature()), "the PNG file is cut off");
}

TEST(HostileImage, PaletteIsMissing) {
    Data file = pngSignature();
    appendChunk(file, "IHDR", pngHeader(8, 1, 8, 3));
    appendChunk(file, "IDAT", zlibStream(Data(9)));
    appendChunk(file, "IEND", {});
    EXPECT_EQ(problemOf(file).substr(0, 23), "the PNG file is damaged");
}

TEST(HostileImage, HeaderOutOfTheOrdinary) {
    struct Case {
        std::size_t at;
        std::uint8_t value;
        const char* problem;
    };

    constexpr const char* kMethod =
        "the PNG header names an unknown compression, filter or interlace method";
    for (const Case& item :
         {Case{8, 3, "the PNG header is not valid: colour type 6 with bit depth 3"},
          Case{8, 4, "the PNG header is not valid: colour type 6 with bit depth 4"},
          Case{9, 5, "the PNG header is not valid: colour type 5 with bit depth 8"},
          Case{10, 1, kMethod}, Case{11, 1, kMethod}, Case{12, 2, kMethod}}) {
        Data header = pngHeader(1, 1, 8, 6);
        header[item.at] = item.value;
        Data file = pngSignature();
        appendChunk(file, "IHDR", header);
        EXPECT_EQ(problemOf(file), item.problem);
    }
}

TEST(HostileImage, ChunkLongerThanTheFile) {
    for (const std::uint8_t top : Data{0x00, 0x7F, 0x80, 0xFF}) {
        Data file = pngSignature();
        file.insert(file.end(), {top, 0xFF, 0xFF, 0xFF, 'I', 'H', 'D', 'R'});
        file.resize(file.size() + 40);
        EXPECT_EQ(problemOf(file), top < 0x80 ? "the PNG file is cut off"
                                              : "the length of a PNG chunk is not valid");
    }
}

}  // namespace
}  // namespace velmoranth::desktop::test_images::hostile_images_test
