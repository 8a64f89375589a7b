// Layers' shadows on the screen and in a context.
#include "desktop/views/views.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <limits>
#include <memory>
#include <numbers>
#include <vector>

namespace velmoranth::desktop::shadow_test {

namespace {

using platform::Color;
using platform::Rect;

std::shared_ptr<DesktopView> view(const Rect& frame, const Color& color = platform::kClearColor) {
    auto made = std::make_shared<DesktopView>(frame);
    made->setBackgroundColor(color);
    return made;
}

std::shared_ptr<DesktopView> window() {
    return view({{0, 0}, {40, 40}});
}

void addShadow(platform::View& some, double radius = 0, platform::Size offset = {0, 0}) {
    some.layer()->setShadowOpacity(1);
    some.layer()->setShadowRadius(radius);
    some.layer()->setShadowOffset(offset);
}

int alphaAt(const PixelView& pixels, std::size_t x, std::size_t y) {
    return pixels.row(y)[x * 4 + 3];
}

int shown(const platform::ViewRef& some, std::size_t x, std::size_t y) {
    return alphaAt(renderTree(some, {40, 40}, 1)->pixels(), x, y);
}

int rendered(platform::View& some, std::size_t x, std::size_t y) {
    const auto context = DesktopGraphicsContext::create({.size = {40, 40}});
    some.layer()->renderInContext(context);
    return alphaAt(context->pixels(), x, y);
}

}  // namespace

TEST(LayerShadow, OfAPathIsThatOfItsRectangleOnTheScreen) {
    const auto base = window();
    const auto some = view({{10, 10}, {10, 10}}, {1, 0, 0, 1});
    addShadow(*some);
    some->layer()->setShadowPathRect({{-5, 2}, {20, 3}});
    base->addSubview(some);
    EXPECT_EQ(shown(base, 5, 12), 255);
    EXPECT_EQ(shown(base, 24, 14), 255);
    EXPECT_EQ(shown(base, 25, 14), 0);
    EXPECT_EQ(shown(base, 5, 11), 0);
    // The layer lies before its shadow.
    EXPECT_EQ(renderTree(base, {40, 40}, 1)->pixels().row(13)[12 * 4 + 2], 255);
    // A context takes the shape from what is drawn.
    EXPECT_EQ(rendered(*base, 5, 12), 0);
    some->layer()->setShadowOffset({-10, 0});
    EXPECT_EQ(rendered(*base, 0, 19), 255);
}

TEST(LayerShadow, OfAPathIsAGaussian) {
    const auto base = window();
    const auto some = view({{5, 5}, {10, 10}});
    addShadow(*some, 3, {2, 1});
    some->layer()->setShadowPathRect({{0, 0}, {20, 16}});
    base->addSubview(some);
    // Along a line the blurred edges of a rectangle are two error functions.
    const auto share = [](double at, double from, double to) {
        const auto below = [](double x) { return std::erfc(-x / (3 * std::numbers::sqrt2)) / 2; };
        return below(at - from) - below(at - to);
    };
    for (std::size_t x = 0; x < 40; x += 3) {
        const auto center = static_cast<double>(x) + 0.5;
        EXPECT_NEAR(shown(base, x, 14), 255 * share(center, 7, 27) * share(14.5, 6, 22), 1.5) << x;
    }
}

TEST(LayerShadow, OfALayerThatDrawsNothingNeedsAPath) {
    const auto base = window();
    const auto some = view({{10, 10}, {10, 10}});
    addShadow(*some);
    base->addSubview(some);
    EXPECT_EQ(shown(base, 15, 15), 0);
    some->layer()->setShadowPathRect({{0, 0}, {10, 10}});
    EXPECT_EQ(shown(base, 15, 15), 255);
}

TEST(LayerShadow, IsNotShownByALayerThatMasks) {
    for (const bool path : {false, true}) {
        const auto base = window();
        const auto some = view({{10, 10}, {10, 10}}, {1, 0, 0, 1});
        addShadow(*some, 0, {10, 0});
        if (path) {
            some->layer()->setShadowPathRect({{0, 0}, {10, 10}});
        }
        base->addSubview(some);
        EXPECT_EQ(shown(base, 25, 15), 255);
        some->layer()->setMasksToBounds(true);
        EXPECT_EQ(shown(base, 25, 15), 0);
        EXPECT_EQ(shown(base, 15, 15), 255);
        some->layer()->setMasksToBounds(false);
        base->setFrame({{0, 0}, {22, 40}});
        base->setClipsToBounds(true);
        EXPECT_EQ(shown(base, 21, 15), 255);
        EXPECT_EQ(shown(base, 25, 15), 0);
    }
}

TEST(LayerShadow, FadesWithItsLayer) {
    const auto base = window();
    const auto some = view({{10, 10}, {10, 10}}, {1, 0, 0, 1});
    addShadow(*some, 0, {5, 0});
    some->layer()->setShadowPathRect({{0, 0}, {10, 10}});
    some->setAlpha(0.5);
    base->addSubview(some);
    EXPECT_EQ(shown(base, 12, 15), 128);
    EXPECT_EQ(shown(base, 17, 15), 128);
    EXPECT_EQ(shown(base, 22, 15), 128);
    EXPECT_EQ(shown(base, 25, 15), 0);
}

TEST(LayerShadow, OfASubviewIsPartOfWhatFades) {
    const auto base = window();
    const auto group = view({{10, 10}, {1, 1}});
    const auto some = view({{0, 0}, {4, 4}}, {1, 0, 0, 1});
    addShadow(*some, 0, {8, 9});
    group->addSubview(some);
    group->setAlpha(0.5);
    base->addSubview(group);
    EXPECT_EQ(shown(base, 11, 11), 128);
    EXPECT_EQ(shown(base, 21, 22), 128);
    some->layer()->setShadowPathRect({{-20, 1}, {2, 2}});
    EXPECT_EQ(shown(base, 0, 22), 0);
    some->layer()->setShadowOffset({10, 0});
    EXPECT_EQ(shown(base, 0, 11), 128);
    EXPECT_EQ(shown(base, 1, 12), 128);
}

TEST(LayerShadow, ComesFromTheWholeLayerNotFromWhatIsInSight) {
    const auto base = window();
    const auto some = view({{-10, 10}, {10, 10}}, {1, 0, 0, 1});
    addShadow(*some, 0, {15, 0});
    base->addSubview(some);
    EXPECT_EQ(shown(base, 4, 15), 0);
    EXPECT_EQ(shown(base, 5, 15), 255);
    EXPECT_EQ(shown(base, 14, 15), 255);
}

TEST(LayerShadow, OfWhatReachesBeyondTheBounds) {
    const auto base = window();
    const auto some = view({{10, 10}, {2, 2}});
    some->addSubview(view({{0, -5}, {2, 2}}, {1, 0, 0, 1}));
    for (const double x : {-6.0, 8.0}) {
        const auto wide = view({{x, 0}, {4, 2}}, {1, 0, 0, 1});
        wide->setTransform({.scaleX = 2, .translation = {0, 4}});
        some->addSubview(wide);
    }
    addShadow(*some, 0, {0, 20});
    base->addSubview(some);
    EXPECT_EQ(shown(base, 10, 25), 255);
    for (const std::size_t x : {2U, 9U, 16U, 23U}) {
        EXPECT_EQ(shown(base, x, 34), 255) << x;
        EXPECT_EQ(shown(base, x, 35), 255) << x;
    }
    EXPECT_EQ(shown(base, 1, 35), 0);
    EXPECT_EQ(shown(base, 24, 35), 0);
}

TEST(LayerShadow, AbsurdNumbersGiveAPicture) {
    constexpr double kEndless = std::numeric_limits<double>::infinity();
    const double numbers[] = {static_cast<double>(NAN), kEndless, -kEndless, 1e300, -1e300, -7};
    for (const double number : numbers) {
        for (int place = 0; place < 8; ++place) {
            const auto base = window();
            base->setBackgroundColor({0, 0, 1, 1});
            const auto some = view({{10, 10}, {10, 10}}, {1, 0, 0, 1});
            addShadow(*some, 2, {1, 1});
            some->setAlpha(place % 2 == 0 ? 1 : 0.5);
            DesktopLayer::Appearance& appearance = some->desktopLayer()->appearance;
            if (place > 3) {
                appearance.shadowPath = Rect{{0, 0}, {10, 10}};
            }
            double* const fields[] = {&appearance.shadow.opacity, &appearance.shadow.radius,
                                      &appearance.shadow.offset.x, &appearance.shadow.offset.y};
            *fields[place % 4] = number;
            if (place > 5) {
                appearance.shadowPath = Rect{{number, 0}, {number, 10}};
            }
            base->addSubview(some);
            EXPECT_EQ(shown(base, 30, 5), 255) << number << ' ' << place;
            EXPECT_EQ(rendered(*base, 30, 5), 255) << number << ' ' << place;
        }
    }
}

}  // namespace velmoranth::desktop::shadow_test
