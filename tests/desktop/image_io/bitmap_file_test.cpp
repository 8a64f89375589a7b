// Stored wallpapers: what is read, and files that are damaged or made to do harm.
#include "desktop/image_io/bitmap_file.h"

#include <gtest/gtest.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <string>

namespace velmoranth::desktop::test_images::bitmap_file_test {
namespace {

using platform::Data;

// The trailer as it is written down in the header: width and height come second and third.
Data withTrailer(Data pixels, std::uint32_t width, std::uint32_t height) {
    for (const std::uint32_t number : {7U, width, height, 1U, 0xFFFFFFFFU, 2U}) {
        for (const int shift : {0, 8, 16, 24}) {
            pixels.push_back(static_cast<std::uint8_t>(number >> shift));
        }
    }
    return pixels;
}

// Rows of `stored` pixels, whose bytes count up; what lies behind the width is 0xEE.
Data rows(std::size_t width, std::size_t height, std::size_t stored) {
    Data pixels;
    std::uint8_t next = 0;
    for (std::size_t y = 0; y < height; ++y) {
        for (std::size_t x = 0; x < stored * 4; ++x) {
            pixels.push_back(x < width * 4 ? next++ : 0xEE);
        }
    }
    return pixels;
}

std::string problemOf(const Data& file, const DecodeLimits& limits = {}) {
    const auto image = decodeBitmapFile(file, limits);
    return image ? "none" : image.error().message;
}

TEST(BitmapFile, ReadsRowsOfAnyPadding) {
    for (const std::size_t stored : {3U, 4U, 8U, 16U, 66U}) {
        const auto image = decodeBitmapFile(withTrailer(rows(3, 2, stored), 3, 2));
        ASSERT_TRUE(image) << stored;
        EXPECT_EQ(image->layout,
                  (platform::BitmapLayout{.width = 3,
                                          .height = 2,
                                          .bitsPerComponent = 8,
                                          .bitsPerPixel = 32,
                                          .bytesPerRow = 12,
                                          .colorSpace = platform::ColorSpace::deviceRGB,
                                          .alphaInfo = platform::AlphaInfo::premultipliedFirst,
                                          .byteOrder = platform::ByteOrder::little32}));
        EXPECT_EQ(*image->samples, rows(3, 2, 3)) << stored;
    }
}

TEST(BitmapFile, PixelsAreBlueGreenRedAlpha) {
    const auto image = decodeBitmapFile(withTrailer({10, 20, 30, 255}, 1, 1));
    ASSERT_TRUE(image);
    EXPECT_EQ(toPremultipliedBgra(*image), (Data{10, 20, 30, 255}));
}

TEST(BitmapFile, CutOffAnywhereFails) {
    // 24 bytes of pixels: no shorter beginning that ends in these numbers fits them.
    const Data file = withTrailer(rows(3, 2, 3), 3, 2);
    for (std::size_t size = 0; size < file.size(); ++size) {
        EXPECT_NE(problemOf(Data(file.begin(), file.begin() + static_cast<std::ptrdiff_t>(size))),
                  "none")
            << size;
    }
}

TEST(BitmapFile, LengthThatDoesNotFitFails) {
    EXPECT_EQ(problemOf({}), "the bitmap file is shorter than its trailer");
    EXPECT_EQ(problemOf(Data(23)), "the bitmap file is shorter than its trailer");
    EXPECT_EQ(problemOf(withTrailer({}, 3, 2)),
              "the bitmap file's 0 bytes of pixels do not fit 3 x 2 pixels");
    EXPECT_EQ(problemOf(withTrailer(rows(2, 2, 2), 3, 2)),
              "the bitmap file's 16 bytes of pixels do not fit 3 x 2 pixels");
    // Rows that end inside a pixel, rows of different lengths, and too much padding.
    EXPECT_NE(problemOf(withTrailer(Data(26), 3, 2)), "none");
    EXPECT_NE(problemOf(withTrailer(Data(25), 3, 2)), "none");
    EXPECT_EQ(problemOf(withTrailer(rows(3, 2, 3 + kLongestBitmapFilePadding), 3, 2)), "none");
    EXPECT_NE(problemOf(withTrailer(rows(3, 2, 4 + kLongestBitmapFilePadding), 3, 2)), "none");
}

TEST(BitmapFile, SizesBeyondTheLimitsAreRefusedBeforeAnythingIsAllocated) {
    for (const auto& [width, height] :
         std::initializer_list<std::array<std::uint32_t, 2>>{{0, 2},
                                                             {3, 0},
                                                             {0, 0},
                                                             {0xFFFFFFFF, 1},
                                                             {1, 0xFFFFFFFF},
                                                             {0xFFFFFFFF, 0xFFFFFFFF},
                                                             {0x40000000, 4},
                                                             {16385, 1}}) {
        EXPECT_NE(problemOf(withTrailer(rows(3, 2, 3), width, height)), "none")
            << width << " x " << height;
    }
    const Data file = withTrailer(rows(3, 2, 3), 3, 2);
    EXPECT_NE(problemOf(file, {.maxWidth = 2}), "none");
    EXPECT_NE(problemOf(file, {.maxHeight = 1}), "none");
    EXPECT_NE(problemOf(file, {.maxBytes = 23}), "none");
    EXPECT_EQ(problemOf(file, {.maxWidth = 3, .maxHeight = 2, .maxBytes = 24}), "none");
}

TEST(BitmapFile, EveryChangedByteIsAnswered) {
    const DecodeLimits limits{.maxWidth = 512, .maxHeight = 512, .maxBytes = 1 << 20};
    const Data file = withTrailer(rows(5, 3, 8), 5, 3);
    for (std::size_t at = 0; at < file.size(); ++at) {
        for (const std::uint8_t change : Data{0x01, 0x80, 0xFF}) {
            Data changed = file;
            changed[at] ^= change;
            if (const auto image = decodeBitmapFile(changed, limits)) {
                EXPECT_EQ(image->samples->size(), image->layout.height * image->layout.bytesPerRow);
                EXPECT_FALSE(toPremultipliedBgra(*image).empty());
            }
        }
    }
}

}  // namespace
}  // namespace velmoranth::desktop::test_images::bitmap_file_test
