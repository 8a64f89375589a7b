#include "desktop/image_io/image_io.h"
#include "platform/core_graphics.h"

#include "test_images.h"
#include <gtest/gtest.h>

#include <algorithm>

namespace velmoranth::desktop::test_images::encode_png_test {
namespace {

using platform::AlphaInfo;

class EncodePng : public testing::TestWithParam<PngEffort> {
  protected:
    // The file, read back.
    static DecodedImage written(std::span<const std::uint8_t> pixels, std::size_t width,
                                std::size_t height, std::size_t bytesPerRow) {
        auto image = decodeImage(encodePng(pixels, width, height, bytesPerRow, GetParam()));
        if (!image) {
            ADD_FAILURE() << toLine(image.error());
            return {};
        }
        return *image;
    }
};

INSTANTIATE_TEST_SUITE_P(Efforts, EncodePng, testing::Values(PngEffort::fast, PngEffort::balanced));

TEST_P(EncodePng, EveryPremultipliedColourComesBack) {
    Data pixels;
    for (unsigned alpha = 0; alpha < 256; ++alpha) {
        for (unsigned color = 0; color < 256; ++color) {
            const auto value = static_cast<std::uint8_t>(std::min(color, alpha));
            pixels.insert(pixels.end(), {value, static_cast<std::uint8_t>(alpha - value), 0,
                                         static_cast<std::uint8_t>(alpha)});
        }
    }
    const DecodedImage image = written(pixels, 256, 256, 1024);
    EXPECT_EQ(image.layout.bitsPerPixel, 32U);
    EXPECT_EQ(image.layout.alphaInfo, AlphaInfo::last);
    EXPECT_EQ(toPremultipliedBgra(image), pixels);
}

TEST_P(EncodePng, ColoursAreDividedByAlphaAndRounded) {
    // Blue 10, green 20, red 30 of 60; a clear pixel has no colour, one above its alpha is full.
    const DecodedImage image = written(Data{10, 20, 30, 61, 9, 9, 9, 0, 200, 0, 0, 100}, 3, 1, 12);
    EXPECT_EQ(*image.samples, (Data{125, 84, 42, 61, 0, 0, 0, 0, 0, 0, 255, 100}));
}

TEST_P(EncodePng, OpaquePixelsAreRgb) {
    Data pixels = noise(31 * 17 * 4);
    for (std::size_t i = 3; i < pixels.size(); i += 4) {
        pixels[i] = 255;
    }
    const DecodedImage image = written(pixels, 31, 17, 31 * 4);
    EXPECT_EQ(image.layout.bitsPerPixel, 24U);
    EXPECT_EQ(image.layout.alphaInfo, AlphaInfo::none);
    EXPECT_EQ(toPremultipliedBgra(image), pixels);
}

TEST_P(EncodePng, BytesBetweenRowsAreLeftOut) {
    const Data pixels = {1, 2, 3, 255, 99, 99, 4, 5, 6, 255};  // the last row ends with its pixel
    EXPECT_EQ(*written(pixels, 1, 2, 6).samples, (Data{3, 2, 1, 6, 5, 4}));
}

TEST_P(EncodePng, SmoothPicturesGetSmall) {
    Data pixels;
    for (unsigned y = 0; y < 64; ++y) {
        for (unsigned x = 0; x < 64; ++x) {
            pixels.insert(pixels.end(), {static_cast<std::uint8_t>(x), static_cast<std::uint8_t>(y),
                                         static_cast<std::uint8_t>(x + y), 255});
        }
    }
    EXPECT_LT(encodePng(pixels, 64, 64, 256, GetParam()).size(), 1000U);
    EXPECT_EQ(toPremultipliedBgra(written(pixels, 64, 64, 256)), pixels);
}

TEST_P(EncodePng, StartsLikeAnyPngAndSaysSrgb) {
    const Data file = encodePng(Data{1, 2, 3, 255}, 1, 1, 4, GetParam());
    Data expected = pngSignature();
    appendChunk(expected, "IHDR", pngHeader(1, 1, 8, 2));
    appendChunk(expected, "sRGB", Data{0});
    ASSERT_GT(file.size(), expected.size());
    EXPECT_TRUE(std::equal(expected.begin(), expected.end(), file.begin()));
}

TEST_P(EncodePng, NothingWithoutEnoughPixels) {
    EXPECT_TRUE(encodePng({}, 0, 0, 0, GetParam()).empty());
    EXPECT_TRUE(encodePng(Data(16), 0, 1, 16, GetParam()).empty());
    EXPECT_TRUE(encodePng(Data(15), 2, 2, 8, GetParam()).empty());
    EXPECT_TRUE(encodePng(Data(16), 2, 2, 7, GetParam()).empty());
    EXPECT_FALSE(encodePng(Data(16), 2, 2, 8, GetParam()).empty());
}

}  // namespace
}  // namespace velmoranth::desktop::test_images::encode_png_test
