#include "imaging/bitmap_functions.h"

#include "desktop/imaging/data_provider.h"
#include "platform/platform.h"
#include "tests/support/replaced_services.h"

#include "icon_effects_fixture.h"

#include <cmath>
#include <limits>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace velmoranth::tests::bitmap_functions_test {

using imaging::CreateGradientImage;
using imaging::IconEffects;
using imaging::MyCreateBitmapContext;
using platform::BitmapImageRef;
using platform::ImageRef;
using platform::ViewRef;

namespace {

// The gradient's gray in a row counted from the top: black at the bottom, at pixel centres.
unsigned gradientGray(std::size_t row, std::size_t height) {
    const double fromBottom = static_cast<double>(height - 1 - row) + 0.5;
    return static_cast<unsigned>(std::lround(255 * fromBottom / static_cast<double>(height)));
}

}  // namespace

class GradientImage : public IconEffectsOnDevice {};

TEST_F(GradientImage, IsGrayWithoutAlphaAndBlackAtTheBottom) {
    for (const auto& [width, height] :
         {std::pair<std::int32_t, std::int32_t>{1, 1}, {1, 2}, {5, 7}, {1, 60}, {3, 600}}) {
        const BitmapImageRef image = CreateGradientImage(width, height);
        ASSERT_NE(image, nullptr);
        const platform::BitmapLayout& layout = image->layout();
        EXPECT_EQ(layout.width, static_cast<std::size_t>(width));
        EXPECT_EQ(layout.height, static_cast<std::size_t>(height));
        EXPECT_EQ(layout.bitsPerComponent, 8U);
        EXPECT_EQ(layout.bitsPerPixel, 8U);
        EXPECT_EQ(layout.colorSpace, platform::ColorSpace::deviceGray);
        EXPECT_EQ(layout.alphaInfo, platform::AlphaInfo::none);
        EXPECT_FALSE(image->isMask());
        const platform::Data& samples = *desktop::samplesOf(image->dataProvider());
        for (std::size_t y = 0; y < layout.height; ++y) {
            for (std::size_t x = 0; x < layout.width; ++x) {
                ASSERT_EQ(samples.at(y * layout.bytesPerRow + x), gradientGray(y, layout.height))
                    << x << ", " << y << " of " << height;
            }
        }
    }
}

TEST_F(GradientImage, IsDrawnInAGrayContextWithTwoEvenStopsFromTheBottomUpAndOnBeyondItsEnd) {
    ASSERT_NE(CreateGradientImage(4, 5), nullptr);
    const std::vector<std::string> expected = {
        "CGBitmapContextCreate 4 5 8 0 0 0",
        "CGGradientCreateWithColorComponents 0 (0, 1, 1, 1) nil",
        "CGContextDrawLinearGradient __NSCFType (0, 0) (0, 5) 2",
        "CGBitmapContextCreateImage __NSCFType"};
    EXPECT_EQ(device.journal.lines(), expected);
}

TEST_F(GradientImage, SizesThatAreNotPositiveGiveNil) {
    constexpr std::int32_t kLeast = std::numeric_limits<std::int32_t>::min();
    EXPECT_EQ(CreateGradientImage(0, 5), nullptr);
    EXPECT_EQ(CreateGradientImage(5, 0), nullptr);
    EXPECT_EQ(CreateGradientImage(-1, 5), nullptr);
    EXPECT_EQ(CreateGradientImage(kLeast, kLeast), nullptr);
}

class BitmapContext : public IconEffectsOnDevice {};

TEST_F(BitmapContext, IsPremultipliedBgraAndClear) {
    const platform::GraphicsContextRef context = MyCreateBitmapContext(7, 3);
    ASSERT_NE(context, nullptr);
    EXPECT_EQ(device.journal.lines(),
              std::vector<std::string>{"CGBitmapContextCreate 7 3 8 0 1 8194"});
    const BitmapImageRef image = context->createImage();
    ASSERT_NE(image, nullptr);
    const platform::BitmapLayout& layout = image->layout();
    EXPECT_EQ(layout.width, 7U);
    EXPECT_EQ(layout.height, 3U);
    EXPECT_EQ(layout.bitsPerComponent, 8U);
    EXPECT_EQ(layout.bitsPerPixel, 32U);
    EXPECT_EQ(layout.colorSpace, platform::ColorSpace::deviceRGB);
    EXPECT_EQ(layout.alphaInfo, platform::AlphaInfo::premultipliedFirst);
    EXPECT_EQ(layout.byteOrder, platform::ByteOrder::little32);
    EXPECT_EQ(drawnPixels(image), solid(7, 3, {0, 0, 0, 0}));
}

TEST_F(BitmapContext, SizesThatAreNotPositiveGiveNil) {
    EXPECT_EQ(MyCreateBitmapContext(0, 3), nullptr);
    EXPECT_EQ(MyCreateBitmapContext(3, -3), nullptr);
}

class ReflectedImage : public IconEffectsOnDevice {
  protected:
    static constexpr std::size_t kWidth = 8;
    static constexpr std::size_t kHeight = 6;

