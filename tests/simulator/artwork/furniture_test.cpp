#include "simulator/artwork/artwork.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <numbers>
#include <vector>

namespace velmoranth::simulator::furniture_test {
namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNotANumber = std::numeric_limits<double>::quiet_NaN();

struct Bgra {
    int blue, green, red, alpha;

    friend bool operator==(const Bgra&, const Bgra&) = default;
};

constexpr Bgra kClear{0, 0, 0, 0};
constexpr Bgra kOpaqueWhite{255, 255, 255, 255};

Bgra at(const FurniturePicture& picture, int x, int y) {
    const std::uint8_t* const pixel = &picture.bgra.at(
        (static_cast<std::size_t>(y) * static_cast<std::size_t>(picture.widthPixels) +
         static_cast<std::size_t>(x)) *
        4);
    return {pixel[0], pixel[1], pixel[2], pixel[3]};
}

Bgra middle(const FurniturePicture& picture) {
    return at(picture, picture.widthPixels / 2, picture.heightPixels / 2);
}

void expectSize(const FurniturePicture& picture, int width, int height) {
    EXPECT_EQ(picture.widthPixels, width);
    EXPECT_EQ(picture.heightPixels, height);
    EXPECT_EQ(picture.bgra.size(),
              static_cast<std::size_t>(width) * static_cast<std::size_t>(height) * 4);
}

// In pixels, partly covered ones in part.
double coveredArea(const FurniturePicture& picture, int fullAlpha) {
    double sum = 0;
    for (std::size_t i = 3; i < picture.bgra.size(); i += 4) {
        sum += picture.bgra[i];
    }
    return sum / fullAlpha;
}

// The rasteriser samples 15 lines a pixel, at places that are not their own mirror image: one line
// of a pixel's edge may come out otherwise.
constexpr int kSamplingError = 255 / 15;

void expectMirrored(const FurniturePicture& picture) {
    for (int y = 0; y < picture.heightPixels; ++y) {
        for (int x = 0; x < picture.widthPixels; ++x) {
            const Bgra here = at(picture, x, y);
            ASSERT_NEAR(here.alpha, at(picture, picture.widthPixels - 1 - x, y).alpha,
                        kSamplingError)
                << x << ' ' << y;
            ASSERT_NEAR(here.alpha, at(picture, x, picture.heightPixels - 1 - y).alpha,
                        kSamplingError)
                << x << ' ' << y;
        }
    }
}

TEST(BadgeBackground, IsARedDiscForOneDigit) {
    for (const double scale : {1.0, 2.0, 3.0}) {
        const FurniturePicture badge = drawBadgeBackground(24, scale);
        const int side = static_cast<int>(24 * scale);
        expectSize(badge, side, side);
        EXPECT_EQ(middle(badge), (Bgra{0x30, 0x3B, 0xFF, 255}));
        EXPECT_EQ(at(badge, 0, 0), kClear);
        EXPECT_NEAR(coveredArea(badge, 255), std::numbers::pi * side * side / 4, side * 0.1);
        expectMirrored(badge);
    }
}

TEST(BadgeBackground, GrowsToACapsule) {
    const FurniturePicture badge = drawBadgeBackground(41, 3);
    expectSize(badge, 123, 72);
    EXPECT_NEAR(coveredArea(badge, 255), std::numbers::pi * 36 * 36 + (123 - 72) * 72, 8);
    for (int x = 36; x < 123 - 36; ++x) {
        ASSERT_EQ(at(badge, x, 0).alpha, 255) << x;
        ASSERT_EQ(at(badge, x, 71).alpha, 255) << x;
    }
    expectMirrored(badge);
}

TEST(BadgeBackground, IsNeverNarrowerThanHigh) {
    EXPECT_EQ(drawBadgeBackground(3, 2), drawBadgeBackground(24, 2));
    EXPECT_EQ(drawBadgeBackground(-1, 2), drawBadgeBackground(24, 2));
    expectSize(drawBadgeBackground(0, 2, 26), 52, 52);
}

TEST(PageDot, CurrentIsWhiteAndOthersFortyPerCentOfIt) {
    for (const double scale : {2.0, 3.0}) {
        for (const double side : {7.0, 8.0}) {
            const FurniturePicture current = drawPageDot(PageIndicatorState::current, side, scale);
            const FurniturePicture other = drawPageDot(PageIndicatorState::other, side, scale);
            const double pixels = side * scale;
            expectSize(current, static_cast<int>(pixels), static_cast<int>(pixels));
            expectSize(other, static_cast<int>(pixels), static_cast<int>(pixels));
            EXPECT_EQ(middle(current), kOpaqueWhite);
            EXPECT_EQ(middle(other), (Bgra{102, 102, 102, 102}));
            EXPECT_EQ(at(current, 0, 0).alpha, 0);
            const double disc = std::numbers::pi * pixels * pixels / 4;
            EXPECT_NEAR(coveredArea(current, 255), disc, pixels * 0.1);
            EXPECT_NEAR(coveredArea(other, 102), disc, pixels * 0.1);
            expectMirrored(current);
        }
    }
}

TEST(SearchDot, IsALensWithAHandle) {
    const FurniturePicture current = drawSearchDot(PageIndicatorState::current, 8, 3);
    expectSize(current, 24, 24);
    EXPECT_EQ(at(current, 9, 9), kClear) << "inside the lens";
    EXPECT_EQ(at(current, 23, 0), kClear);
    EXPECT_EQ(at(current, 0, 23), kClear);
    EXPECT_EQ(at(current, 19, 19), kOpaqueWhite) << "handle";
    EXPECT_GT(at(current, 9, 2).alpha, 200) << "rim";
    EXPECT_GT(at(current, 2, 9).alpha, 200) << "rim";
    for (int y = 0; y < 24; ++y) {
        for (int x = 0; x < 24; ++x) {
            ASSERT_NEAR(at(current, x, y).alpha, at(current, y, x).alpha, kSamplingError)
                << x << ' ' << y;
        }
    }
}

// Where the handle meets the rim, a translucent ink must not be laid on twice.
TEST(SearchDot, IsNowhereDenserThanItsInk) {
    const FurniturePicture other = drawSearchDot(PageIndicatorState::other, 8, 3);
    int densest = 0;
    for (std::size_t i = 3; i < other.bgra.size(); i += 4) {
        densest = std::max<int>(densest, other.bgra[i]);
    }
    EXPECT_EQ(densest, 102);
}

TEST(PressedOverlay, IsTheIconShapeInBlack) {
    for (const double scale : {1.0, 2.0, 3.0}) {
        const FurniturePicture overlay = drawPressedOverlay(60, scale);
        const int side = static_cast<int>(60 * scale);
        expectSize(overlay, side, side);
        const std::vector<std::uint8_t> shape = iconShapeCoverage(side);
        for (std::size_t i = 0; i < shape.size(); ++i) {
            ASSERT_EQ(overlay.bgra[i * 4], 0);
            ASSERT_EQ(overlay.bgra[i * 4 + 1], 0);
            ASSERT_EQ(overlay.bgra[i * 4 + 2], 0);
            ASSERT_EQ(overlay.bgra[i * 4 + 3], shape[i]);
        }
    }
}

TEST(DockHighlight, IsOneRowOfPixelsFromEdgeToEdge) {
    for (const double scale : {1.0, 2.0, 3.0}) {
        const FurniturePicture line = drawDockHighlight(375, scale);
        expectSize(line, static_cast<int>(375 * scale), 1);
        for (int x = 0; x < line.widthPixels; ++x) {
            ASSERT_EQ(at(line, x, 0), (Bgra{64, 64, 64, 64})) << x;
        }
    }
}

TEST(DockDivider, IsAPointWideAndAFifthOfItsTone) {
    const FurniturePicture onDark = drawDockDivider(MaterialTone::dark, 62, 2);
    const FurniturePicture onLight = drawDockDivider(MaterialTone::light, 62, 2);
    expectSize(onDark, 2, 124);
    expectSize(onLight, 2, 124);
    EXPECT_EQ(middle(onDark), (Bgra{51, 51, 51, 51}));
    EXPECT_EQ(middle(onLight), (Bgra{0, 0, 0, 51}));
    EXPECT_LT(at(onLight, 0, 0).alpha, 51) << "round end";
    EXPECT_LT(at(onLight, 1, 123).alpha, 51) << "round end";
}

constexpr int kReach = static_cast<int>(kPlatterShadowReach);

TEST(PlatterShadow, SurroundsThePlatterAndLeavesItFree) {
    const FurniturePicture shadow = drawPlatterShadow(300, 104, 31, 1);
    expectSize(shadow, 300 + 2 * kReach, 104 + 2 * kReach);
    const std::vector<std::uint8_t> platter = continuousCornerCoverage(300, 104, 31);
    for (int y = 0; y < 104; ++y) {
        for (int x = 0; x < 300; ++x) {
            const Bgra pixel = at(shadow, x + kReach, y + kReach);
            if (platter[static_cast<std::size_t>(y) * 300 + static_cast<std::size_t>(x)] == 255) {
                ASSERT_EQ(pixel, kClear) << x << ' ' << y;
            }
            ASSERT_EQ(pixel.blue + pixel.green + pixel.red, 0);
        }
    }
    EXPECT_GT(at(shadow, kReach + 6, kReach + 97).alpha, 20)
        << "outside the platter's round corner";
}

TEST(PlatterShadow, FadesOutBeforeThePictureEnds) {
    for (const double scale : {1.0, 2.0}) {
        const FurniturePicture shadow = drawPlatterShadow(300, 104, 31, scale);
        const int lastRow = shadow.heightPixels - 1;
        const int lastColumn = shadow.widthPixels - 1;
        for (int x = 0; x <= lastColumn; ++x) {
            ASSERT_LE(at(shadow, x, 0).alpha, 1) << x;
            ASSERT_LE(at(shadow, x, lastRow).alpha, 1) << x;
        }
        for (int y = 0; y <= lastRow; ++y) {
            ASSERT_LE(at(shadow, 0, y).alpha, 1) << y;
            ASSERT_LE(at(shadow, lastColumn, y).alpha, 1) << y;
        }
    }
}

// The light comes from above. Going away from the platter it only gets lighter.
TEST(PlatterShadow, FallsDownwardsAndGetsLighterOutwards) {
    const FurniturePicture shadow = drawPlatterShadow(300, 104, 31, 2);
    const int column = shadow.widthPixels / 2;
    const int above = 2 * kReach - 1;
    const int below = 2 * (kReach + 104);
    EXPECT_GT(at(shadow, column, below).alpha, at(shadow, column, above).alpha + 10);
    for (int away = 1; away < 2 * kReach; ++away) {
        ASSERT_LE(at(shadow, column, below + away).alpha,
                  at(shadow, column, below + away - 1).alpha);
        ASSERT_LE(at(shadow, column, above - away).alpha,
                  at(shadow, column, above - away + 1).alpha);
    }
    for (int y = 0; y < shadow.heightPixels; ++y) {
        for (int x = 0; x < column; ++x) {
            ASSERT_EQ(at(shadow, x, y), at(shadow, shadow.widthPixels - 1 - x, y)) << x << ' ' << y;
        }
    }
}

TEST(PlatterShadow, TakesAnyRadius) {
    EXPECT_EQ(drawPlatterShadow(80, 40, -5, 1), drawPlatterShadow(80, 40, 0, 1));
    EXPECT_EQ(drawPlatterShadow(80, 40, kNotANumber, 1), drawPlatterShadow(80, 40, 0, 1));
    expectSize(drawPlatterShadow(80, 40, kInfinity, 1), 80 + 2 * kReach, 40 + 2 * kReach);
}

TEST(Furniture, SizesAreRoundedToPixelsAndOneAtLeast) {
    expectSize(drawBadgeBackground(31.37, 3), 94, 72);
    expectSize(drawPageDot(PageIndicatorState::current, 0.01, 1), 1, 1);
    expectSize(drawDockDivider(MaterialTone::dark, 20.2, 1), 1, 20);
}

TEST(Furniture, SizesOutOfRangeGiveNothing) {
    for (const double bad : {0.0, -1.0, 5000.0, 1e300, kInfinity, kNotANumber}) {
        for (const FurniturePicture& picture : {
                 drawBadgeBackground(24, bad),
                 drawBadgeBackground(24, 1, bad),
                 drawPageDot(PageIndicatorState::current, bad, 1),
                 drawPageDot(PageIndicatorState::current, 8, bad),
                 drawSearchDot(PageIndicatorState::other, bad, 1),
                 drawPressedOverlay(bad, 1),
                 drawPressedOverlay(60, bad),
                 drawDockHighlight(bad, 1),
                 drawDockDivider(MaterialTone::light, bad, 1),
                 drawPlatterShadow(bad, 40, 9, 1),
                 drawPlatterShadow(40, bad, 9, 1),
                 drawPlatterShadow(40, 40, 9, bad),
             }) {
            EXPECT_EQ(picture, FurniturePicture{}) << bad;
        }
    }
    EXPECT_EQ(drawBadgeBackground(5000, 1), FurniturePicture{});
    EXPECT_EQ(drawBadgeBackground(kInfinity, 1), FurniturePicture{});
    EXPECT_EQ(drawPlatterShadow(kMaximumFurniturePixels, 40, 9, 1), FurniturePicture{});
}

}  // namespace
}  // namespace velmoranth::simulator::furniture_test
