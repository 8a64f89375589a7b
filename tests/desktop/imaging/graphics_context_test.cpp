#include "desktop/imaging/graphics_context.h"

#include "desktop/imaging/gradient.h"

#include "bitmaps.h"
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

namespace velmoranth::desktop::test_images::graphics_context_test {

namespace {

using Content = DesktopGraphicsContext::Content;
using Origin = DesktopGraphicsContext::Origin;
using platform::Color;
using platform::ColorSpace;
using platform::Rect;

constexpr Color kRedColor{1, 0, 0, 1};
constexpr Color kBlueColor{0, 0, 1, 1};

std::vector<Bgra> row(DesktopGraphicsContext& context, std::size_t y) {
    const std::vector<Bgra> all = pixelsOf(context.pixels());
    const auto width = static_cast<std::ptrdiff_t>(context.size().width);
    const auto start = all.begin() + static_cast<std::ptrdiff_t>(y) * width;
    return {start, start + width};
}

std::shared_ptr<DesktopGradient> blackToWhite() {
    return DesktopGradient::create(ColorSpace::deviceGray, {0, 1, 1, 1}, std::nullopt);
}

}  // namespace

TEST(GraphicsContext, ImpossibleOnesAreNotMade) {
    EXPECT_EQ(context(0, 1), nullptr);
    EXPECT_EQ(context(1, 0), nullptr);
    EXPECT_EQ(context(kMaxBitmapSide + 1, 1), nullptr);
    EXPECT_EQ(context(kMaxBitmapSide, kMaxBitmapSide), nullptr);
    for (const double scale :
         {0.0, -1.0, static_cast<double>(NAN), static_cast<double>(INFINITY)}) {
        EXPECT_EQ(context(1, 1, scale), nullptr) << scale;
    }
}

TEST(GraphicsContext, StartsClearOrBlack) {
    EXPECT_EQ(pixelsOf(context(2, 2)->createImage()), flat(4, kClear));
    const auto opaque = context(2, 2, 1, Content::opaque);
    EXPECT_EQ(pixelsOf(opaque->createImage()), flat(4, kBlack));
    EXPECT_EQ(opaque->createImage()->layout().alphaInfo, platform::AlphaInfo::noneSkipFirst);
    EXPECT_EQ(pixelsOf(context(2, 2, 1, Content::gray)->createImage()), flat(4, kBlack));
}

TEST(GraphicsContext, SnapshotsStayAsTheyAre) {
    const auto target = context(2, 1);
    target->fillRect({{0, 0}, {1, 1}}, kRedColor);
    const auto first = target->createImage();
    target->fillRect({{1, 0}, {1, 1}}, kBlueColor);
    const auto second = target->createImage();
    const auto third = target->createImage();
    target->mutablePixels().data[0] = 77;
    target->drawImage(bitmap(1, 1, {kBlue}), {{0, 0}, {1, 1}});
    EXPECT_EQ(pixelsOf(first), (std::vector<Bgra>{kRed, kClear}));
    EXPECT_EQ(pixelsOf(second), (std::vector<Bgra>{kRed, kBlue}));
    EXPECT_EQ(pixelsOf(third), (std::vector<Bgra>{kRed, kBlue}));
    EXPECT_EQ(pixelsOf(target->createImage()), (std::vector<Bgra>{kBlue, kBlue}));
}

TEST(GraphicsContext, SnapshotsOutliveTheContext) {
    auto target = context(1, 1);
    target->fillRect({{0, 0}, {1, 1}}, kRedColor);
    const auto image = target->createImage();
    target.reset();
    EXPECT_EQ(pixelsOf(image), flat(1, kRed));
}

TEST(GraphicsContext, AnImageOfTheSameSizeIsCopied) {
    const std::vector<Bgra> pixels = distinct(6 * 4);
    const auto target = context(6, 4, 2);
    const auto image = bitmap(6, 4, pixels);
    target->drawImage(image, {{0, 0}, {3, 2}});
    EXPECT_EQ(pixelsOf(target->pixels()), pixels);
    target->fillRect({{0, 0}, {3, 2}}, kRedColor);  // not in the image's own memory
    EXPECT_EQ(pixelsOf(image), pixels);
}

TEST(GraphicsContext, AnImageAtWholePixelsIsCopiedAndCut) {
    const std::vector<Bgra> pixels = distinct(3 * 3);
    const auto target = context(4, 4);
    target->drawImage(bitmap(3, 3, pixels), {{2, -1}, {3, 3}});
    std::vector<Bgra> expected = flat(16, kClear);
    expected[2] = pixels[3];
    expected[3] = pixels[4];
    expected[6] = pixels[6];
    expected[7] = pixels[7];
    EXPECT_EQ(pixelsOf(target->pixels()), expected);
}

TEST(GraphicsContext, AThirdOfAPointAtScaleThreeIsAPixel) {
    const std::vector<Bgra> pixels = distinct(4);
    const auto target = context(4, 4, 3);
    target->drawImage(bitmap(2, 2, pixels), {{1.0 / 3, 1.0 / 3}, {2.0 / 3, 2.0 / 3}});
    EXPECT_EQ(at(*target, 1, 1), pixels[0]);
    EXPECT_EQ(at(*target, 2, 1), pixels[1]);
    EXPECT_EQ(at(*target, 1, 2), pixels[2]);
    EXPECT_EQ(at(*target, 2, 2), pixels[3]);
    EXPECT_EQ(at(*target, 0, 0), kClear);
    EXPECT_EQ(at(*target, 3, 3), kClear);
}

TEST(GraphicsContext, DrawsOverWhatIsThere) {
    const auto target = context(1, 1);
    target->fillRect({{0, 0}, {1, 1}}, kBlueColor);
    target->drawImage(bitmap(1, 1, {{0, 0, 128, 128}}), {{0, 0}, {1, 1}});
    EXPECT_EQ(at(*target, 0, 0), (Bgra{127, 0, 128, 255}));
    target->drawImage(bitmap(1, 1, {{0, 255, 0, 255}}), {{0, 0}, {1, 1}}, 0.2);
    EXPECT_EQ(at(*target, 0, 0), (Bgra{102, 51, 102, 255}));
}

TEST(GraphicsContext, OpacityThatIsNoNumberDrawsNothing) {
    const auto target = context(1, 1);
    const auto image = bitmap(1, 1, {kRed});
    for (const double opacity : {0.0, -1.0, static_cast<double>(NAN)}) {
        target->drawImage(image, {{0, 0}, {1, 1}}, opacity);
        EXPECT_EQ(at(*target, 0, 0), kClear) << opacity;
    }
    target->drawImage(image, {{0, 0}, {1, 1}}, 7);
    EXPECT_EQ(at(*target, 0, 0), kRed);
}

TEST(GraphicsContext, ShrinkingAveragesAreas) {
    const auto target = context(2, 1);
    target->drawImage(bitmap(4, 1, {{0, 0, 0, 255}, {100, 0, 0, 255}, {20, 0, 0, 100}, kClear}),
                      {{0, 0}, {2, 1}});
    EXPECT_EQ(row(*target, 0), (std::vector<Bgra>{{50, 0, 0, 255}, {10, 0, 0, 50}}));
    const auto uneven = context(2, 1);
    uneven->drawImage(bitmap(3, 1, {{30, 0, 0, 255}, {60, 0, 0, 255}, {90, 0, 0, 255}}),
                      {{0, 0}, {2, 1}});
    EXPECT_EQ(row(*uneven, 0), (std::vector<Bgra>{{40, 0, 0, 255}, {80, 0, 0, 255}}));
}

TEST(GraphicsContext, AFlatImageStaysFlatAtEverySize) {
    const Bgra color{13, 101, 200, 201};
    for (const std::size_t source : {1U, 2U, 3U, 7U, 60U, 257U}) {
        for (const std::size_t size : {1U, 2U, 5U, 59U, 64U, 100U}) {
            const auto target = context(size, size);
            const auto points = static_cast<double>(size);
            target->drawImage(bitmap(source, source, flat(source * source, color)),
                              {{0, 0}, {points, points}});
            ASSERT_EQ(pixelsOf(target->pixels()), flat(size * size, color))
                << source << " " << size;
        }
    }
}

TEST(GraphicsContext, EnlargingKeepsTheEdgesOpaqueAndIsSymmetric) {
    const auto target = context(8, 2);
    target->drawImage(bitmap(2, 1, {{0, 0, 0, 255}, {255, 255, 255, 255}}), {{0, 0}, {8, 2}});
    const std::vector<Bgra> pixels = row(*target, 0);
    EXPECT_EQ(row(*target, 1), pixels);
    EXPECT_EQ(pixels.front(), kBlack);
    EXPECT_EQ(pixels.back(), (Bgra{255, 255, 255, 255}));
    for (std::size_t x = 0; x < 8; ++x) {
        EXPECT_EQ(pixels[x][3], 255);
        EXPECT_NEAR(pixels[x][0] + pixels[7 - x][0], 255, 1);
        EXPECT_TRUE(x == 0 || pixels[x][0] >= pixels[x - 1][0]);
    }
}

TEST(GraphicsContext, EnlargingNeverPutsColorAboveAlpha) {
    const auto target = context(9, 9);
    target->drawImage(bitmap(3, 3,
                             {kClear,
                              kRed,
                              kClear,
                              kRed,
                              kClear,
                              {0, 0, 60, 60},
                              kClear,
                              kRed,
                              {255, 255, 255, 255}}),
                      {{0, 0}, {9, 9}});
    for (const Bgra& pixel : pixelsOf(target->pixels())) {
        EXPECT_LE(pixel[0], pixel[3]);
        EXPECT_LE(pixel[1], pixel[3]);
        EXPECT_LE(pixel[2], pixel[3]);
    }
}

TEST(GraphicsContext, AnImageAtAFractionCoversItsEdgesInPart) {
    const auto target = context(3, 1);
    target->drawImage(bitmap(2, 1, flat(2, kRed)), {{0.25, 0}, {2, 1}});
    EXPECT_EQ(row(*target, 0), (std::vector<Bgra>{{0, 0, 191, 191}, kRed, {0, 0, 64, 64}}));
}

TEST(GraphicsContext, YUpwardsFlipsImagesAndMovesFromTheBottom) {
    const std::vector<Bgra> pixels = distinct(4);
    const auto target = context(2, 4, 1, Content::premultiplied, Origin::bottomLeft);
    target->drawImage(bitmap(2, 2, pixels), {{0, 0}, {2, 2}});
    EXPECT_EQ(row(*target, 3), (std::vector<Bgra>{pixels[0], pixels[1]}));
    EXPECT_EQ(row(*target, 2), (std::vector<Bgra>{pixels[2], pixels[3]}));
    EXPECT_EQ(row(*target, 1), flat(2, kClear));
    target->translateCTM(1, 2);
    target->fillRect({{0, 0}, {1, 1}}, kRedColor);
    EXPECT_EQ(row(*target, 1), (std::vector<Bgra>{kClear, kRed}));
    EXPECT_EQ(row(*target, 0), flat(2, kClear));
}

TEST(GraphicsContext, TranslationsAddUpInPoints) {
    const auto target = context(6, 6, 2);
    target->translateCTM(1, 0.5);
    target->translateCTM(0.5, 1);
    target->fillRect({{0, 0}, {0.5, 0.5}}, kRedColor);
    EXPECT_EQ(at(*target, 3, 3), kRed);
    target->translateCTM(NAN, 0);
    target->translateCTM(0, INFINITY);
    target->fillRect({{0.5, 0}, {0.5, 0.5}}, kBlueColor);
    EXPECT_EQ(at(*target, 4, 3), kBlue);
}

TEST(GraphicsContext, StateIsSavedAndRestored) {
    const auto target = context(3, 1);
    target->restoreState();
    target->saveState();
    target->translateCTM(1, 0);
    target->clipToRect({{0, 0}, {1, 1}});
    target->saveState();
    target->translateCTM(-1, 0);
    target->fillRect({{0, 0}, {3, 1}}, kRedColor);
    target->restoreState();
    EXPECT_EQ(row(*target, 0), (std::vector<Bgra>{kClear, kRed, kClear}));
    target->restoreState();
    target->fillRect({{0, 0}, {1, 1}}, kBlueColor);
    target->fillRect({{2, 0}, {1, 1}}, kBlueColor);
    EXPECT_EQ(row(*target, 0), (std::vector<Bgra>{kBlue, kRed, kBlue}));
}

TEST(GraphicsContext, FillsHaveSmoothEdgesBetweenPixels) {
    const auto target = context(3, 2);
    target->fillRect({{0.5, 0}, {1.75, 1.5}}, kRedColor);
    EXPECT_EQ(row(*target, 0), (std::vector<Bgra>{{0, 0, 128, 128}, kRed, {0, 0, 64, 64}}));
    EXPECT_EQ(row(*target, 1),
              (std::vector<Bgra>{{0, 0, 64, 64}, {0, 0, 128, 128}, {0, 0, 32, 32}}));
}

TEST(GraphicsContext, FillsMixByAlpha) {
    const auto target = context(1, 1);
    target->fillRect({{0, 0}, {1, 1}}, {1, 0.5, 0, 0.5});
    EXPECT_EQ(at(*target, 0, 0), (Bgra{0, 64, 128, 128}));
    target->fillRect({{0, 0}, {1, 1}}, {9, -3, 0, 2});
    EXPECT_EQ(at(*target, 0, 0), kRed);
}

TEST(GraphicsContext, EmptyAndAbsurdRectanglesDrawNothing) {
    constexpr double kNone = NAN;
    constexpr double kEndless = std::numeric_limits<double>::infinity();
    constexpr double kGreatest = std::numeric_limits<double>::max();
    const auto target = context(2, 2);
    const auto image = bitmap(1, 1, {kRed});
    for (const Rect& rect :
         {Rect{{0, 0}, {0, 1}}, Rect{{0, 0}, {1, 0}}, Rect{{1, 1}, {-1, -1}},
          Rect{{kNone, 0}, {1, 1}}, Rect{{0, 0}, {kNone, 1}}, Rect{{0, 0}, {kEndless, 1}},
          Rect{{-kEndless, 0}, {kEndless, 1}}, Rect{{kGreatest, 0}, {kGreatest, 1}},
          Rect{{5, 5}, {9, 9}}, Rect{{-9, -9}, {9, 9}}}) {
        target->fillRect(rect, kRedColor);
        target->fillRect(rect, kRedColor, 1);
        target->drawImage(image, rect);
    }
    target->fillRect({{0, 0}, {2, 2}}, platform::kClearColor);
    target->fillRect({{0, 0}, {2, 2}}, {1, 1, 1, NAN});
    target->drawImage(nullptr, {{0, 0}, {2, 2}});
    EXPECT_EQ(pixelsOf(target->pixels()), flat(4, kClear));
}

TEST(GraphicsContext, AHugeRectangleCoversWhatItCovers) {
    for (const double radius : {0.0, 5.0}) {
        const auto target = context(3, 3);
        target->fillRect({{-9e6, -9e6}, {9e6 + 2, 9e6 + 1}}, kRedColor, radius == 0 ? 0 : 1e-3);
        EXPECT_EQ(row(*target, 0), (std::vector<Bgra>{kRed, kRed, kClear})) << radius;
        EXPECT_EQ(row(*target, 1), flat(3, kClear)) << radius;
    }
}

TEST(GraphicsContext, ClipsNarrow) {
    const auto target = context(4, 1);
    target->clipToRect({{0, 0}, {3, 1}});
    target->clipToRect({{1, 0}, {3, 1}});
    target->fillRect({{0, 0}, {4, 1}}, kRedColor);
    EXPECT_EQ(row(*target, 0), (std::vector<Bgra>{kClear, kRed, kRed, kClear}));
    target->clipToRect({{3, 0}, {1, 1}});
    target->fillRect({{0, 0}, {4, 1}}, kBlueColor);
    target->drawImage(bitmap(4, 1, flat(4, kBlue)), {{0, 0}, {4, 1}});
    target->drawLinearGradient(blackToWhite(), {0, 0}, {4, 0}, 3);
    EXPECT_EQ(row(*target, 0), (std::vector<Bgra>{kClear, kRed, kRed, kClear}));
}

TEST(GraphicsContext, AClipBetweenPixelsIsSmoothForAllThatIsDrawn) {
    const std::vector<Bgra> expected = {{0, 0, 128, 128}, kRed, {0, 0, 64, 64}};
    const auto clipped = [] {
        const auto target = context(3, 1);
        target->clipToRect({{0.5, 0}, {1.75, 1}});
        return target;
    };
    const auto filled = clipped();
    filled->fillRect({{0, 0}, {3, 1}}, kRedColor);
    EXPECT_EQ(row(*filled, 0), expected);
    const auto copied = clipped();
    copied->drawImage(bitmap(3, 1, flat(3, kRed)), {{0, 0}, {3, 1}});
    EXPECT_EQ(row(*copied, 0), expected);
    const auto stretched = clipped();
    stretched->drawImage(bitmap(1, 1, {kRed}), {{0, 0}, {3, 1}});
    EXPECT_EQ(row(*stretched, 0), expected);
    const auto faded = clipped();
    faded->drawLinearGradient(
        DesktopGradient::create(ColorSpace::deviceRGB, {1, 0, 0, 1, 1, 0, 0, 1}, std::nullopt),
        {0, 0}, {3, 0}, 0);
    EXPECT_EQ(row(*faded, 0), expected);
}

TEST(GraphicsContext, RoundClipsAndFillsMeet) {
    const auto filled = context(20, 20, 2);
    filled->fillRect({{0, 0}, {10, 10}}, kRedColor, 4);
    const auto clipped = context(20, 20, 2);
    clipped->clipToRect({{0, 0}, {10, 10}}, 4);
    clipped->fillRect({{0, 0}, {10, 10}}, kRedColor);
    EXPECT_EQ(pixelsOf(filled->pixels()), pixelsOf(clipped->pixels()));
    EXPECT_EQ(at(*filled, 0, 0), kClear);
    EXPECT_EQ(at(*filled, 10, 0), kRed);
    EXPECT_EQ(at(*filled, 0, 10), kRed);
    // A second clip does not open the corners again.
    clipped->clipToRect({{0, 0}, {5, 10}});
    clipped->fillRect({{0, 0}, {10, 10}}, kBlueColor);
    EXPECT_EQ(at(*clipped, 0, 0), kClear);
    EXPECT_EQ(at(*clipped, 4, 4), kBlue);
    EXPECT_EQ(at(*clipped, 12, 10), kRed);
}

TEST(GraphicsContext, GradientGoesAlongItsLineAtPixelCentres) {
    const auto target = context(4, 1);
    target->drawLinearGradient(blackToWhite(), {0, 0}, {4, 0}, 0);
    EXPECT_EQ(
        row(*target, 0),
        (std::vector<Bgra>{
            {32, 32, 32, 255}, {96, 96, 96, 255}, {159, 159, 159, 255}, {223, 223, 223, 255}}));
    const auto upwards = context(1, 2, 1, Content::premultiplied, Origin::bottomLeft);
    upwards->drawLinearGradient(blackToWhite(), {0, 0}, {0, 2}, 0);
    EXPECT_EQ(at(*upwards, 0, 1)[0], 64);
    EXPECT_EQ(at(*upwards, 0, 0)[0], 191);
}

TEST(GraphicsContext, GradientGoesOnWhereItsOptionsSay) {
    const Bgra white{255, 255, 255, 255};
    const Bgra middle{128, 128, 128, 255};
    const std::vector<Bgra> expected[] = {{kClear, middle, kClear},
                                          {kBlack, middle, kClear},
                                          {kClear, middle, white},
                                          {kBlack, middle, white}};
    for (std::uint32_t options = 0; options < 4; ++options) {
        const auto target = context(3, 1);
        target->drawLinearGradient(blackToWhite(), {1, 0}, {2, 0}, options);
        EXPECT_EQ(row(*target, 0), expected[options]) << options;
    }
}

TEST(GraphicsContext, GradientsOfNoLengthAndNilDrawNothing) {
    const auto target = context(2, 1);
    target->drawLinearGradient(nullptr, {0, 0}, {2, 0}, 3);
    target->drawLinearGradient(blackToWhite(), {1, 0}, {1, 0}, 3);
    target->drawLinearGradient(blackToWhite(), {NAN, 0}, {1, 0}, 3);
    target->drawLinearGradient(blackToWhite(), {0, 0}, {1e200, 0}, 3);
    EXPECT_EQ(row(*target, 0), flat(2, kClear));
}

TEST(GraphicsContext, GradientStopsLieWhereTheirLocationsSay) {
    const auto gradient = DesktopGradient::create(ColorSpace::deviceRGB, {1, 0, 0, 1, 0, 0, 1, 1},
                                                  std::vector<double>{0.75, 0.25});
    ASSERT_NE(gradient, nullptr);
    EXPECT_EQ(gradient->colorAt(0), (Color{0, 0, 1, 1}));
    EXPECT_EQ(gradient->colorAt(0.5), (Color{0.5, 0, 0.5, 1}));
    EXPECT_EQ(gradient->colorAt(1), (Color{1, 0, 0, 1}));
    const auto three =
        DesktopGradient::create(ColorSpace::deviceGray, {0, 1, 1, 1, 0, 0}, std::nullopt);
    EXPECT_EQ(three->colorAt(0.5), (Color{1, 1, 1, 1}));
    EXPECT_EQ(three->colorAt(0.75), (Color{0.5, 0.5, 0.5, 0.5}));
}

}  // namespace velmoranth::desktop::test_images::graphics_context_test
