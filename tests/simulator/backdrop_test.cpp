#include "simulator/home_screen/backdrop.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstdlib>
#include <vector>

namespace velmoranth::simulator::backdrop_test {
namespace {

constexpr std::size_t kWidth = 300;
constexpr std::size_t kHeight = 200;

// Black above the middle, white below.
std::vector<std::uint8_t> halves() {
    std::vector<std::uint8_t> pixels(kWidth * kHeight * 4, 255);
    for (std::size_t i = 0; i < pixels.size() / 2; ++i) {
        pixels[i] = i % 4 == 3 ? 255 : 0;
    }
    return pixels;
}

desktop::PixelView view(const std::vector<std::uint8_t>& pixels) {
    return {pixels.data(), kWidth, kHeight, kWidth * 4};
}

TEST(Backdrop, CoversItsFrameUpToTheScreensEdges) {
    const std::vector<std::uint8_t> wallpaper = halves();
    const auto backdrop = makeBackdrop(view(wallpaper), {{0, 53}, {150, 47}}, 2, {});
    ASSERT_NE(backdrop, nullptr);
    EXPECT_EQ(backdrop->size(), (desktop::PixelSize{300, 94}));
    const desktop::PixelView pixels = backdrop->pixels();
    for (std::size_t y = 0; y < pixels.height; ++y) {
        for (std::size_t x = 0; x < pixels.width; ++x) {
            ASSERT_EQ(pixels.row(y)[x * 4 + 3], 255) << x << ", " << y;
        }
    }
}

TEST(Backdrop, EdgesOfTheWallpaperAreGone) {
    const std::vector<std::uint8_t> wallpaper = halves();
    const auto backdrop =
        makeBackdrop(view(wallpaper), {{0, 0}, {150, 100}}, 2, {.tint = platform::kClearColor});
    ASSERT_NE(backdrop, nullptr);
    const desktop::PixelView pixels = backdrop->pixels();
    for (std::size_t y = 1; y < pixels.height; ++y) {
        EXPECT_LE(std::abs(pixels.row(y)[600] - pixels.row(y - 1)[600]), 6) << y;
    }
    EXPECT_LT(pixels.row(0)[600], 40);
    EXPECT_GT(pixels.row(199)[600], 215);
}

TEST(Backdrop, TintLightens) {
    const std::vector<std::uint8_t> black(kWidth * kHeight * 4, 0);
    std::vector<std::uint8_t> opaque = black;
    for (std::size_t i = 3; i < opaque.size(); i += 4) {
        opaque[i] = 255;
    }
    const auto backdrop = makeBackdrop(view(opaque), {{10, 10}, {100, 50}}, 2,
                                       {.tint = {1, 1, 1, 0.2}, .cornerRadius = 10});
    ASSERT_NE(backdrop, nullptr);
    const desktop::PixelView pixels = backdrop->pixels();
    EXPECT_NEAR(pixels.row(50)[std::size_t{100} * 4], 51, 1);
    EXPECT_EQ(pixels.row(0)[3], 0);  // outside the rounded corner
    EXPECT_EQ(pixels.row(50)[3], 255);
}

TEST(Backdrop, NothingToDrawIsNil) {
    const std::vector<std::uint8_t> wallpaper = halves();
    EXPECT_EQ(makeBackdrop({}, {{0, 0}, {10, 10}}, 2, {}), nullptr);
    EXPECT_EQ(makeBackdrop(view(wallpaper), {{0, 0}, {0, 10}}, 2, {}), nullptr);
}

}  // namespace
}  // namespace velmoranth::simulator::backdrop_test
