// The predictions and the colours, against numbers that were worked out by hand.
#include "desktop/catalog/deepmap_prediction.h"

#include "tests/support/catalog/byte_writer.h"

#include <gtest/gtest.h>

namespace velmoranth::tests::deepmap_prediction_test {

namespace {

using catalog::decodePlanes;
using catalog::PlanesShape;

// Sign and magnitude, as they are stored.
unsigned stored(int rest) {
    return static_cast<unsigned>(std::abs(rest)) * 2U + (rest < 0 ? 1U : 0U);
}

ByteVector planes(const ByteVector& alpha, const ByteVector& predictors,
                  const std::vector<unsigned>& values) {
    ByteWriter writer;
    writer.bytes(alpha).bytes(predictors);
    for (const unsigned value : values) {
        writer.u8(value >> 8U);
    }
    for (const unsigned value : values) {
        writer.u8(value & 0xFFU);
    }
    return writer.take();
}

// Decodes gray pixels without alpha, three to a row, from what is left of them.
std::vector<int> grays(const ByteVector& predictors, const std::vector<int>& rests) {
    const PlanesShape shape{.width = 3,
                            .rows = predictors.size(),
                            .components = 1,
                            .hasAlpha = false,
                            .halvedChroma = false};
    std::vector<unsigned> values;
    for (const int rest : rests) {
        values.push_back(stored(rest));
    }
    ByteVector pixels(shape.rows * 6);
    EXPECT_TRUE(decodePlanes(planes({}, predictors, values), shape, pixels, 6));
    std::vector<int> result;
    for (std::size_t i = 0; i < pixels.size(); i += 2) {
        result.push_back(pixels[i]);
        EXPECT_EQ(pixels[i + 1], 255);
    }
    return result;
}

// The second row's grays below a first row of 10, 15 and 12.
std::vector<int> below(std::uint8_t predictor, const std::vector<int>& rests) {
    std::vector<int> all{10, 5, -3};
    all.insert(all.end(), rests.begin(), rests.end());
    const std::vector<int> result = grays({2, predictor}, all);
    EXPECT_EQ(std::vector<int>(result.begin(), result.begin() + 3), (std::vector<int>{10, 15, 12}));
    return {result.begin() + 3, result.end()};
}

// One pixel of brightness and the two differences of colour, as blue, green and red.
std::vector<int> color(int brightness, int orange, int green, bool halved) {
    const PlanesShape shape{
        .width = 1, .rows = 1, .components = 3, .hasAlpha = true, .halvedChroma = halved};
    ByteVector pixel(4);
    EXPECT_TRUE(decodePlanes(planes({77}, {0}, {stored(brightness), stored(orange), stored(green)}),
                             shape, pixel, 4));
    EXPECT_EQ(pixel[3], 77);
    return {pixel[0], pixel[1], pixel[2]};
}

}  // namespace

TEST(DeepmapPrediction, NothingIsForetoldByZero) {
    EXPECT_EQ(below(0, {1, 2, 3}), (std::vector<int>{1, 2, 3}));
}

TEST(DeepmapPrediction, OneTakesTheNearerNeighbour) {
    // Left at 11: the pixel above, 15, is 5 from its left neighbour 10, and 11 is 1 from it, so the
    // one above counts. Then 12 and 17 against 15: 3 and 2, above again.
    EXPECT_EQ(below(1, {1, 2, 3}), (std::vector<int>{11, 17, 15}));
    // 5 and 10 against 15 and 10: equally far, or nearer above; that means the left one.
    EXPECT_EQ(below(1, {5, 3, 2}), (std::vector<int>{15, 18, 20}));
}

TEST(DeepmapPrediction, TwoTakesTheLeftNeighbour) {
    EXPECT_EQ(below(2, {1, 2, 3}), (std::vector<int>{1, 3, 6}));
}

TEST(DeepmapPrediction, ThreeTakesTheNeighbourAbove) {
    EXPECT_EQ(below(3, {1, 2, 3}), (std::vector<int>{11, 17, 15}));
}

TEST(DeepmapPrediction, FourTakesTheMean) {
    // (11 + 15 + 1) / 2 = 13, (15 + 12 + 1) / 2 = 14.
    EXPECT_EQ(below(4, {1, 2, 3}), (std::vector<int>{11, 15, 17}));
}

TEST(DeepmapPrediction, NothingIsAboveTheFirstRow) {
    EXPECT_EQ(grays({3}, {1, 2, 3}), (std::vector<int>{1, 2, 3}));
    EXPECT_EQ(grays({1}, {1, 2, 3}), (std::vector<int>{1, 3, 6}));
    EXPECT_EQ(grays({4}, {1, 2, 3}), (std::vector<int>{1, 3, 5}));
}

TEST(DeepmapPrediction, MeansOfNegativeValuesAreTruncated) {
    // Left and above are -3 and -1: (-3 - 1 + 1) / 2 is -1, where a shift would give -2.
    EXPECT_EQ(grays({0, 4}, {-1, -1, 0, -2, 10, 0}), (std::vector<int>{0, 0, 0, 0, 9, 5}));
}

TEST(DeepmapPrediction, RowsBelowBuildOnEachOther) {
    EXPECT_EQ(grays({3, 3, 2}, {1, 1, 1, 2, 2, 2, 9, 1, 1}),
              (std::vector<int>{1, 1, 1, 3, 3, 3, 9, 10, 11}));
}

TEST(DeepmapPrediction, RestsTakeBothBytes) {
    EXPECT_EQ(grays({2}, {300, -100, -45}), (std::vector<int>{255, 200, 155}));
}

TEST(DeepmapPrediction, ThereIsANegativeZero) {
    const PlanesShape shape{
        .width = 2, .rows = 1, .components = 1, .hasAlpha = false, .halvedChroma = false};
    ByteVector pixels(4);
    ASSERT_TRUE(decodePlanes(planes({}, {2}, {stored(9), 1}), shape, pixels, 4));
    EXPECT_EQ(pixels, (ByteVector{9, 255, 9, 255}));
}

TEST(DeepmapPrediction, ValuesWrapAroundAtSixteenBits) {
    // 32767 and 32767 again is -2; 12 more is 10.
    EXPECT_EQ(grays({2}, {32767, 32767, 12}), (std::vector<int>{255, 0, 10}));
}

TEST(DeepmapPrediction, FirstComponentChoosesForAll) {
    // Brightness 100, 110; below 100: above it has changed by 10, on the left by nothing.
    const PlanesShape shape{
        .width = 2, .rows = 2, .components = 3, .hasAlpha = false, .halvedChroma = false};
    ByteVector pixels(16);
    ASSERT_TRUE(decodePlanes(planes({}, {0, 1},
                                    {stored(100), 0, 0, stored(110), stored(8), 0,  //
                                     0, stored(4), 0, 0, 0, 0}),
                             shape, pixels, 8));
    // So the last pixel has brightness 110 and the 8 of the pixel above, not the 4 on the left.
    EXPECT_EQ(pixels[8], 102);
    EXPECT_EQ(pixels[10], 98);
    EXPECT_EQ((ByteVector(pixels.begin() + 12, pixels.end())), (ByteVector{114, 110, 106, 255}));
}

TEST(DeepmapPrediction, UnknownPredictorsAreRefused) {
    const PlanesShape shape{
        .width = 1, .rows = 2, .components = 1, .hasAlpha = true, .halvedChroma = false};
    ByteVector pixels(4);
    EXPECT_TRUE(decodePlanes(planes({1, 2}, {0, 4}, {0, 0}), shape, pixels, 2));
    EXPECT_FALSE(decodePlanes(planes({1, 2}, {0, 5}, {0, 0}), shape, pixels, 2));
    EXPECT_FALSE(decodePlanes(planes({1, 2}, {255, 0}, {0, 0}), shape, pixels, 2));
}

TEST(DeepmapColors, AreBrightnessAndTwoDifferences) {
    // Base 100 - 20 / 2 = 90, green 110, red 90 - 30 / 2 = 75, blue 105.
    EXPECT_EQ(color(100, 30, 20, false), (std::vector<int>{105, 110, 75}));
}

TEST(DeepmapColors, HalvesAreTruncated) {
    // Base 100 - 5 / 2 = 98, green 103, red 98 - -7 / 2 = 98 + 3, blue 101 - 7.
    EXPECT_EQ(color(100, -7, 5, false), (std::vector<int>{94, 103, 101}));
    // Base 50 - -5 / 2 = 52, green 47, red 52 - 3 / 2 = 51, blue 54.
    EXPECT_EQ(color(50, 3, -5, false), (std::vector<int>{54, 47, 51}));
}

TEST(DeepmapColors, HalvedDifferencesAreDoubled) {
    // Differences -14 and 10: base 95, green 105, red 102, blue 88.
    EXPECT_EQ(color(100, -7, 5, true), (std::vector<int>{88, 105, 102}));
}

TEST(DeepmapColors, StayWithinAByte) {
    EXPECT_EQ(color(250, 0, 40, false), (std::vector<int>{230, 255, 230}));
    EXPECT_EQ(color(10, 60, 0, false), (std::vector<int>{40, 10, 0}));
}

}  // namespace velmoranth::tests::deepmap_prediction_test
