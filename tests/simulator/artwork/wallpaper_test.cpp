#include "simulator/artwork/artwork.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <utility>
#include <vector>

namespace velmoranth::simulator::wallpaper_test {
namespace {

double linear(std::uint8_t component) {
    const double value = component / 255.0;
    return value <= 0.04045 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
}

// Relative luminance of a pixel, as the accessibility guidelines for web content define it.
double luminance(const std::uint8_t* bgra) {
    return 0.0722 * linear(bgra[0]) + 0.7152 * linear(bgra[1]) + 0.2126 * linear(bgra[2]);
}

TEST(Wallpaper, IsOpaqueOnPhonesAndPads) {
    for (const auto& [width, height] :
         {std::pair{750, 1334}, std::pair{1125, 2436}, std::pair{1536, 2048}, std::pair{2048, 1536},
          std::pair{1, 1}, std::pair{3, 900}}) {
        const auto picture = drawWallpaper(width, height);
        ASSERT_EQ(picture.size(),
                  static_cast<std::size_t>(width) * static_cast<std::size_t>(height) * 4);
        for (std::size_t i = 3; i < picture.size(); i += 4) {
            ASSERT_EQ(picture[i], 255);
        }
    }
}

// White on the lightest spot keeps a contrast of 2.6; the labels' own shadow does the rest.
TEST(Wallpaper, LeavesWhiteLabelsReadable) {
    for (const auto& [width, height] : {std::pair{375, 812}, std::pair{1024, 768}}) {
        const auto picture = drawWallpaper(width, height);
        double lightest = 0;
        for (std::size_t i = 0; i < picture.size(); i += 4) {
            lightest = std::max(lightest, luminance(&picture[i]));
        }
        EXPECT_GT(1.05 / (lightest + 0.05), 2.6) << width;
    }
}

TEST(Wallpaper, IsTheSameEveryTime) {
    EXPECT_EQ(drawWallpaper(200, 400), drawWallpaper(200, 400));
}

// Neighbours differ by the dither and little more, but for the few pixels along a hill.
TEST(Wallpaper, HasNoBands) {
    constexpr std::size_t kWidth = 375;
    constexpr std::size_t kHeight = 812;
    const auto picture = drawWallpaper(kWidth, kHeight);
    std::size_t steps = 0;
    for (std::size_t i = 0; i < kWidth * (kHeight - 1) * 4; ++i) {
        const int step = picture[i] - picture[i + kWidth * 4];
        steps += step > 3 || step < -3 ? 1 : 0;
    }
    EXPECT_LT(steps, kWidth * 4 * 8);
}

TEST(Wallpaper, SizesOutOfRangeGiveNothing) {
    constexpr int kHuge = std::numeric_limits<int>::max();
    for (const auto& [width, height] :
         {std::pair{0, 10}, std::pair{10, 0}, std::pair{-5, 10}, std::pair{10, -5},
          std::pair{kHuge, kHuge}, std::pair{kMaximumWallpaperPixels + 1, 1},
          std::pair{1, kMaximumWallpaperPixels + 1}}) {
        EXPECT_TRUE(drawWallpaper(width, height).empty()) << width << " x " << height;
        EXPECT_TRUE(continuousCornerCoverage(width, height, 4).empty()) << width << " x " << height;
    }
}

}  // namespace
}  // namespace velmoranth::simulator::wallpaper_test
