#include "desktop/views/views.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <memory>
#include <vector>

namespace velmoranth::desktop::transform_test {

namespace {

using platform::Color;
using platform::Rect;

constexpr double kEndless = std::numeric_limits<double>::infinity();

std::shared_ptr<DesktopView> view(const Rect& frame, const Color& color = platform::kClearColor) {
    auto made = std::make_shared<DesktopView>(frame);
    made->setBackgroundColor(color);
    return made;
}

// The pixels that are opaque, as a rectangle; every pixel of it is, or the size is negative.
Rect filled(const platform::ViewRef& some, PixelSize size, double scale = 1) {
    const auto picture = renderTree(some, size, scale);
    std::vector<std::size_t> xs;
    std::vector<std::size_t> ys;
    for (std::size_t y = 0; y < size.height; ++y) {
        for (std::size_t x = 0; x < size.width; ++x) {
            if (picture->pixels().row(y)[x * 4 + 3] == 255) {
                xs.push_back(x);
                ys.push_back(y);
            }
        }
    }
    if (xs.empty()) {
        return {};
    }
    const auto [left, right] = std::minmax_element(xs.begin(), xs.end());
    const auto [top, bottom] = std::minmax_element(ys.begin(), ys.end());
    const std::size_t width = *right + 1 - *left;
    const std::size_t height = *bottom + 1 - *top;
    const double sign = width * height == xs.size() ? 1 : -1;
    return {{static_cast<double>(*left), static_cast<double>(*top)},
            {sign * static_cast<double>(width), sign * static_cast<double>(height)}};
}

}  // namespace

TEST(Transform, ScalesAboutTheCentreAndMoves) {
    const auto window = view({{0, 0}, {100, 100}});
    const auto some = view({{20, 30}, {20, 10}}, {1, 0, 0, 1});
    window->addSubview(some);
    EXPECT_EQ(filled(window, {100, 100}), (Rect{{20, 30}, {20, 10}}));
    some->setTransform({.scaleX = 2, .scaleY = 2});
    EXPECT_EQ(filled(window, {100, 100}), (Rect{{10, 25}, {40, 20}}));
    some->setTransform({.scaleX = 0.5, .scaleY = 3, .translation = {7, -4}});
    EXPECT_EQ(filled(window, {100, 100}), (Rect{{32, 16}, {10, 30}}));
    EXPECT_EQ(filled(window, {200, 200}, 2), (Rect{{64, 32}, {20, 60}}));
    EXPECT_EQ(some->frame(), (Rect{{20, 30}, {20, 10}}));
    EXPECT_EQ(some->bounds(), (Rect{{0, 0}, {20, 10}}));
}

TEST(Transform, GoesDownTheTree) {
    const auto window = view({{0, 0}, {100, 100}});
    const auto outer = view({{40, 40}, {20, 20}});
    const auto inner = view({{10, 10}, {10, 10}}, {1, 0, 0, 1});
    window->addSubview(outer);
    outer->addSubview(inner);
    outer->setTransform({.scaleX = 2, .scaleY = 2});
    EXPECT_EQ(filled(window, {100, 100}), (Rect{{50, 50}, {20, 20}}));
    inner->setTransform({.scaleX = 0.5, .scaleY = 0.5, .translation = {-5, 0}});
    EXPECT_EQ(filled(window, {100, 100}), (Rect{{45, 55}, {10, 10}}));
}

TEST(Transform, ThatOfTheRenderedViewItselfPlaysNoPart) {
    const auto some = view({{0, 0}, {10, 10}}, {1, 0, 0, 1});
    some->setTransform({.scaleX = 3, .scaleY = 3});
    EXPECT_EQ(filled(some, {40, 40}), (Rect{{0, 0}, {10, 10}}));
}

TEST(Transform, ALayersRenderingHasThoseOfItsSublayers) {
    const auto base = view({{0, 0}, {40, 40}});
    const auto some = view({{10, 10}, {10, 10}}, {1, 0, 0, 1});
    base->addSubview(some);
    some->setTransform({.scaleX = 2, .scaleY = 2});
    const auto context = DesktopGraphicsContext::create({.size = {40, 40}});
    base->layer()->renderInContext(context);
    EXPECT_EQ(context->pixels().row(5)[5 * 4 + 3], 255);
    EXPECT_EQ(context->pixels().row(5)[4 * 4 + 3], 0);
}

TEST(Transform, IsShownOnItsWay) {
    AnimationClock clock;
    const auto window = view({{0, 0}, {100, 100}});
    const auto some = view({{20, 20}, {20, 20}}, {1, 0, 0, 1});
    window->addSubview(some);
    clock.animate(
        1, kLinear, [&] { some->setTransform({.scaleX = 3, .scaleY = 3, .translation = {20, 0}}); },
        nullptr);
    clock.advance(0.5);
    EXPECT_EQ(filled(window, {100, 100}), (Rect{{20, 10}, {40, 40}}));
}

TEST(Transform, RoundCornersShadowsAndClipsAreScaled) {
    const auto window = view({{0, 0}, {40, 40}});
    const auto some = view({{10, 10}, {10, 10}}, {1, 0, 0, 1});
    window->addSubview(some);
    some->setTransform({.scaleX = 2, .scaleY = 2});
    some->desktopLayer()->appearance.cornerRadius = 5;
    // A circle of 20 pixels.
    const auto picture = renderTree(window, {40, 40}, 1);
    for (std::size_t y = 0; y < 40; ++y) {
        for (std::size_t x = 0; x < 40; ++x) {
            const double distance =
                std::hypot(static_cast<double>(x) - 14.5, static_cast<double>(y) - 14.5);
            const int alpha = picture->pixels().row(y)[x * 4 + 3];
            if (std::abs(distance - 10) > 1) {
                EXPECT_EQ(alpha, distance < 10 ? 255 : 0) << x << ' ' << y;
            }
        }
    }
    some->desktopLayer()->appearance.cornerRadius = 0;
    some->layer()->setShadowOpacity(1);
    some->layer()->setShadowRadius(0);
    for (const bool path : {false, true}) {
        some->layer()->setShadowOffset({4, 6});
        if (path) {
            some->layer()->setShadowPathRect(some->bounds());
        }
        const auto shadowed = renderTree(window, {40, 40}, 1);
        EXPECT_EQ(shadowed->pixels().row(36)[32 * 4 + 3], 255);
        EXPECT_EQ(shadowed->pixels().row(37)[32 * 4 + 3], 0);
        EXPECT_EQ(shadowed->pixels().row(36)[33 * 4 + 3], 0);
    }
}

TEST(Transform, AbsurdOnesDoNoHarm) {
    const auto window = view({{0, 0}, {20, 20}}, {0, 0, 1, 1});
    const auto some = view({{5, 5}, {10, 10}}, {1, 0, 0, 1});
    some->addSubview(std::make_shared<DesktopLabel>("text", TextStyle{}));
    some->subviews().front()->setFrame({{0, 0}, {10, 10}});
    window->addSubview(some);
    some->setTransform({.scaleX = 2});
    for (const double number : {static_cast<double>(NAN), kEndless, -kEndless}) {
        some->setTransform({.scaleX = number});
        some->setTransform({.scaleY = number});
        some->setTransform({.translation = {number, 0}});
        some->setTransform({.translation = {0, number}});
    }
    EXPECT_EQ(some->transform(), (ViewTransform{.scaleX = 2}));
    some->layer()->setShadowOpacity(1);
    for (const double number : {0.0, -1.0, 1e300, -1e300, 1e-300, 1e5}) {
        some->setAlpha(number < 0 ? 0.5 : 1);
        some->setTransform({.scaleX = number, .scaleY = number});
        EXPECT_EQ(renderTree(window, {20, 20}, 1)->pixels().row(0)[3], 255);
        some->setTransform({.translation = {number, number}});
        EXPECT_EQ(renderTree(window, {20, 20}, 1)->pixels().row(0)[3], 255);
    }
    some->setAlpha(1);
    some->setTransform({.scaleX = 0, .scaleY = 0});
    EXPECT_EQ(filled(window, {20, 20}), (Rect{{0, 0}, {20, 20}}));
    EXPECT_EQ(renderTree(window, {20, 20}, 1)->pixels().row(10)[40], 255);
}

TEST(Transform, TextIsDrawnAtTheScaleThatItIsShownAt) {
    const auto labelOf = [](double size) {
        return std::make_shared<DesktopLabel>("Hamburg", TextStyle{.size = size});
    };
    // Twice as large by its transform is the same as twice as large by its font.
    const auto window = view({{0, 0}, {160, 40}});
    const auto scaled = labelOf(12);
    scaled->setFrame({{40, 10}, {80, 20}});
    scaled->setTransform({.scaleX = 2, .scaleY = 2});
    window->addSubview(scaled);
    const auto other = view({{0, 0}, {160, 40}});
    const auto large = labelOf(24);
    large->setFrame({{0, 0}, {160, 40}});
    other->addSubview(large);
    const auto a = renderTree(window, {160, 40}, 1);
    const auto b = renderTree(other, {160, 40}, 1);
    std::size_t ink = 0;
    std::size_t difference = 0;
    for (std::size_t y = 0; y < 40; ++y) {
        for (std::size_t x = 0; x < 160; ++x) {
            const int left = a->pixels().row(y)[x * 4 + 3];
            const int right = b->pixels().row(y)[x * 4 + 3];
            ink += static_cast<std::size_t>(right);
            difference += static_cast<std::size_t>(std::abs(left - right));
        }
    }
    EXPECT_GT(ink, 50000U);
    EXPECT_LT(difference, ink / 50);
}

TEST(Transform, TextBetweenPixelsIsDrawnThereNotStretchedThere) {
    const TextStyle style{.size = 16};
    const auto window = view({{0, 0}, {60, 24}});
    const auto label = std::make_shared<DesktopLabel>("lil", style);
    label->setFrame({{9.5, 9.25}, {40, 13}});
    window->addSubview(label);
    const auto picture = renderTree(window, {60, 24}, 1);
    std::vector<std::uint8_t> memory(std::size_t{60} * 24 * 4);
    drawText({memory.data(), 60, 24, 240}, "lil", style, label->frame(), 1);
    EXPECT_EQ(platform::Data(picture->pixels().data, picture->pixels().data + memory.size()),
              memory);
}

}  // namespace velmoranth::desktop::transform_test
