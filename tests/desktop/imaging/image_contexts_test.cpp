#include "desktop/imaging/image_contexts.h"

#include "bitmaps.h"
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <thread>
#include <vector>

namespace velmoranth::desktop::test_images::image_contexts_test {

namespace {

constexpr double kNone = NAN;
constexpr double kEndless = std::numeric_limits<double>::infinity();

PixelSize pixelsAt(DesktopImageContexts& contexts, platform::Size size, double scale) {
    contexts.beginImageContextWithOptions(size, false, scale);
    const auto current = contexts.current();
    const PixelSize result = current ? current->size() : PixelSize{};
    contexts.endImageContext();
    return result;
}

}  // namespace

TEST(ImageContexts, NoneAtFirst) {
    DesktopImageContexts contexts(3, ImageDescription::ios13);
    EXPECT_EQ(contexts.getCurrentContext(), nullptr);
    EXPECT_EQ(contexts.getImageFromCurrentImageContext(), nullptr);
    contexts.endImageContext();
    EXPECT_EQ(contexts.getCurrentContext(), nullptr);
}

TEST(ImageContexts, PixelsArePointsTimesScaleRoundedUp) {
    DesktopImageContexts contexts(3, ImageDescription::ios13);
    EXPECT_EQ(pixelsAt(contexts, {10, 20}, 2), (PixelSize{20, 40}));
    EXPECT_EQ(pixelsAt(contexts, {10.1, 0.1}, 1), (PixelSize{11, 1}));
    EXPECT_EQ(pixelsAt(contexts, {20.0 / 3, 61.0 / 3}, 3), (PixelSize{20, 61}));
    EXPECT_EQ(pixelsAt(contexts, {1e-9, 5e-324}, 1), (PixelSize{1, 1}));
}

TEST(ImageContexts, ScaleZeroAndNoScaleAreTheScreens) {
    DesktopImageContexts contexts(3, ImageDescription::ios13);
    for (const double scale : {0.0, -2.0, kNone, kEndless}) {
        EXPECT_EQ(pixelsAt(contexts, {4, 5}, scale), (PixelSize{12, 15})) << scale;
    }
    DesktopImageContexts noScreen(0, ImageDescription::ios13);
    EXPECT_EQ(pixelsAt(noScreen, {4, 5}, 0), (PixelSize{4, 5}));
}

TEST(ImageContexts, AbsurdSizesMakeNoContextButAreClosed) {
    DesktopImageContexts contexts(3, ImageDescription::ios13);
    contexts.beginImageContextWithOptions({1, 1}, false, 1);
    const auto outer = contexts.current();
    for (const platform::Size& size :
         {platform::Size{0, 5}, platform::Size{5, 0}, platform::Size{-5, -5},
          platform::Size{kNone, 5}, platform::Size{5, kNone}, platform::Size{kEndless, 5},
          platform::Size{1e300, 1e300}, platform::Size{1e9, 1}, platform::Size{16384, 16384}}) {
        contexts.beginImageContextWithOptions(size, false, 1);
        EXPECT_EQ(contexts.getCurrentContext(), nullptr) << size.width << " " << size.height;
        EXPECT_EQ(contexts.getImageFromCurrentImageContext(), nullptr);
        contexts.endImageContext();
        EXPECT_EQ(contexts.current(), outer);
    }
    contexts.endImageContext();
}

TEST(ImageContexts, AreAStack) {
    DesktopImageContexts contexts(1, ImageDescription::ios13);
    contexts.beginImageContextWithOptions({1, 1}, false, 1);
    const auto outer = contexts.getCurrentContext();
    contexts.beginImageContextWithOptions({2, 2}, false, 1);
    EXPECT_NE(contexts.getCurrentContext(), outer);
    contexts.endImageContext();
    EXPECT_EQ(contexts.getCurrentContext(), outer);
    contexts.endImageContext();
    EXPECT_EQ(contexts.getCurrentContext(), nullptr);
}

TEST(ImageContexts, EachThreadHasItsOwn) {
    DesktopImageContexts contexts(1, ImageDescription::ios13);
    contexts.beginImageContextWithOptions({1, 1}, false, 1);
    std::thread([&] {
        EXPECT_EQ(contexts.getCurrentContext(), nullptr);
        contexts.beginImageContextWithOptions({2, 2}, false, 1);
        EXPECT_NE(contexts.getCurrentContext(), nullptr);
    }).join();
    EXPECT_EQ(contexts.current()->size(), (PixelSize{1, 1}));
    contexts.endImageContext();
}

TEST(ImageContexts, TwoServicesDoNotMix) {
    DesktopImageContexts first(1, ImageDescription::ios13);
    DesktopImageContexts second(1, ImageDescription::ios13);
    first.beginImageContextWithOptions({1, 1}, false, 1);
    EXPECT_EQ(second.getCurrentContext(), nullptr);
    second.endImageContext();
    EXPECT_NE(first.getCurrentContext(), nullptr);
    first.endImageContext();
}

TEST(ImageContexts, ImagesAreSnapshotsAtTheContextsScale) {
    DesktopImageContexts contexts(3, ImageDescription::ios12);
    contexts.beginImageContextWithOptions({2, 1}, false, 2);
    contexts.current()->fillRect({{0, 0}, {2, 1}}, {1, 0, 0, 1});
    const platform::ImageRef image = contexts.getImageFromCurrentImageContext();
    contexts.current()->fillRect({{0, 0}, {2, 1}}, {0, 0, 1, 1});
    contexts.endImageContext();
    ASSERT_NE(image, nullptr);
    EXPECT_EQ(image->scale(), 2);
    EXPECT_EQ(image->size(), (platform::Size{2, 1}));
    EXPECT_EQ(pixelsOf(image->bitmap()), flat(8, kRed));
    EXPECT_TRUE(image->description().starts_with("<UIImage: 0x")) << image->description();
}

TEST(ImageContexts, OpaqueOnesStartBlack) {
    DesktopImageContexts contexts(1, ImageDescription::ios13);
    contexts.beginImageContextWithOptions({1, 1}, true, 1);
    EXPECT_EQ(pixelsOf(contexts.getImageFromCurrentImageContext()->bitmap()), flat(1, kBlack));
    contexts.endImageContext();
    contexts.beginImageContextWithOptions({1, 1}, false, 1);
    EXPECT_EQ(pixelsOf(contexts.getImageFromCurrentImageContext()->bitmap()), flat(1, kClear));
    contexts.endImageContext();
}

}  // namespace velmoranth::desktop::test_images::image_contexts_test
