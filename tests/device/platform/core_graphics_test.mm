#include "device/standins/core_graphics.h"

#include "device/platform/balanced_test.h"
#include "device/platform/core_graphics_handles.h"
#include "device/platform/services.h"

#include <limits>
#include <memory>
#include <optional>

namespace velmoranth::device::core_graphics_test {
namespace {

using platform::AlphaInfo;
using platform::BitmapImageRef;
using platform::BitmapLayout;
using platform::ByteOrder;
using platform::ColorSpace;
using platform::DataProviderRef;
using platform::GradientRef;
using platform::GraphicsContextRef;
using standins::createImage;
using standins::ImageLayout;
using standins::journal;
using standins::living;
using standins::referencesTo;

constexpr std::uint32_t kPremultipliedBgra = 8194;

// Of a picture that nobody holds any longer.
DataProviderRef provider(std::size_t size = 64) {
    const BitmapImageRef picture = wrap<platform::BitmapImage>(
        createImage({}, standins::Bytes(size, std::uint8_t{7})), Hold::adopt);
    return picture->dataProvider();
}

BitmapImageRef maskOf(std::size_t width, std::size_t height, const DataProviderRef& bytes) {
    return coreGraphics().imageMaskCreate(width, height, 8, 8, width, bytes, false);
}

// A gray image without alpha, or one in RGB; nobody but the handle holds it.
BitmapImageRef grayImage(std::size_t width, std::size_t height) {
    const ImageLayout layout{.width = width,
                             .height = height,
                             .bitsPerPixel = 8,
                             .bytesPerRow = width,
                             .model = kCGColorSpaceModelMonochrome,
                             .bitmapInfo = 0};
    return wrap<platform::BitmapImage>(createImage(layout, standins::Bytes(width * height)),
                                       Hold::adopt);
}

BitmapImageRef colorImage() {
    return wrap<platform::BitmapImage>(createImage({}, standins::Bytes(4)), Hold::adopt);
}

GraphicsContextRef grayContext(std::int64_t width, std::int64_t height) {
    return coreGraphics().bitmapContextCreate(width, height, 8, 0, ColorSpace::deviceGray, 0);
}

GradientRef blackToWhite() {
    return coreGraphics().gradientCreateWithColorComponents(ColorSpace::deviceGray, {0, 1, 1, 1},
                                                            std::nullopt);
}

// The first sample of each row, top row first.
standins::Bytes leftColumn(const GraphicsContextRef& context, std::size_t rows) {
    const CGContextRef native = nativeContext(context);
    standins::Bytes column;
    for (std::size_t row = 0; row < rows; ++row) {
        column.push_back(standins::memoryOf(native)[row * standins::bytesPerRowOf(native)]);
    }
    return column;
}

// --- References
// ------------------------------------------------------------------------------------------

class HandleReferences : public BalancedTest {};

TEST_F(HandleReferences, AHandleTakesOneAndGivesItBack) {
    const CGImageRef image = createImage({}, {});
    BitmapImageRef handle = wrap<platform::BitmapImage>(image);
    EXPECT_EQ(referencesTo(image), 2);
    EXPECT_EQ(handle->native(), image);
    handle.reset();
    EXPECT_EQ(referencesTo(image), 1);
    CGImageRelease(image);
}

TEST_F(HandleReferences, AdoptedImagesEndWithTheirHandle) {
    BitmapImageRef handle = wrap<platform::BitmapImage>(createImage({}, {}), Hold::adopt);
    EXPECT_EQ(referencesTo(handle->native()), 1);
    handle.reset();
    EXPECT_EQ(living("CGImageStandIn"), 0);
}

TEST_F(HandleReferences, BorrowedImagesAreNotCounted) {
    const CGImageRef image = createImage({}, {});
    {
        const HandleFor<platform::BitmapImage> handle(image, Hold::borrow);
        EXPECT_EQ(referencesTo(image), 1);
    }
    EXPECT_EQ(referencesTo(image), 1);
    CGImageRelease(image);
}

TEST_F(HandleReferences, OfGradientsAndContextsAreCountedToo) {
    const GradientRef gradient = blackToWhite();
    const GraphicsContextRef context = grayContext(1, 1);
    EXPECT_EQ(referencesTo(gradient->native()), 1);
    EXPECT_EQ(referencesTo(context->native()), 1);
    const GradientRef gradientAgain = wrap<platform::Gradient>(gradient->native());
    const GraphicsContextRef contextAgain = wrap<platform::GraphicsContext>(context->native());
    EXPECT_EQ(referencesTo(gradient->native()), 2);
    EXPECT_EQ(referencesTo(context->native()), 2);
}

TEST_F(HandleReferences, AnAutoreleasedImageLivesAsLongAsThePool) {
    BitmapImageRef handle = colorImage();
    void* const image = autoreleased(handle);
    EXPECT_EQ(image, handle->native());
    handle.reset();
    EXPECT_EQ(living("CGImageStandIn"), 1);
    drain();
    EXPECT_EQ(living("CGImageStandIn"), 0);
}

TEST_F(HandleReferences, NilAutoreleasesNothing) {
    EXPECT_EQ(autoreleased(nullptr), nullptr);
    EXPECT_EQ(nativeImage(nullptr), nullptr);
    EXPECT_EQ(nativeContext(nullptr), nullptr);
    EXPECT_EQ(wrap<platform::BitmapImage>(nullptr), nullptr);
}

// --- Images
// ------------------------------------------------------------------------------------------

class BitmapImages : public BalancedTest {
  protected:
    static BitmapLayout layoutOf(const ImageLayout& layout) {
        return wrap<platform::BitmapImage>(createImage(layout, {}), Hold::adopt)->layout();
    }
};

TEST_F(BitmapImages, TellTheLayoutThatTheyAreStoredIn) {
    const BitmapLayout expected{.width = 3,
                                .height = 5,
                                .bitsPerComponent = 16,
                                .bitsPerPixel = 64,
                                .bytesPerRow = 32,
                                .colorSpace = ColorSpace::deviceRGB,
                                .alphaInfo = AlphaInfo::last,
                                .byteOrder = ByteOrder::standard};
    EXPECT_EQ(layoutOf({.width = 3,
                        .height = 5,
                        .bitsPerComponent = 16,
                        .bitsPerPixel = 64,
                        .bytesPerRow = 32}),
              expected);
}

TEST_F(BitmapImages, TellAlphaAndByteOrderApart) {
    const BitmapLayout layout = layoutOf({.bitmapInfo = kPremultipliedBgra});
    EXPECT_EQ(layout.alphaInfo, AlphaInfo::premultipliedFirst);
    EXPECT_EQ(layout.byteOrder, ByteOrder::little32);
    // The bit between the two says that components are floating-point numbers.
    const BitmapLayout floats = layoutOf({.bitmapInfo = 0x100 | 5});
    EXPECT_EQ(floats.alphaInfo, AlphaInfo::noneSkipLast);
    EXPECT_EQ(floats.byteOrder, ByteOrder::standard);
}

TEST_F(BitmapImages, TellTheModelOfTheirColorSpace) {
    EXPECT_EQ(layoutOf({.model = kCGColorSpaceModelMonochrome}).colorSpace, ColorSpace::deviceGray);
    EXPECT_EQ(layoutOf({.model = kCGColorSpaceModelIndexed}).colorSpace, ColorSpace::indexed);
    EXPECT_EQ(layoutOf({.model = kCGColorSpaceModelUnknown}).colorSpace, ColorSpace::deviceRGB);
}

TEST_F(BitmapImages, KeepTheLayoutThatWasRead) {
    const BitmapImageRef image = colorImage();
    const BitmapLayout& layout = image->layout();
    EXPECT_EQ(&image->layout(), &layout);
    EXPECT_EQ(layout.bytesPerRow, 4U);
}

TEST_F(BitmapImages, GiveTheirOwnProvider) {
    const CGImageRef native = createImage({.height = 2}, {1, 2, 3, 4, 5, 6, 7, 8});
    BitmapImageRef image = wrap<platform::BitmapImage>(native, Hold::adopt);
    DataProviderRef first = image->dataProvider();
    ASSERT_NE(first, nullptr);
    EXPECT_EQ(first->native(), CGImageGetDataProvider(native));
    EXPECT_EQ(referencesTo(first->native()), 2);  // the image's and the handle's
    EXPECT_EQ(journal(), Lines{});                // nothing is copied
    image.reset();
    EXPECT_EQ(living("CGImageStandIn"), 0);
    EXPECT_EQ(referencesTo(first->native()), 1);
    first.reset();
    EXPECT_EQ(living("CGDataProviderStandIn"), 0);
}

TEST_F(BitmapImages, WithoutAProviderHaveNone) {
    const BitmapImageRef image =
        wrap<platform::BitmapImage>(standins::createImageWithoutProvider({}), Hold::adopt);
    EXPECT_EQ(image->dataProvider(), nullptr);
}

// --- Masks
// -------------------------------------------------------------------------------------------

class Masks : public BalancedTest {};

TEST_F(Masks, AreMadeOfTheNumbersGivenAndThePicturesOwnProvider) {
    const DataProviderRef own = provider(40);
    const BitmapImageRef mask = coreGraphics().imageMaskCreate(4, 2, 8, 32, 20, own, true);
    ASSERT_NE(mask, nullptr);
    EXPECT_EQ(journal(), Lines{"CGImageMaskCreate 4 2 8 32 20 __NSCFType YES"});
    EXPECT_TRUE(mask->isMask());
    const BitmapLayout expected{
        .width = 4, .height = 2, .bitsPerComponent = 8, .bitsPerPixel = 32, .bytesPerRow = 20};
    EXPECT_EQ(mask->layout(), expected);
    EXPECT_EQ(CGImageGetDataProvider(nativeImage(mask)), own->native());
    EXPECT_EQ(standins::bytesOf(nativeImage(mask)), standins::Bytes(40, 7));
    EXPECT_EQ(referencesTo(mask->native()), 1);
    EXPECT_EQ(referencesTo(own->native()), 2);
    EXPECT_FALSE(colorImage()->isMask());
}

TEST_F(Masks, PassOnThatTheyAreNotInterpolated) {
    EXPECT_NE(maskOf(1, 1, provider()), nullptr);
    EXPECT_EQ(journal().back(), "CGImageMaskCreate 1 1 8 8 1 __NSCFType NO");
}

TEST_F(Masks, HoldTheirProvider) {
    BitmapImageRef mask = maskOf(4, 2, provider());
    EXPECT_EQ(living("CGDataProviderStandIn"), 1);
    const CGImageRef kept = CGImageRetain(nativeImage(mask));
    mask.reset();
    EXPECT_EQ(standins::bytesOf(kept), standins::Bytes(64, 7));
    CGImageRelease(kept);
    EXPECT_EQ(living("CGDataProviderStandIn"), 0);
}

TEST_F(Masks, WithoutAProviderAreNilWithoutACall) {
    EXPECT_EQ(maskOf(4, 2, nullptr), nullptr);
    EXPECT_EQ(journal(), Lines{});
}

TEST_F(Masks, ThatCoreGraphicsRefusesKeepNothing) {
    const DataProviderRef bytes = provider();
    EXPECT_EQ(maskOf(0, 2, bytes), nullptr);
    EXPECT_EQ(maskOf(4, 0, bytes), nullptr);
    EXPECT_EQ(coreGraphics().imageMaskCreate(2, 2, 16, 16, 4, bytes, false), nullptr);
    EXPECT_EQ(coreGraphics().imageMaskCreate(4, 2, 8, 8, 3, bytes, false), nullptr);
    EXPECT_EQ(standins::journalOf("CGImageMaskCreate ").size(), 4U);
    EXPECT_EQ(referencesTo(bytes->native()), 1);
}

TEST_F(Masks, GiveAMaskedImageOfTheImagesSize) {
    const BitmapImageRef image = colorImage();
    const BitmapImageRef mask = maskOf(4, 2, provider());
    standins::clearJournal();
    BitmapImageRef masked = coreGraphics().imageCreateWithMask(image, mask);
    ASSERT_NE(masked, nullptr);
    EXPECT_EQ(journal(), Lines{"CGImageCreateWithMask 1×1 pixels 4×2 mask"});
    EXPECT_EQ(standins::maskOf(nativeImage(masked)), mask->native());
    EXPECT_EQ(masked->layout(), image->layout());
    EXPECT_FALSE(masked->isMask());
    EXPECT_EQ(referencesTo(masked->native()), 1);
    EXPECT_EQ(referencesTo(mask->native()), 2);
    masked.reset();
    EXPECT_EQ(referencesTo(mask->native()), 1);
}

TEST_F(Masks, MayBeGrayImages) {
    const BitmapImageRef gray = grayImage(2, 2);
    const BitmapImageRef masked = coreGraphics().imageCreateWithMask(colorImage(), gray);
    ASSERT_NE(masked, nullptr);
    EXPECT_EQ(standins::maskOf(nativeImage(masked)), gray->native());
}

TEST_F(Masks, ThatDoNotFitGiveNil) {
    const BitmapImageRef mask = maskOf(1, 1, provider());
    EXPECT_EQ(coreGraphics().imageCreateWithMask(mask, mask), nullptr);
    EXPECT_EQ(coreGraphics().imageCreateWithMask(colorImage(), colorImage()), nullptr);
}

TEST_F(Masks, WithNilOnEitherSideGiveNilWithoutACall) {
    const BitmapImageRef image = grayImage(1, 1);
    EXPECT_EQ(coreGraphics().imageCreateWithMask(nullptr, image), nullptr);
    EXPECT_EQ(coreGraphics().imageCreateWithMask(image, nullptr), nullptr);
    EXPECT_EQ(journal(), Lines{});
}

// --- Contexts
// ----------------------------------------------------------------------------------------

class BitmapContexts : public BalancedTest {};

TEST_F(BitmapContexts, OfGrayAreMadeWithAColorSpaceOfTheirOwn) {
    const GraphicsContextRef context = grayContext(3, 2);
    ASSERT_NE(context, nullptr);
    EXPECT_EQ(journal(),
              (Lines{"CGColorSpaceCreateDeviceGray", "CGBitmapContextCreate 3 2 8 0 0 0"}));
    EXPECT_EQ(living("CGColorSpaceStandIn"), 0);
    EXPECT_EQ(leftColumn(context, 2), (standins::Bytes{0, 0}));
}

TEST_F(BitmapContexts, OfColorsPassRowsAndInfoOn) {
    const GraphicsContextRef context =
        coreGraphics().bitmapContextCreate(3, 2, 8, 16, ColorSpace::deviceRGB, kPremultipliedBgra);
    ASSERT_NE(context, nullptr);
    EXPECT_EQ(journal(),
              (Lines{"CGColorSpaceCreateDeviceRGB", "CGBitmapContextCreate 3 2 8 16 1 8194"}));
    EXPECT_EQ(standins::bytesPerRowOf(nativeContext(context)), 16U);
    EXPECT_EQ(living("CGColorSpaceStandIn"), 0);
}

TEST_F(BitmapContexts, ThatAreNotSupportedAreNil) {
    EXPECT_EQ(coreGraphics().bitmapContextCreate(1, 1, 8, 0, ColorSpace::deviceRGB, 3), nullptr);
    EXPECT_EQ(coreGraphics().bitmapContextCreate(1, 1, 8, 0, ColorSpace::indexed, 0), nullptr);
    EXPECT_EQ(journal().back(), "CGBitmapContextCreate 1 1 8 0 nil 0");
    EXPECT_EQ(living("CGColorSpaceStandIn"), 0);
}

TEST_F(BitmapContexts, OfNoSizeAreNilWithoutACall) {
    EXPECT_EQ(grayContext(0, 1), nullptr);
    EXPECT_EQ(grayContext(1, 0), nullptr);
    EXPECT_EQ(grayContext(-1, 1), nullptr);
    EXPECT_EQ(grayContext(1, std::numeric_limits<std::int64_t>::min()), nullptr);
    EXPECT_EQ(journal(), Lines{});
}

TEST_F(BitmapContexts, MoveTheirUserSpace) {
    const GraphicsContextRef context = grayContext(1, 4);
    context->translateCTM(1.5, -2);
    EXPECT_EQ(journal().back(), "CGContextTranslateCTM __NSCFType 1.5 -2");
    EXPECT_EQ(standins::translationOf(nativeContext(context)).x, 1.5);
    EXPECT_EQ(standins::translationOf(nativeContext(context)).y, -2);
}

TEST_F(BitmapContexts, DrawGradientsFromTheBottomUp) {
    const GraphicsContextRef context = grayContext(1, 4);
    const GradientRef gradient = blackToWhite();
    context->drawLinearGradient(gradient, {0, 0}, {0, 4}, platform::kGradientDrawsAfterEndLocation);
    EXPECT_EQ(journal().back(), "CGContextDrawLinearGradient __NSCFType (0, 0) (0, 4) 2");
    EXPECT_EQ(leftColumn(context, 4), (standins::Bytes{223, 159, 96, 32}));
    EXPECT_EQ(referencesTo(gradient->native()), 1);
}

TEST_F(BitmapContexts, LeaveSidesUntouchedUnlessAskedFor) {
    const GraphicsContextRef context = grayContext(1, 4);
    const GradientRef white = coreGraphics().gradientCreateWithColorComponents(
        ColorSpace::deviceGray, {1, 1, 1, 1}, std::nullopt);
    context->drawLinearGradient(white, {0, 1}, {0, 3}, 0);
    EXPECT_EQ(leftColumn(context, 4), (standins::Bytes{0, 255, 255, 0}));
    context->drawLinearGradient(white, {0, 1}, {0, 3}, platform::kGradientDrawsBeforeStartLocation);
    EXPECT_EQ(leftColumn(context, 4), (standins::Bytes{0, 255, 255, 255}));
}

TEST_F(BitmapContexts, DrawColorsFromTheirSpaceOnwards) {
    const GraphicsContextRef context =
        coreGraphics().bitmapContextCreate(2, 1, 8, 8, ColorSpace::deviceRGB, kPremultipliedBgra);
    const GradientRef redToBlue = coreGraphics().gradientCreateWithColorComponents(
        ColorSpace::deviceRGB, {1, 0, 0, 1, 0, 0, 1, 0.5}, std::vector<double>{0.25, 0.75});
    context->translateCTM(1, 0);
    // The middles of the two pixels lie at -0.5 and 0.5, the stops' places.
    context->drawLinearGradient(redToBlue, {-1, 0}, {1, 0}, 0);
    EXPECT_EQ(standins::memoryOf(nativeContext(context)),
              (standins::Bytes{0, 0, 255, 255, 128, 0, 0, 128}));
}

TEST_F(BitmapContexts, DrawNothingForANilGradient) {
    const GraphicsContextRef context = grayContext(1, 1);
    standins::clearJournal();
    context->drawLinearGradient(nullptr, {0, 0}, {0, 1}, 3);
    EXPECT_EQ(journal(), Lines{});
}

TEST_F(BitmapContexts, GiveImagesThatLaterDrawingDoesNotChange) {
    const GraphicsContextRef context = grayContext(1, 4);
    const BitmapImageRef image = context->createImage();
    ASSERT_NE(image, nullptr);
    EXPECT_EQ(journal().back(), "CGBitmapContextCreateImage __NSCFType");
    EXPECT_EQ(referencesTo(image->native()), 1);
    context->drawLinearGradient(blackToWhite(), {0, 0}, {0, 4}, 0);
    EXPECT_EQ(image->layout().width, 1U);
    EXPECT_EQ(image->layout().height, 4U);
    EXPECT_EQ(image->layout().colorSpace, ColorSpace::deviceGray);
    EXPECT_EQ(standins::bytesOf(nativeImage(image)),
              standins::Bytes(image->layout().bytesPerRow * 4, 0));
}

// --- Gradients
// ---------------------------------------------------------------------------------------

class Gradients : public BalancedTest {
  protected:
    static GradientRef make(ColorSpace space, const std::vector<double>& components,
                            const std::optional<std::vector<double>>& locations = std::nullopt) {
        return coreGraphics().gradientCreateWithColorComponents(space, components, locations);
    }
};

TEST_F(Gradients, PassOnTheirColors) {
    EXPECT_NE(make(ColorSpace::deviceGray, {0, 1, 1, 0.5}), nullptr);
    EXPECT_EQ(journal(), (Lines{"CGColorSpaceCreateDeviceGray",
                                "CGGradientCreateWithColorComponents 0 (0, 1, 1, 0.5) nil"}));
    EXPECT_EQ(living("CGColorSpaceStandIn"), 0);
    EXPECT_EQ(living("CGGradientStandIn"), 0);
}

TEST_F(Gradients, PassOnTheirLocations) {
    const GradientRef gradient =
        make(ColorSpace::deviceRGB, {1, 0, 0, 1, 0, 0, 1, 0.25}, std::vector<double>{0.25, 1});
    ASSERT_NE(gradient, nullptr);
    EXPECT_EQ(
        journal(),
        (Lines{"CGColorSpaceCreateDeviceRGB",
               "CGGradientCreateWithColorComponents 1 (1, 0, 0, 1, 0, 0, 1, 0.25) (0.25, 1)"}));
}

TEST_F(Gradients, WhoseNumbersDoNotFitAreNilWithoutACall) {
    EXPECT_EQ(make(ColorSpace::deviceGray, {}), nullptr);
    EXPECT_EQ(make(ColorSpace::deviceGray, {0, 1, 1}), nullptr);
    EXPECT_EQ(make(ColorSpace::deviceRGB, {0, 1, 1, 1, 1, 1}), nullptr);
    EXPECT_EQ(make(ColorSpace::deviceGray, {0, 1, 1, 1}, std::vector<double>{0}), nullptr);
    EXPECT_EQ(make(ColorSpace::indexed, {0, 1, 1, 1}), nullptr);
    EXPECT_EQ(journal(), Lines{});
}

}  // namespace
}  // namespace velmoranth::device::core_graphics_test
