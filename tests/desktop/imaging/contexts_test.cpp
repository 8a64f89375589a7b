// Bitmap contexts, gradients and drawing images, against values from the rules.
#include "desktop/imaging/core_graphics.h"
#include "desktop/imaging/data_provider.h"
#include "desktop/imaging/graphics_context.h"
#include "desktop/imaging/image_contexts.h"
#include "desktop/imaging/images.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

namespace velmoranth::desktop::contexts_test {
namespace {

using platform::ColorSpace;
using platform::Data;

Data noise(std::size_t pixels) {
    Data bytes(pixels * 4);
    for (std::size_t i = 0; i < pixels; ++i) {
        const std::size_t alpha = (i * 53) % 256;
        for (std::size_t c = 0; c < 3; ++c) {
            bytes[i * 4 + c] = static_cast<std::uint8_t>((i * (7 + c)) % (alpha + 1));
        }
        bytes[i * 4 + 3] = static_cast<std::uint8_t>(alpha);
    }
    return bytes;
}

std::shared_ptr<DesktopBitmapImage> bitmapOf(Data bytes, std::size_t width, std::size_t height) {
    return DesktopBitmapImage::createPremultiplied(std::make_shared<const Data>(std::move(bytes)),
                                                   {width, height}, width * 4);
}

const std::uint8_t* at(const platform::BitmapImageRef& image, std::size_t x, std::size_t y) {
    return DesktopBitmapImage::of(image)->pixels().row(y) + x * 4;
}

TEST(BitmapContext, SupportsGrayAndPremultipliedAlone) {
    DesktopCoreGraphics graphics;
    const auto make = [&](std::int64_t w, std::int64_t h, std::size_t bits, std::size_t row,
                          ColorSpace space, std::uint32_t info) {
        return graphics.bitmapContextCreate(w, h, bits, row, space, info) != nullptr;
    };
    EXPECT_TRUE(make(3, 2, 8, 0, ColorSpace::deviceRGB, 8194));
    EXPECT_TRUE(make(3, 2, 8, 0, ColorSpace::deviceGray, 0));
    EXPECT_FALSE(make(3, 2, 8, 0, ColorSpace::deviceRGB, 3));
    EXPECT_FALSE(make(3, 2, 8, 0, ColorSpace::deviceGray, 8194));
    EXPECT_FALSE(make(3, 2, 16, 0, ColorSpace::deviceRGB, 8194));
    EXPECT_FALSE(make(0, 2, 8, 0, ColorSpace::deviceRGB, 8194));
    EXPECT_FALSE(make(3, -2, 8, 0, ColorSpace::deviceRGB, 8194));
    EXPECT_FALSE(make(INT64_MAX, INT64_MAX, 8, 0, ColorSpace::deviceRGB, 8194));
    EXPECT_FALSE(make(16384, 16384, 8, 0, ColorSpace::deviceRGB, 8194)) << "1 GiB";
}

TEST(Gradient, EveryRowOfAGrayContextFollowsTheRule) {
    DesktopCoreGraphics graphics;
    for (const std::size_t height : {1U, 2U, 7U, 60U, 255U, 1000U}) {
        const auto context = graphics.bitmapContextCreate(1, static_cast<std::int64_t>(height), 8,
                                                          0, ColorSpace::deviceGray, 0);
        const auto gradient = graphics.gradientCreateWithColorComponents(
            ColorSpace::deviceGray, {0, 1, 1, 1}, std::nullopt);
        context->drawLinearGradient(gradient, {0, 0}, {0, static_cast<double>(height)},
                                    platform::kGradientDrawsAfterEndLocation);
        const auto image = context->createImage();
        ASSERT_NE(image, nullptr);
        EXPECT_EQ(image->layout().colorSpace, ColorSpace::deviceGray);
        EXPECT_EQ(image->layout().alphaInfo, platform::AlphaInfo::none);
        const Samples bytes = samplesOf(image->dataProvider());
        for (std::size_t y = 0; y < height; ++y) {
            // The top row of memory is the farthest from the origin.
            const double t =
                (static_cast<double>(height - 1 - y) + 0.5) / static_cast<double>(height);
            ASSERT_EQ((*bytes)[y * image->layout().bytesPerRow], std::lround(t * 255)) << y;
        }
    }
}

TEST(Gradient, ASideWithoutItsOptionStaysUntouched) {
    DesktopCoreGraphics graphics;
    const auto gradient = graphics.gradientCreateWithColorComponents(
        ColorSpace::deviceRGB, {1, 0, 0, 1, 0, 0, 1, 1}, std::nullopt);
    for (std::uint32_t options = 0; options < 4; ++options) {
        const auto context = graphics.bitmapContextCreate(12, 1, 8, 0, ColorSpace::deviceRGB, 8194);
        context->drawLinearGradient(gradient, {4, 0}, {8, 0}, options);
        const auto image = context->createImage();
        EXPECT_EQ(at(image, 3, 0)[3], (options & 1) != 0 ? 255 : 0);
        EXPECT_EQ(at(image, 3, 0)[2], (options & 1) != 0 ? 255 : 0);
        EXPECT_EQ(at(image, 4, 0)[3], 255);
        EXPECT_EQ(at(image, 4, 0)[0], std::lround(0.125 * 255));
        EXPECT_EQ(at(image, 8, 0)[0], (options & 2) != 0 ? 255 : 0);
    }
}

TEST(Gradient, RefusesWhatIsNoGradient) {
    DesktopCoreGraphics graphics;
    const auto make = [&](ColorSpace space, const std::vector<double>& components,
                          const std::optional<std::vector<double>>& locations = {}) {
        return graphics.gradientCreateWithColorComponents(space, components, locations) != nullptr;
    };
    EXPECT_TRUE(make(ColorSpace::deviceGray, {0, 1, 1, 1}, std::vector<double>{0, 1}));
    EXPECT_FALSE(make(ColorSpace::deviceGray, {}));
    EXPECT_FALSE(make(ColorSpace::deviceGray, {0, 1, 1}));
    EXPECT_FALSE(make(ColorSpace::deviceGray, {0, 1, 1, 1}, std::vector<double>{0}));
    EXPECT_FALSE(make(ColorSpace::deviceGray, {0, std::nan("")}));
    EXPECT_FALSE(make(ColorSpace::indexed, {0, 1, 1, 1}));
}

TEST(BitmapContext, ASnapshotDoesNotChange) {
    const auto context = DesktopGraphicsContext::create({.size = {2, 2}});
    context->fillRect({{0, 0}, {2, 2}}, {1, 0, 0, 1});
    const auto before = context->createImage();
    context->fillRect({{0, 0}, {2, 2}}, {0, 0, 1, 1});
    EXPECT_EQ(at(before, 0, 0)[2], 255);
    EXPECT_EQ(at(before, 0, 0)[0], 0);
    EXPECT_EQ(at(context->createImage(), 0, 0)[0], 255);
}

TEST(BitmapContext, TranslatingUpwardsMovesTowardsTheTopRow) {
    DesktopCoreGraphics graphics;
    const auto context = std::dynamic_pointer_cast<DesktopGraphicsContext>(
        graphics.bitmapContextCreate(3, 4, 8, 0, ColorSpace::deviceRGB, 8194));
    ASSERT_NE(context, nullptr);
    context->translateCTM(1, 2);
    context->fillRect({{0, 0}, {1, 1}}, {1, 1, 1, 1});
    const auto image = context->createImage();
    for (std::size_t y = 0; y < 4; ++y) {
        for (std::size_t x = 0; x < 3; ++x) {
            EXPECT_EQ(at(image, x, y)[3], x == 1 && y == 1 ? 255 : 0) << x << ", " << y;
        }
    }
}

class DrawInRect : public testing::Test {
  public:
    DesktopImageContexts contexts{3, ImageDescription::ios13};
    DesktopImages images{{.root = nullptr, .screenScale = 3}, contexts};
};

TEST_F(DrawInRect, OpaqueContextsStartBlackWithoutAlpha) {
    contexts.beginImageContextWithOptions({1, 1}, true, 1);
    const auto image = contexts.getImageFromCurrentImageContext();
    contexts.endImageContext();
    EXPECT_EQ(image->bitmap()->layout().alphaInfo, platform::AlphaInfo::noneSkipFirst);
    EXPECT_EQ(at(image->bitmap(), 0, 0)[0], 0);
    EXPECT_EQ(at(image->bitmap(), 0, 0)[3], 255);
}

TEST_F(DrawInRect, DrawingPixelOnPixelKeepsEveryByte) {
    const auto bitmap = bitmapOf(noise(60 * 30), 60, 30);
    const auto image = images.makeImage(bitmap, 3);
    contexts.beginImageContextWithOptions({20, 10}, false, 0);
    images.drawInRect(image, {{0, 0}, {20, 10}});
    const auto result = contexts.getImageFromCurrentImageContext();
    contexts.endImageContext();
    EXPECT_EQ(*samplesOf(result->bitmap()->dataProvider()), *samplesOf(bitmap->dataProvider()));
}

TEST_F(DrawInRect, DrawingOverFollowsSourceOver) {
    const auto below = bitmapOf(noise(131), 131, 1);
    Data bytes = noise(262);
    const auto above = bitmapOf(Data(bytes.begin() + 131 * 4, bytes.end()), 131, 1);
    contexts.beginImageContextWithOptions({131, 1}, false, 1);
    images.drawInRect(images.makeImage(below, 1), {{0, 0}, {131, 1}});
    images.drawInRect(images.makeImage(above, 1), {{0, 0}, {131, 1}});
    const auto result = contexts.getImageFromCurrentImageContext();
    contexts.endImageContext();
    for (std::size_t x = 0; x < 131; ++x) {
        const int alpha = at(above, x, 0)[3];
        for (std::size_t c = 0; c < 4; ++c) {
            const double wanted =
                at(above, x, 0)[c] + std::round(at(below, x, 0)[c] * (255 - alpha) / 255.0);
            ASSERT_EQ(at(result->bitmap(), x, 0)[c], wanted) << x;
        }
    }
}

TEST_F(DrawInRect, ShrinkingAveragesTheAreaOfEachPixel) {
    const auto bitmap = bitmapOf(noise(12 * 6), 12, 6);
    contexts.beginImageContextWithOptions({4, 2}, false, 1);
    images.drawInRect(images.makeImage(bitmap, 1), {{0, 0}, {4, 2}});
    const auto result = contexts.getImageFromCurrentImageContext();
    contexts.endImageContext();
    for (std::size_t y = 0; y < 2; ++y) {
        for (std::size_t x = 0; x < 4; ++x) {
            for (std::size_t c = 0; c < 4; ++c) {
                double sum = 0;
                for (std::size_t i = 0; i < 9; ++i) {
                    const std::size_t row = i / 3;
                    sum += at(bitmap, x * 3 + i % 3, y * 3 + row)[c];
                }
                EXPECT_NEAR(at(result->bitmap(), x, y)[c], sum / 9, 0.51);
            }
        }
    }
}

TEST_F(DrawInRect, StretchingAPlainColourKeepsIt) {
    const auto bitmap = bitmapOf({10, 20, 30, 255}, 1, 1);
    contexts.beginImageContextWithOptions({7, 5}, false, 1);
    images.drawInRect(images.makeImage(bitmap, 1), {{0, 0}, {7, 5}});
    const auto result = contexts.getImageFromCurrentImageContext();
    contexts.endImageContext();
    for (std::size_t i = 0; i < 35; ++i) {
        EXPECT_EQ(at(result->bitmap(), i % 7, i / 7)[1], 20);
        EXPECT_EQ(at(result->bitmap(), i % 7, i / 7)[3], 255);
    }
}

TEST_F(DrawInRect, NothingToDrawDrawsNothing) {
    const auto image = images.makeImage(bitmapOf({1, 2, 3, 255}, 1, 1), 1);
    images.drawInRect(image, {{0, 0}, {1, 1}});
    contexts.beginImageContextWithOptions({1, 1}, false, 1);
    const double nan = std::numeric_limits<double>::quiet_NaN();
    images.drawInRect(nullptr, {{0, 0}, {1, 1}});
    images.drawInRect(image, {{0, 0}, {0, 1}});
    images.drawInRect(image, {{nan, 0}, {1, 1}});
    images.drawInRect(image, {{1e300, 0}, {1e300, 1}});
    EXPECT_EQ(at(contexts.getImageFromCurrentImageContext()->bitmap(), 0, 0)[3], 0);
    contexts.endImageContext();
}

}  // namespace
}  // namespace velmoranth::desktop::contexts_test
