// Shadows of rectangles, against the Gaussian itself.
#include "desktop/imaging/shadow.h"

#include "desktop/imaging/graphics_context.h"

#include "bitmaps.h"
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <memory>
#include <utility>
#include <vector>

namespace velmoranth::desktop::test_images::shadow_test {

namespace {

using platform::Rect;

constexpr double kEndless = std::numeric_limits<double>::infinity();

// The share of the pixel (x, y) that is dark when a rectangle is blurred: a sum over the pixel and,
// around each of its points, over the rectangle, weighed by the distance.
double gaussian(const Rect& rect, double deviation, double x, double y) {
    constexpr int kParts = 4;
    constexpr double kStep = 0.125;  // of a deviation
    constexpr int kSteps = 36;       // to either side: 4.5 deviations
    double sum = 0;
    double all = 0;
    for (int part = 0; part < kParts * kParts; ++part) {
        const double px = x + (part % kParts + 0.5) / kParts;
        const double py = y + (part / kParts + 0.5) / kParts;  // NOLINT(bugprone-integer-division)
        for (int row = -kSteps; row <= kSteps; ++row) {
            for (int column = -kSteps; column <= kSteps; ++column) {
                const double u = column * kStep;
                const double v = row * kStep;
                const double weight = std::exp(-(u * u + v * v) / 2);
                // A step's share of the rectangle, so that edges between steps count.
                const auto share = [&](double center, double from, double to) {
                    const double half = kStep * deviation / 2;
                    const double inside =
                        std::min(center + half, to) - std::max(center - half, from);
                    return std::clamp(inside / (2 * half), 0.0, 1.0);
                };
                sum += weight *
                       share(px + u * deviation, rect.origin.x, rect.origin.x + rect.size.width) *
                       share(py + v * deviation, rect.origin.y, rect.origin.y + rect.size.height);
                all += weight;
            }
        }
    }
    return sum / all;
}

Shadow shadowOf(double radius, platform::Point offset = {0, 0}, double opacity = 1) {
    return {.opacity = opacity, .radius = radius, .offset = offset};
}

}  // namespace

TEST(ShadowOfRect, IsTheGaussiansToALevel) {
    const struct {
        Rect rect;
        double deviation;
    } cases[] = {{{{20, 20}, {24, 16}}, 3},
                 {{{20.25, 20.5}, {9.5, 30}}, 5},
                 {{{18, 22}, {2, 3}}, 4},
                 {{{25, 25}, {12, 12}}, 0.8}};

    for (const auto& [rect, deviation] : cases) {
        const auto target = context(64, 64);
        target->drawShadowOfRect(rect, shadowOf(deviation));
        for (std::size_t i = 4; i < 60; i += 5) {
            for (const std::size_t y : {i, std::size_t{24}, std::size_t{40}}) {
                const double expected =
                    255 * gaussian(rect, deviation, static_cast<double>(i), static_cast<double>(y));
                EXPECT_NEAR(at(*target, i, y)[3], expected, 1) << deviation << ' ' << i << ' ' << y;
                EXPECT_EQ(at(*target, i, y)[0], 0);
            }
        }
    }
}

TEST(ShadowOfRect, WithoutABlurIsTheRectangle) {
    const auto target = context(6, 4);
    target->drawShadowOfRect({{1, 1}, {2.5, 1}}, shadowOf(0, {1, 0}));
    for (std::size_t y = 0; y < 4; ++y) {
        for (std::size_t x = 0; x < 6; ++x) {
            const int share = y != 1 || x < 2 || x > 4 ? 0 : (x == 4 ? 128 : 255);
            EXPECT_EQ(at(*target, x, y)[3], share) << x << ' ' << y;
        }
    }
}

TEST(ShadowOfRect, IsScaledMovedAndColored) {
    const auto target = context(120, 120, 2);
    Shadow shadow = shadowOf(2, {5, -3}, 0.5);
    shadow.color = {0, 1, 0, 0.5};
    target->translateCTM(10, 20);
    target->drawShadowOfRect({{0, 0}, {20, 10}}, shadow);
    const Rect pixels{{(10 + 5) * 2, (20 - 3) * 2}, {40, 20}};
    for (const auto& [x, y] : {std::pair<std::size_t, std::size_t>{50, 44}, {30, 40}, {71, 33}}) {
        const double dark =
            gaussian(pixels, 4, static_cast<double>(x), static_cast<double>(y)) * 64;
        EXPECT_NEAR(at(*target, x, y)[3], dark, 1);
        EXPECT_EQ(at(*target, x, y)[1], at(*target, x, y)[3]);
        EXPECT_EQ(at(*target, x, y)[2], 0);
    }
}

TEST(ShadowOfRect, FollowsTheScaleOfTheUserSpace) {
    const auto scaled = context(100, 100);
    scaled->scaleCTM(2, 3);
    scaled->drawShadowOfRect({{10, 10}, {20, 10}}, shadowOf(2, {1, 1}));
    // The same by hand: deviations 4 and 6 are those of two passes, one each way.
    const auto across = context(100, 100);
    across->drawShadowOfRect({{22, -1000}, {40, 3000}}, shadowOf(4));
    const auto down = context(100, 100);
    down->drawShadowOfRect({{-1000, 33}, {3000, 30}}, shadowOf(6));
    for (std::size_t i = 0; i < 100; i += 7) {
        const double expected = at(*across, i, 50)[3] * at(*down, 50, 45)[3] / 255.0;
        EXPECT_NEAR(at(*scaled, i, 45)[3], expected, 1.5) << i;
        const double vertical = at(*across, 40, 50)[3] * at(*down, 50, i)[3] / 255.0;
        EXPECT_NEAR(at(*scaled, 40, i)[3], vertical, 1.5) << i;
    }
}

TEST(ShadowOfRect, IsClipped) {
    const auto target = context(4, 1);
    target->clipToRect({{0, 0}, {2.5, 1}});
    target->drawShadowOfRect({{-5, -5}, {20, 20}}, shadowOf(1));
    EXPECT_EQ(pixelsOf(target->pixels()),
              (std::vector<Bgra>{kBlack, kBlack, {0, 0, 0, 128}, kClear}));
}

TEST(ShadowOfRect, OfOneShapeIsBlurredOnce) {
    const auto target = context(600, 600, 3);
    for (int i = 0; i < 24; ++i) {
        target->saveState();
        // Thirds of points are whole pixels, give or take what a double loses.
        const int row = i / 4;
        target->translateCTM(10 + i % 4 * (40 + 1.0 / 3), 10 + row * (25 + 2.0 / 3));
        target->drawShadowOfRect({{0, 0}, {20, 20}}, shadowOf(2));
        target->restoreState();
    }
    EXPECT_EQ(target->blurredShadows(), 1U);
    // Colour, opacity and offset are no matter of the blur.
    Shadow other = shadowOf(2, {7, 9}, 0.25);
    other.color = {1, 0, 0, 1};
    target->drawShadowOfRect({{30, 30}, {20, 20}}, other);
    EXPECT_EQ(target->blurredShadows(), 1U);
    target->drawShadowOfRect({{30, 30}, {20, 20}}, shadowOf(3));
    target->drawShadowOfRect({{30, 30}, {21, 20}}, shadowOf(2));
    target->drawShadowOfRect({{30.1, 30}, {20, 20}}, shadowOf(2));
    target->drawShadowOfRect({{-10, 30}, {20, 20}}, shadowOf(2));  // cut off
    EXPECT_EQ(target->blurredShadows(), 5U);
}

TEST(ShadowOfRect, TakenFromTheKeptOnesIsTheSame) {
    const auto once = context(60, 40);
    once->drawShadowOfRect({{30, 10}, {11, 13}}, shadowOf(3));
    const auto twice = context(60, 40);
    twice->saveState();
    twice->clipToRect({{0, 0}, {29, 40}});
    twice->drawShadowOfRect({{12, 10}, {11, 13}}, shadowOf(0.1));
    twice->restoreState();
    const auto before = pixelsOf(twice->pixels());
    twice->drawShadowOfRect({{130, 10}, {11, 13}}, shadowOf(3));  // not to be seen
    EXPECT_EQ(pixelsOf(twice->pixels()), before);
    const auto again = context(60, 40);
    for (int i = 0; i < 2; ++i) {
        std::fill_n(again->mutablePixels().data, 60 * 40 * 4, std::uint8_t{0});
        again->drawShadowOfRect({{30, 10}, {11, 13}}, shadowOf(3));
        EXPECT_EQ(pixelsOf(again->pixels()), pixelsOf(once->pixels()));
    }
    EXPECT_EQ(again->blurredShadows(), 1U);
}

TEST(ShadowOfRect, ManyShapesAreForgottenNotHoarded) {
    ShadowTiles tiles;
    const PixelRect clip{0, 0, 1000, 1000};
    std::weak_ptr<const std::vector<std::uint8_t>> first =
        tiles.tile({0, 0, 500, 500, 1, 1}, clip).coverage;
    EXPECT_FALSE(first.expired());
    for (int i = 1; i < 200; ++i) {
        (void)tiles.tile({0, 0, 500, 500.0 + i, 1, 1}, clip);
    }
    EXPECT_TRUE(first.expired());
    const std::weak_ptr<const std::vector<std::uint8_t>> large =
        tiles.tile({0, 0, 4000, 4000, 1, 1}, {0, 0, 4000, 4000}).coverage;
    EXPECT_TRUE(large.expired());
}

TEST(ShadowOfRect, AbsurdNumbersGiveAPicture) {
    const double numbers[] = {static_cast<double>(NAN), kEndless, -kEndless, 1e300, -1e300, -7};
    for (const double number : numbers) {
        for (int place = 0; place < 9; ++place) {
            const auto target = context(40, 40, 3);
            Shadow shadow = shadowOf(2);
            Rect rect{{2, 2}, {4, 4}};
            double* const fields[] = {&shadow.opacity,  &shadow.radius,      &shadow.offset.x,
                                      &shadow.offset.y, &shadow.color.alpha, &rect.origin.x,
                                      &rect.size.width, &rect.size.height,   &shadow.color.red};
            *fields[place] = number;
            target->drawShadowOfRect(rect, shadow);
            EXPECT_EQ(target->pixels().width, 40U);
        }
    }
}

TEST(ShadowOfRect, AbsurdNumbersAreBroughtIntoBounds) {
    const auto alpha = [](const Rect& rect, const Shadow& shadow, std::size_t x, std::size_t y) {
        const auto target = context(40, 40);
        target->drawShadowOfRect(rect, shadow);
        return at(*target, x, y)[3];
    };
    const Rect rect{{10, 10}, {20, 20}};
    EXPECT_EQ(alpha(rect, shadowOf(0, {0, 0}, 99), 20, 20), 255);
    EXPECT_EQ(alpha(rect, shadowOf(2, {0, 0}, -1), 20, 20), 0);
    EXPECT_EQ(alpha(rect, shadowOf(-3), 10, 10), 255);
    EXPECT_EQ(alpha(rect, shadowOf(-3), 9, 10), 0);
    EXPECT_EQ(alpha(rect, shadowOf(1e9), 20, 20), alpha(rect, shadowOf(256), 20, 20));
    EXPECT_EQ(alpha(rect, shadowOf(2, {1e9, 0}), 20, 20), 0);
    EXPECT_EQ(alpha(rect, shadowOf(2, {0, NAN}), 20, 20), 0);
    EXPECT_EQ(alpha({{-1e300, -1e300}, {2e300, 2e300}}, shadowOf(5), 20, 20), 255);
    EXPECT_EQ(alpha({{30, 30}, {-20, -20}}, shadowOf(2), 20, 20), alpha(rect, shadowOf(2), 20, 20));
    EXPECT_EQ(alpha({{10, 10}, {0, 20}}, shadowOf(2), 10, 20), 0);
}

TEST(TransparencyLayerExtent, KeepsWhatLiesInIt) {
    const auto target = context(4, 1);
    target->beginTransparencyLayer(0.5, {}, Rect{{1, 0}, {2, 1}});
    target->fillRect({{0, 0}, {4, 1}}, {1, 0, 0, 1});
    target->endTransparencyLayer();
    EXPECT_EQ(pixelsOf(target->pixels()),
              (std::vector<Bgra>{kClear, {0, 0, 128, 128}, {0, 0, 128, 128}, kClear}));
}

TEST(TransparencyLayerExtent, WhatIsOutOfSightCastsItsShadowIntoIt) {
    const auto target = context(4, 1);
    target->beginTransparencyLayer(1, shadowOf(0, {3, 0}), Rect{{-2, 0}, {2, 1}});
    target->fillRect({{-2, 0}, {2, 1}}, {1, 0, 0, 1});
    target->endTransparencyLayer();
    EXPECT_EQ(pixelsOf(target->pixels()), (std::vector<Bgra>{kClear, kBlack, kBlack, kClear}));
}

TEST(TransparencyLayerExtent, AbsurdOnesGiveAPicture) {
    for (const double number : {static_cast<double>(NAN), kEndless, -kEndless, 1e300, -1e300}) {
        for (const Rect& extent : {Rect{{number, 0}, {4, 4}}, Rect{{0, 0}, {number, 4}},
                                   Rect{{-1e9, -1e9}, {2e9, std::abs(number)}}}) {
            const auto target = context(4, 4);
            target->fillRect({{0, 0}, {1, 1}}, {0, 0, 1, 1});
            target->beginTransparencyLayer(1, shadowOf(1e5, {1e5, 1e5}), extent);
            target->fillRect({{1, 1}, {1, 1}}, {1, 0, 0, 1});
            target->endTransparencyLayer();
            EXPECT_EQ(at(*target, 0, 0)[0], 255);
        }
    }
    const auto target = context(4, 4);
    target->beginTransparencyLayer(1, {}, Rect{{-1e9, -1e9}, {2e9, 2e9}});
    target->fillRect({{1, 1}, {1, 1}}, {1, 0, 0, 1});
    target->endTransparencyLayer();
    EXPECT_EQ(at(*target, 1, 1), kRed);
}

TEST(TransparencyLayerExtent, TheClipOutsideAppliesOnce) {
    const auto target = context(2, 1);
    target->clipToRect({{0, 0}, {1.5, 1}});
    target->beginTransparencyLayer(1);
    target->fillRect({{0, 0}, {2, 1}}, {1, 0, 0, 1});
    target->fillRect({{0, 0}, {2, 1}}, {1, 0, 0, 1});
    target->endTransparencyLayer();
    EXPECT_EQ(pixelsOf(target->pixels()), (std::vector<Bgra>{kRed, {0, 0, 128, 128}}));
}

}  // namespace velmoranth::desktop::test_images::shadow_test
