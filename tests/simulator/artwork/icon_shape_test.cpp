#include "simulator/artwork/artwork.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <numeric>
#include <vector>

namespace velmoranth::simulator::icon_shape_test {
namespace {

class IconShapeOfSize : public testing::TestWithParam<int> {
  protected:
    std::size_t side() const { return static_cast<std::size_t>(GetParam()); }

    int at(const std::vector<std::uint8_t>& shape, std::size_t x, std::size_t y) const {
        return shape[y * side() + x];
    }
};

TEST_P(IconShapeOfSize, IsItsOwnMirrorImageInEveryWay) {
    const auto shape = iconShapeCoverage(GetParam());
    ASSERT_EQ(shape.size(), side() * side());
    for (std::size_t y = 0; y < side(); ++y) {
        for (std::size_t x = 0; x < side(); ++x) {
            ASSERT_EQ(at(shape, x, y), at(shape, side() - 1 - x, y)) << x << ' ' << y;
            ASSERT_EQ(at(shape, x, y), at(shape, x, side() - 1 - y)) << x << ' ' << y;
            ASSERT_EQ(at(shape, x, y), at(shape, y, x)) << x << ' ' << y;
        }
    }
}

TEST_P(IconShapeOfSize, HasClearCornersFullEdgesAndAFullMiddle) {
    const auto shape = iconShapeCoverage(GetParam());
    EXPECT_EQ(at(shape, 0, 0), 0);
    EXPECT_EQ(at(shape, side() / 2, 0), 255);
    EXPECT_EQ(at(shape, 0, side() / 2), 255);
    EXPECT_EQ(at(shape, side() / 2, side() / 2), 255);
}

// The middle of the corner's curve lies 0.2915 radii from both edges: along the diagonal, that many
// pixels are clear.
TEST_P(IconShapeOfSize, CornerCutsTheDiagonalWhereTheCurveDoes) {
    const auto shape = iconShapeCoverage(GetParam());
    double clear = 0;
    for (std::size_t i = 0; i < side() / 2; ++i) {
        clear += 1 - at(shape, i, i) / 255.0;
    }
    EXPECT_NEAR(clear, 0.2915 * kIconCornerRadiusShare * GetParam(), 0.3);
}

TEST_P(IconShapeOfSize, CornerBeginsWhereTheCurveDoes) {
    const auto shape = iconShapeCoverage(GetParam());
    const double reach = 1.528665 * kIconCornerRadiusShare * GetParam();
    EXPECT_EQ(at(shape, static_cast<std::size_t>(std::ceil(reach)), 0), 255);
    EXPECT_LT(at(shape, static_cast<std::size_t>(reach * 0.6), 0), 255);
}

INSTANTIATE_TEST_SUITE_P(Sizes, IconShapeOfSize, testing::Values(29, 60, 76, 120, 152, 180, 1024));

TEST(IconShape, SizesOutOfRangeGiveNothing) {
    for (const int pixels : {0, -1, std::numeric_limits<int>::min(), kMaximumIconPixels + 1,
                             std::numeric_limits<int>::max()}) {
        EXPECT_TRUE(iconShapeCoverage(pixels).empty()) << pixels;
    }
    EXPECT_EQ(iconShapeCoverage(1).size(), 1U);
    EXPECT_EQ(iconShapeCoverage(2).size(), 4U);
}

TEST(IconShape, MultipliesEveryComponentByTheCoverage) {
    constexpr int kSide = 60;
    const auto shape = iconShapeCoverage(kSide);
    std::vector<std::uint8_t> bgra;
    for (std::size_t i = 0; i < shape.size(); ++i) {
        bgra.insert(bgra.end(), {40, 120, 200, 255});
    }
    applyIconShape(bgra, kSide);
    for (std::size_t i = 0; i < shape.size(); ++i) {
        const double share = shape[i] / 255.0;
        ASSERT_NEAR(bgra[i * 4], 40 * share, 0.51);
        ASSERT_NEAR(bgra[i * 4 + 1], 120 * share, 0.51);
        ASSERT_NEAR(bgra[i * 4 + 2], 200 * share, 0.51);
        ASSERT_EQ(bgra[i * 4 + 3], shape[i]);
    }
}

TEST(IconShape, LeavesABufferOfAnotherSizeAlone) {
    std::vector<std::uint8_t> bgra(59UL * 60 * 4, 200);
    const auto before = bgra;
    applyIconShape(bgra, 60);
    EXPECT_EQ(bgra, before);
    applyIconShape(bgra, -60);
    EXPECT_EQ(bgra, before);
    std::vector<std::uint8_t> empty;
    applyIconShape(empty, 0);
    EXPECT_TRUE(empty.empty());
}

TEST(ContinuousCorner, RadiusIsClampedToTheShorterSide) {
    EXPECT_EQ(continuousCornerCoverage(90, 30, 1000),
              continuousCornerCoverage(90, 30, 15 / 1.528665));
    const auto shape = continuousCornerCoverage(90, 30, std::numeric_limits<double>::infinity());
    ASSERT_EQ(shape.size(), 90U * 30U);
    EXPECT_EQ(shape[0], 0);
    EXPECT_EQ(shape[45], 255);
}

TEST(ContinuousCorner, WithoutARadiusTheRectangleIsFull) {
    const std::vector<std::uint8_t> full(12UL * 7, 255);
    for (const double radius : {0.0, -4.0, std::numeric_limits<double>::quiet_NaN()}) {
        EXPECT_EQ(continuousCornerCoverage(12, 7, radius), full) << radius;
    }
}

// Each corner takes the same share of the area from a wide plate as from a square one.
TEST(ContinuousCorner, CornersDoNotDependOnTheSides) {
    const auto missing = [](const std::vector<std::uint8_t>& shape) {
        return std::accumulate(shape.begin(), shape.end(), 0L,
                               [](long sum, int coverage) { return sum + 255 - coverage; });
    };
    EXPECT_EQ(missing(continuousCornerCoverage(355, 94, 30)),
              missing(continuousCornerCoverage(200, 200, 30)));
}

}  // namespace
}  // namespace velmoranth::simulator::icon_shape_test
