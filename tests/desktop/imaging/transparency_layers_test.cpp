#include "desktop/imaging/graphics_context.h"

#include "bitmaps.h"
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

namespace velmoranth::desktop::test_images::transparency_layers_test {

namespace {

using platform::Color;

constexpr Color kRedColor{1, 0, 0, 1};
constexpr Color kBlueColor{0, 0, 1, 1};

Shadow hardShadow(platform::Point offset, double opacity = 1) {
    return {.opacity = opacity, .radius = 0, .offset = offset};
}

}  // namespace

TEST(TransparencyLayer, IsDrawnAtOnceTimesItsOpacity) {
    const auto target = context(1, 1);
    target->beginTransparencyLayer(0.5);
    target->fillRect({{0, 0}, {1, 1}}, kBlueColor);
    target->fillRect({{0, 0}, {1, 1}}, kRedColor);
    target->endTransparencyLayer();
    EXPECT_EQ(at(*target, 0, 0), (Bgra{0, 0, 128, 128}));
}

TEST(TransparencyLayer, LeavesSnapshotsAsTheyAre) {
    const auto target = context(1, 1);
    target->fillRect({{0, 0}, {1, 1}}, kBlueColor);
    const auto before = target->createImage();
    target->beginTransparencyLayer(1);
    target->fillRect({{0, 0}, {1, 1}}, kRedColor);
    target->endTransparencyLayer();
    EXPECT_EQ(pixelsOf(before), flat(1, kBlue));
    EXPECT_EQ(at(*target, 0, 0), kRed);
}

TEST(TransparencyLayer, Nests) {
    const auto target = context(1, 1);
    target->beginTransparencyLayer(0.5);
    target->beginTransparencyLayer(0.5);
    target->fillRect({{0, 0}, {1, 1}}, kRedColor);
    target->endTransparencyLayer();
    target->endTransparencyLayer();
    target->endTransparencyLayer();  // without a layer: nothing
    EXPECT_EQ(at(*target, 0, 0), (Bgra{0, 0, 64, 64}));
}

TEST(TransparencyLayer, StartsClearInAnOpaqueContext) {
    const auto target = context(2, 1, 1, DesktopGraphicsContext::Content::opaque);
    target->fillRect({{0, 0}, {2, 1}}, kBlueColor);
    target->beginTransparencyLayer(1);
    target->fillRect({{1, 0}, {1, 1}}, kRedColor);
    target->endTransparencyLayer();
    EXPECT_EQ(pixelsOf(target->pixels()), (std::vector<Bgra>{kBlue, kRed}));
}

TEST(TransparencyLayer, ClipAndTransformAreAsBefore) {
    const auto target = context(3, 1);
    target->saveState();
    target->beginTransparencyLayer(1);
    target->restoreState();  // does not reach beyond the layer
    target->translateCTM(2, 0);
    target->saveState();
    target->clipToRect({{0, 0}, {1, 1}});
    target->endTransparencyLayer();
    target->fillRect({{0, 0}, {1, 1}}, kRedColor);
    EXPECT_EQ(pixelsOf(target->pixels()), (std::vector<Bgra>{kRed, kClear, kClear}));
}

TEST(TransparencyLayer, ContentIsClippedOnce) {
    const auto target = context(2, 1);
    target->clipToRect({{0.5, 0}, {1, 1}});
    target->beginTransparencyLayer(1);
    target->fillRect({{0, 0}, {2, 1}}, kRedColor);
    target->endTransparencyLayer();
    EXPECT_EQ(pixelsOf(target->pixels()), flat(2, {0, 0, 128, 128}));
}

TEST(TransparencyLayer, AHardShadowIsTheMovedShape) {
    const auto target = context(4, 4);
    target->beginTransparencyLayer(1, hardShadow({1, 1}));
    target->fillRect({{0, 0}, {2, 2}}, kRedColor);
    target->endTransparencyLayer();
    const std::vector<Bgra> expected = {kRed,   kRed,   kClear, kClear,  //
                                        kRed,   kRed,   kBlack, kClear,  //
                                        kClear, kBlack, kBlack, kClear,  //
                                        kClear, kClear, kClear, kClear};
    EXPECT_EQ(pixelsOf(target->pixels()), expected);
}

TEST(TransparencyLayer, AShadowsOffsetIsInPointsAndDownwards) {
    const auto target = context(8, 8, 2);
    target->beginTransparencyLayer(1, hardShadow({1, -1}));
    target->fillRect({{0, 2}, {1, 1}}, kRedColor);
    target->endTransparencyLayer();
    EXPECT_EQ(at(*target, 2, 2), kBlack);
    EXPECT_EQ(at(*target, 3, 3), kBlack);
    EXPECT_EQ(at(*target, 2, 4), kClear);
    EXPECT_EQ(at(*target, 0, 4), kRed);
}

TEST(TransparencyLayer, AShadowsColorIsTimesItsOpacityAndTheContentsAlpha) {
    const auto target = context(2, 1);
    Shadow shadow = hardShadow({1, 0}, 0.5);
    shadow.color = {0, 0, 1, 0.8};
    target->beginTransparencyLayer(1, shadow);
    target->fillRect({{0, 0}, {1, 1}}, {1, 0, 0, 0.5});
    target->endTransparencyLayer();
    EXPECT_EQ(at(*target, 0, 0), (Bgra{0, 0, 128, 128}));
    EXPECT_EQ(at(*target, 1, 0), (Bgra{51, 0, 0, 51}));
}

TEST(TransparencyLayer, OpacityAppliesToContentAndShadowTogether) {
    const auto target = context(3, 1);
    target->beginTransparencyLayer(0.5, hardShadow({1, 0}));
    target->fillRect({{0, 0}, {2, 1}}, kRedColor);
    target->endTransparencyLayer();
    // What the content covers of its own shadow does not shine through it.
    EXPECT_EQ(pixelsOf(target->pixels()),
              (std::vector<Bgra>{{0, 0, 128, 128}, {0, 0, 128, 128}, {0, 0, 0, 128}}));
}

TEST(TransparencyLayer, ABlurredShadowReachesThreeDeviations) {
    const auto target = context(60, 60);
    target->beginTransparencyLayer(1, {.opacity = 1, .radius = 3, .offset = {0, 0}});
    target->fillRect({{25, 25}, {10, 10}}, kRedColor);
    target->endTransparencyLayer();
    EXPECT_EQ(at(*target, 30, 30), kRed);
    EXPECT_GT(at(*target, 24, 30)[3], 90);
    EXPECT_LT(at(*target, 24, 30)[3], 140);
    EXPECT_GT(at(*target, 20, 30)[3], 0);
    EXPECT_EQ(at(*target, 15, 30), kClear);
    EXPECT_EQ(at(*target, 30, 45), kClear);
    for (std::size_t i = 0; i < 60; ++i) {
        EXPECT_NEAR(at(*target, i, 30)[3], at(*target, 59 - i, 30)[3], 6) << i;
    }
}

TEST(TransparencyLayer, AShadowIsClipped) {
    const auto target = context(3, 1);
    target->clipToRect({{0, 0}, {1.5, 1}});
    target->beginTransparencyLayer(1, hardShadow({1, 0}));
    target->fillRect({{0, 0}, {1, 1}}, kRedColor);
    target->endTransparencyLayer();
    EXPECT_EQ(pixelsOf(target->pixels()), (std::vector<Bgra>{kRed, {0, 0, 0, 128}, kClear}));
}

TEST(TransparencyLayer, AbsurdShadowsAndOpacitiesDoNoHarm) {
    constexpr double kEndless = std::numeric_limits<double>::infinity();
    for (const double number : {static_cast<double>(NAN), kEndless, -kEndless, 1e300, -1e300}) {
        const auto target = context(4, 4);
        target->beginTransparencyLayer(
            1, {.opacity = number, .radius = number, .offset = {number, number}});
        target->fillRect({{0, 0}, {1, 1}}, kRedColor);
        target->endTransparencyLayer();
        EXPECT_EQ(at(*target, 0, 0), kRed) << number;
    }
    const auto target = context(1, 1);
    target->beginTransparencyLayer(NAN);
    target->fillRect({{0, 0}, {1, 1}}, kRedColor);
    target->endTransparencyLayer();
    EXPECT_EQ(at(*target, 0, 0), kClear);
}

TEST(TransparencyLayer, WithNothingInItCastsNothing) {
    const auto target = context(2, 2);
    target->beginTransparencyLayer(1, hardShadow({0, 0}));
    target->endTransparencyLayer();
    EXPECT_EQ(pixelsOf(target->pixels()), flat(4, kClear));
}

}  // namespace velmoranth::desktop::test_images::transparency_layers_test
