#include "desktop/image_io/image_io.h"
#include "desktop/vector_images/vector_images.h"

#include "vector_files.h"
#include <gtest/gtest.h>
#include <turbojpeg.h>

#include <array>
#include <string>
#include <vector>

namespace velmoranth::desktop::image_file_test {
namespace {

// Rows of letters, a pixel each, as a PNG file.
platform::Data letters(const std::vector<std::string>& rows) {
    FileBytes pixels;
    for (const std::string& row : rows) {
        for (const char letter : row) {
            const auto value = static_cast<std::uint8_t>(letter);
            pixels.insert(pixels.end(), {value, 1, 2, 255});
        }
    }
    return encodePng(pixels, rows[0].size(), rows.size(), rows[0].size() * 4);
}

std::vector<std::string> lettersOf(const DrawnImage& image) {
    std::vector<std::string> rows;
    for (std::uint32_t y = 0; y < image.height; ++y) {
        rows.emplace_back();
        for (std::uint32_t x = 0; x < image.width; ++x) {
            const Pixel found = pixel(image, x, y);
            rows.back() += found[1] == 1 && found[2] == 2 ? static_cast<char>(found[0]) : '?';
        }
    }
    return rows;
}

using Rows = std::vector<std::string>;

TEST(ImageFile, OrientationsAreThoseOfExif) {
    const platform::Data file = letters({"abc", "def"});
    const std::array<Rows, 10> expected{{
        {"abc", "def"},      // not said
        {"abc", "def"},      // row 0 is the top, column 0 the left
        {"cba", "fed"},      // top, right
        {"fed", "cba"},      // bottom, right
        {"def", "abc"},      // bottom, left
        {"ad", "be", "cf"},  // left, top
        {"da", "eb", "fc"},  // right, top
        {"fc", "eb", "da"},  // right, bottom
        {"cf", "be", "ad"},  // left, bottom
        {"abc", "def"},      // no such number
    }};
    for (std::uint32_t orientation = 0; orientation < expected.size(); ++orientation) {
        const auto image = decodeImageFile(file, orientation);
        ASSERT_TRUE(image) << image.error().message;
        EXPECT_EQ(lettersOf(*image), expected.at(orientation)) << orientation;
    }
    EXPECT_EQ(lettersOf(decodeImageFile(file, 0xFFFFFFFF).value_or(DrawnImage{})), expected[0]);
}

TEST(ImageFile, JpegIsReadAndTurned) {
    FileBytes rgb;
    for (int pixelIndex = 0; pixelIndex < 32 * 16; ++pixelIndex) {
        const bool left = pixelIndex % 32 < 16;
        rgb.insert(rgb.end(), {static_cast<std::uint8_t>(left ? 255 : 0), 0,
                               static_cast<std::uint8_t>(left ? 0 : 255)});
    }
    unsigned char* data = nullptr;
    unsigned long size = 0;
    const tjhandle compressor = tjInitCompress();
    ASSERT_EQ(
        tjCompress2(compressor, rgb.data(), 32, 0, 16, TJPF_RGB, &data, &size, TJSAMP_444, 95, 0),
        0);
    const FileBytes file(data, data + size);
    tjFree(data);
    tjDestroy(compressor);
    const auto image = decodeImageFile(file, 6);
    ASSERT_TRUE(image) << image.error().message;
    ASSERT_EQ(image->width, 16U);
    ASSERT_EQ(image->height, 32U);
    const Pixel top = pixel(*image, 8, 4);
    const Pixel bottom = pixel(*image, 8, 28);
    EXPECT_GT(top[2], 245);
    EXPECT_LT(top[0], 10);
    EXPECT_GT(bottom[0], 245);
    EXPECT_LT(bottom[2], 10);
    EXPECT_EQ(top[3], 255);
    EXPECT_FALSE(decodeImageFile(std::span(file).first(20), 0));
}

TEST(ImageFile, SizesBeyondTheLimitsAreRefused) {
    const platform::Data file = letters({"abc", "def"});
    EXPECT_TRUE(decodeImageFile(file, 6, {.maxBytes = 24}));
    EXPECT_FALSE(decodeImageFile(file, 6, {.maxBytes = 23}));
    EXPECT_FALSE(decodeImageFile(file, 6, {.maxWidth = 2}));
}

TEST(ImageFile, OtherFilesAreAProblem) {
    EXPECT_FALSE(decodeImageFile({}, 0));
    EXPECT_FALSE(decodeImageFile(bytesOf("%PDF-1.4"), 0));
    const auto heif = decodeHeif(bytesOf("%PDF-1.4 and so on"));
    ASSERT_FALSE(heif);
    EXPECT_EQ(heif.error().message, "this is no HEIF file");
}

TEST(ImageFile, HeifWithoutItsLibrarySaysSo) {
    const auto image = decodeImageFile(bytesOf(std::string("\0\0\0\x0C"
                                                           "ftypheic",
                                                           12)),
                                       0);
    ASSERT_FALSE(image);
    if (hasLibrary("libheif")) {
        EXPECT_TRUE(image.error().message.starts_with("the HEIF file cannot be read: "))
            << image.error().message;
    } else {
        EXPECT_EQ(
            image.error().message,
            "HEIF files cannot be read: HEIF needs a build with libheif (-DVELMORANTH_HEIF=ON)");
    }
}

}  // namespace
}  // namespace velmoranth::desktop::image_file_test