    // A view of 8 × 6 points, a pixel each.
    [[nodiscard]] ViewRef view() const {
        return platform::platform().views.imageViewWithImage(device.image(pixels, 1));
    }

    // Row r from the top is the view's row r from its bottom, the more faded the higher r is.
    void check(std::size_t height) {
        const ImageRef image =
            IconEffects::reflectedImageWithHeight(view(), static_cast<unsigned>(height));
        ASSERT_NE(image, nullptr);
        EXPECT_EQ(image->scale(), 1);
        const Pixels drawn = drawnPixels(image);
        ASSERT_EQ(drawn.width, kWidth);
        ASSERT_EQ(drawn.height, height);
        for (std::size_t y = 0; y < height; ++y) {
            for (std::size_t x = 0; x < kWidth; ++x) {
                const Pixel seen = y < kHeight ? pixels.at(x, kHeight - 1 - y) : Pixel{0, 0, 0, 0};
                ASSERT_EQ(drawn.at(x, y), times(seen, 255 - gradientGray(y, height)))
                    << x << ", " << y << " of " << height;
            }
        }
    }

    Pixels pixels = pattern(kWidth, kHeight);
};

TEST_F(ReflectedImage, TheLowestRowsFlippedAndFading) {
    check(3);
}

TEST_F(ReflectedImage, OneRow) {
    check(1);
}

TEST_F(ReflectedImage, TheWholeView) {
    check(kHeight);
}

TEST_F(ReflectedImage, BeyondTheViewThereIsNothing) {
    check(kHeight + 3);
}

TEST_F(ReflectedImage, HeightZeroIsNilAtOnce) {
    const ViewRef some = view();
    device.journal.clear();
    EXPECT_EQ(IconEffects::reflectedImageWithHeight(some, 0), nullptr);
    EXPECT_TRUE(device.journal.lines().empty());
}

TEST_F(ReflectedImage, UsesTheTwoBitmapFunctions) {
    const ViewRef some = view();
    device.journal.clear();
    ASSERT_NE(IconEffects::reflectedImageWithHeight(some, 4), nullptr);
    const std::vector<std::string> expected = {
        "CGBitmapContextCreate 8 4 8 0 1 8194",
        "CGContextTranslateCTM __NSCFType 0 -2",
        "-[CALayer renderInContext:] UIImageView __NSCFType",
        "CGBitmapContextCreateImage __NSCFType",
        "CGBitmapContextCreate 1 4 8 0 0 0",
        "CGGradientCreateWithColorComponents 0 (0, 1, 1, 1) nil",
        "CGContextDrawLinearGradient __NSCFType (0, 0) (0, 4) 2",
        "CGBitmapContextCreateImage __NSCFType",
        "CGImageCreateWithMask 8×4 pixels 1×4 pixels",
        "+[UIImage imageWithCGImage:] 8×4 pixels"};
    EXPECT_EQ(device.journal.lines(), expected);
}

TEST_F(ReflectedImage, WidthIsCutToWholePixels) {
    const ViewRef some = view();
    some->setFrame({{3, 4}, {5.9, 6}});
    device.journal.clear();
    const ImageRef image = IconEffects::reflectedImageWithHeight(some, 2);
    EXPECT_EQ(device.journal.lines().front(), "CGBitmapContextCreate 5 2 8 0 1 8194");
    EXPECT_EQ(image->size(), (platform::Size{5, 2}));
}

TEST_F(ReflectedImage, ShowsSubviews) {
    const ViewRef some = view();
    const ViewRef subview = platform::platform().views.imageViewWithFrame({{2, 5}, {3, 1}});
    subview->setBackgroundColor({1, 0, 0, 1});
    some->addSubview(subview);
    const Pixels drawn = drawnPixels(IconEffects::reflectedImageWithHeight(some, 2));
    EXPECT_EQ(drawn.at(2, 0), times({255, 0, 0, 255}, 255 - gradientGray(0, 2)));
    EXPECT_EQ(drawn.at(4, 0), times({255, 0, 0, 255}, 255 - gradientGray(0, 2)));
    EXPECT_EQ(drawn.at(5, 0), times(pixels.at(5, 5), 255 - gradientGray(0, 2)));
    EXPECT_EQ(drawn.at(2, 1), times(pixels.at(2, 4), 255 - gradientGray(1, 2)));
}

TEST_F(ReflectedImage, ViewsWithoutWidthAndAbsurdHeightsGiveNil) {
    const ViewRef empty = platform::platform().views.imageView();
    EXPECT_EQ(IconEffects::reflectedImageWithHeight(empty, 5), nullptr);
    EXPECT_EQ(IconEffects::reflectedImageWithHeight(nullptr, 5), nullptr);
    EXPECT_EQ(IconEffects::reflectedImageWithHeight(view(), 0xFFFFFFFFU), nullptr);
    EXPECT_EQ(IconEffects::reflectedImageWithHeight(view(), 0x7FFFFFFFU), nullptr);
    const ViewRef wide = platform::platform().views.imageViewWithFrame({{0, 0}, {1e300, 4}});
    EXPECT_EQ(IconEffects::reflectedImageWithHeight(wide, 4), nullptr);
}

}  // namespace velmoranth::tests::bitmap_functions_test
