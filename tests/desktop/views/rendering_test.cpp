#include "desktop/imaging/image.h"
#include "desktop/views/views.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <memory>
#include <vector>

namespace velmoranth::desktop::rendering_test {

namespace {

using platform::Color;
using platform::ImageRef;
using platform::Rect;

// Premultiplied B, G, R, A.
using Bgra = std::array<std::uint8_t, 4>;
using Row = std::vector<Bgra>;

constexpr Bgra kClear{0, 0, 0, 0};
constexpr Bgra kRed{0, 0, 255, 255};
constexpr Bgra kBlue{255, 0, 0, 255};
constexpr Color kRedColor{1, 0, 0, 1};
constexpr Color kBlueColor{0, 0, 1, 1};

std::shared_ptr<DesktopView> view(const Rect& frame, const Color& color) {
    auto made = std::make_shared<DesktopView>(frame);
    made->setBackgroundColor(color);
    return made;
}

Bgra pixel(const PixelView& pixels, std::size_t x, std::size_t y) {
    const std::uint8_t* const at = pixels.row(y) + x * 4;
    return {at[0], at[1], at[2], at[3]};
}

Row firstRow(const PixelView& pixels) {
    Row row;
    for (std::size_t x = 0; x < pixels.width; ++x) {
        row.push_back(pixel(pixels, x, 0));
    }
    return row;
}

// What renderInContext draws, one pixel a point.
Row rendered(platform::View& some, std::size_t width) {
    const auto context = DesktopGraphicsContext::create({.size = {width, 1}});
    some.layer()->renderInContext(context);
    return firstRow(context->pixels());
}

// What the screen shows.
Row shown(const platform::ViewRef& some, std::size_t width) {
    const auto picture = renderTree(some, {width, 1}, 1);
    return picture ? firstRow(picture->pixels()) : Row();
}

ImageRef image(const Row& pixels) {
    auto data = std::make_shared<platform::Data>();
    for (const Bgra& one : pixels) {
        data->insert(data->end(), one.begin(), one.end());
    }
    return std::make_shared<DesktopImage>(
        DesktopBitmapImage::createPremultiplied(data, {pixels.size(), 1}, pixels.size() * 4), 1,
        ImageDescription::ios13);
}

}  // namespace

TEST(Rendering, BackgroundThenContentsThenSubviewsBackToFront) {
    const auto base = std::make_shared<DesktopImageView>(image({kClear, kRed, kRed, kRed}));
    base->setBackgroundColor({0, 1, 0, 1});
    base->addSubview(view({{2, 0}, {2, 1}}, kBlueColor));
    base->addSubview(view({{3, 0}, {1, 1}}, {0, 0, 0, 1}));
    const Row expected = {{0, 255, 0, 255}, kRed, kBlue, {0, 0, 0, 255}};
    EXPECT_EQ(rendered(*base, 4), expected);
    EXPECT_EQ(shown(base, 4), expected);
}

TEST(Rendering, TheViewsOwnPlaceDoesNotCount) {
    const auto some = view({{50, 60}, {1, 1}}, kRedColor);
    EXPECT_EQ(rendered(*some, 2), (Row{kRed, kClear}));
    EXPECT_EQ(shown(some, 2), (Row{kRed, kClear}));
}

TEST(Rendering, SubviewsAreAtTheirFramesAtEveryDepth) {
    const auto outer = view({{0, 0}, {5, 1}}, platform::kClearColor);
    const auto middle = view({{1, 0}, {4, 1}}, platform::kClearColor);
    outer->addSubview(middle);
    middle->addSubview(view({{2, 0}, {1, 1}}, kRedColor));
    outer->addSubview(view({{4, 0}, {1, 1}}, kBlueColor));
    EXPECT_EQ(rendered(*outer, 5), (Row{kClear, kClear, kClear, kRed, kBlue}));
}

TEST(Rendering, HiddenAndTransparentViewsGoWithTheirSubviews) {
    for (const bool hidden : {true, false}) {
        const auto outer = view({{0, 0}, {2, 1}}, kRedColor);
        const auto middle = view({{0, 0}, {2, 1}}, kBlueColor);
        middle->addSubview(view({{0, 0}, {1, 1}}, kBlueColor));
        outer->addSubview(middle);
        middle->setHidden(hidden);
        middle->setAlpha(hidden ? 1 : 0);
        EXPECT_EQ(rendered(*outer, 2), (Row{kRed, kRed}));
        EXPECT_EQ(shown(outer, 2), (Row{kRed, kRed}));
        middle->setHidden(false);
        middle->setAlpha(1);
        EXPECT_EQ(rendered(*outer, 2), (Row{kBlue, kBlue}));
    }
}

TEST(Rendering, OpacityIsForEachOperationInAContextAndForTheTreeOnTheScreen) {
    const auto base = view({{0, 0}, {2, 1}}, kRedColor);
    base->addSubview(view({{1, 0}, {1, 1}}, kBlueColor));
    base->setAlpha(0.5);
    EXPECT_EQ(rendered(*base, 2), (Row{{0, 0, 128, 128}, {128, 0, 64, 192}}));
    EXPECT_EQ(shown(base, 2), (Row{{0, 0, 128, 128}, {128, 0, 0, 128}}));
}

TEST(Rendering, OpacitiesOfASubtreeMultiply) {
    const auto base = view({{0, 0}, {1, 1}}, platform::kClearColor);
    const auto inner = std::make_shared<DesktopImageView>(image({kRed}));
    inner->setAlpha(0.5);
    base->addSubview(inner);
    base->setAlpha(0.5);
    EXPECT_EQ(rendered(*base, 1), (Row{{0, 0, 64, 64}}));
    EXPECT_EQ(shown(base, 1), (Row{{0, 0, 64, 64}}));
}

TEST(Rendering, ClippingIsForContentsAndSubviews) {
    const auto outer = view({{0, 0}, {4, 1}}, platform::kClearColor);
    const auto middle = view({{1, 0}, {2, 1}}, platform::kClearColor);
    middle->addSubview(view({{-5, 0}, {20, 1}}, kRedColor));
    outer->addSubview(middle);
    EXPECT_EQ(rendered(*outer, 4), (Row{kRed, kRed, kRed, kRed}));
    middle->setClipsToBounds(true);
    EXPECT_TRUE(middle->clipsToBounds());
    EXPECT_EQ(rendered(*outer, 4), (Row{kClear, kRed, kRed, kClear}));
    EXPECT_EQ(shown(outer, 4), (Row{kClear, kRed, kRed, kClear}));
    // The next sibling is not clipped.
    outer->addSubview(view({{3, 0}, {1, 1}}, kBlueColor));
    EXPECT_EQ(rendered(*outer, 4), (Row{kClear, kRed, kRed, kBlue}));
}

TEST(Rendering, RoundCornersClipSubviewsOnlyWithClipping) {
    const auto base = view({{0, 0}, {20, 20}}, platform::kClearColor);
    base->addSubview(view({{0, 0}, {20, 20}}, kRedColor));
    base->desktopLayer()->appearance.cornerRadius = 10;
    EXPECT_EQ(pixel(renderTree(base, {20, 20}, 1)->pixels(), 0, 0), kRed);
    base->setClipsToBounds(true);
    const auto picture = renderTree(base, {20, 20}, 1);
    EXPECT_EQ(pixel(picture->pixels(), 0, 0), kClear);
    EXPECT_EQ(pixel(picture->pixels(), 19, 19), kClear);
    EXPECT_EQ(pixel(picture->pixels(), 10, 10), kRed);
    const auto round = view({{0, 0}, {20, 20}}, kRedColor);
    round->desktopLayer()->appearance.cornerRadius = 10;
    EXPECT_EQ(pixel(renderTree(round, {20, 20}, 1)->pixels(), 0, 0), kClear);
}

TEST(Rendering, AnImageIsStretchedOverTheBounds) {
    const auto some = std::make_shared<DesktopImageView>(Rect{{0, 0}, {6, 1}});
    some->setImage(image({kRed}));
    EXPECT_EQ(rendered(*some, 7), (Row{kRed, kRed, kRed, kRed, kRed, kRed, kClear}));
    some->setImage(image({kRed, kRed, kBlue, kBlue}));
    some->setFrame({{0, 0}, {2, 1}});
    EXPECT_EQ(rendered(*some, 2), (Row{kRed, kBlue}));
}

TEST(Rendering, AViewsShadowLiesBehindItAndFadesWithIt) {
    const auto base = view({{0, 0}, {3, 1}}, platform::kClearColor);
    const auto some = view({{0, 0}, {2, 1}}, kRedColor);
    some->desktopLayer()->appearance.shadow = {.opacity = 1, .radius = 0, .offset = {1, 0}};
    base->addSubview(some);
    EXPECT_EQ(rendered(*base, 3), (Row{kRed, kRed, {0, 0, 0, 255}}));
    EXPECT_EQ(shown(base, 3), (Row{kRed, kRed, {0, 0, 0, 255}}));
    some->setAlpha(0.5);
    EXPECT_EQ(shown(base, 3), (Row{{0, 0, 128, 128}, {0, 0, 128, 128}, {0, 0, 0, 128}}));
}

TEST(Rendering, UpwardsContextsGetTheLayersOwnCoordinates) {
    const auto base = view({{0, 0}, {1, 2}}, kRedColor);
    base->addSubview(view({{0, 1}, {1, 1}}, kBlueColor));
    const auto context = DesktopGraphicsContext::create(
        {.size = {1, 2}, .origin = DesktopGraphicsContext::Origin::bottomLeft});
    base->layer()->renderInContext(context);
    EXPECT_EQ(pixel(context->pixels(), 0, 0), kBlue);
    EXPECT_EQ(pixel(context->pixels(), 0, 1), kRed);
}

TEST(Rendering, LeavesTheContextsStateAsItWas) {
    const auto base = view({{0, 0}, {1, 1}}, kRedColor);
    base->setClipsToBounds(true);
    base->addSubview(view({{3, 3}, {1, 1}}, kRedColor));
    const auto context = DesktopGraphicsContext::create({.size = {2, 1}});
    base->layer()->renderInContext(context);
    context->fillRect({{1, 0}, {1, 1}}, kBlueColor);
    EXPECT_EQ(firstRow(context->pixels()), (Row{kRed, kBlue}));
}

TEST(Rendering, WithoutAContextOrAViewNothingHappens) {
    auto some = view({{0, 0}, {1, 1}}, kRedColor);
    const platform::LayerRef layer = some->layer();
    layer->renderInContext(nullptr);
    some.reset();
    const auto context = DesktopGraphicsContext::create({.size = {1, 1}});
    layer->renderInContext(context);
    EXPECT_EQ(firstRow(context->pixels()), Row{kClear});
    EXPECT_EQ(layer->bounds(), (Rect{{0, 0}, {1, 1}}));
}

TEST(RenderTree, IsAtItsScaleAndNilForTheImpossible) {
    const auto some = view({{0, 0}, {1, 1}}, kRedColor);
    const auto picture = renderTree(some, {3, 2}, 2);
    ASSERT_NE(picture, nullptr);
    EXPECT_EQ(firstRow(picture->pixels()), (Row{kRed, kRed, kClear}));
    EXPECT_EQ(renderTree(nullptr, {3, 2}, 2), nullptr);
    EXPECT_EQ(renderTree(some, {0, 2}, 2), nullptr);
    EXPECT_EQ(renderTree(some, {3, 2}, 0), nullptr);
    EXPECT_EQ(renderTree(some, {kMaxBitmapSide, kMaxBitmapSide}, 2), nullptr);
}

TEST(LabelInATree, DrawsItsTextInItsBoundsTimesItsOpacity) {
    const auto label = std::make_shared<DesktopLabel>(
        "HHH", TextStyle{.size = 20, .color = {1, 0, 0, 1}, .alignment = TextAlignment::center});
    label->setFrame({{0, 0}, {80, 30}});
    const auto greatest = [&] {
        const auto picture = renderTree(label, {80, 30}, 1);
        std::uint8_t alpha = 0;
        for (std::size_t y = 0; y < 30; ++y) {
            for (std::size_t x = 0; x < 80; ++x) {
                alpha = std::max(alpha, pixel(picture->pixels(), x, y)[3]);
            }
        }
        return alpha;
    };
    EXPECT_GT(greatest(), 240);
    label->setAlpha(0.5);
    EXPECT_GT(greatest(), 110);
    EXPECT_LE(greatest(), 128);
    label->setText("");
    EXPECT_EQ(greatest(), 0);
}

}  // namespace velmoranth::desktop::rendering_test
