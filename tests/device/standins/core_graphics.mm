// Colour spaces, data providers and images.
#include "device/standins/core_graphics.h"

#include "device/standins/core_graphics_objects.h"
#include "device/standins/messages.h"
#include "record/operations.h"

namespace velmoranth::standins {
namespace {

constexpr std::size_t kLargestSide = 32768;
constexpr CGBitmapInfo kAlphaInfoMask = 0x1F;

bool isMaskDepth(std::size_t bitsPerComponent) {
    return bitsPerComponent == 1 || bitsPerComponent == 2 || bitsPerComponent == 4 ||
           bitsPerComponent == 8;
}

bool isSound(const ImageLayout& layout) {
    return layout.width != 0 && layout.height != 0 && layout.width <= kLargestSide &&
           layout.height <= kLargestSide && layout.bitsPerPixel >= layout.bitsPerComponent &&
           layout.bitsPerPixel <= 128 &&
           layout.bytesPerRow >= (layout.width * layout.bitsPerPixel + 7) / 8;
}

// An image mask, or a gray image without alpha that is not masked itself.
bool canMask(const CGImageStandIn* image) {
    return image->isMask_ ||
           (image->layout_->model == kCGColorSpaceModelMonochrome &&
            (image->layout_->bitmapInfo & kAlphaInfoMask) == 0 && image->mask_ == nil);
}

}  // namespace

CGColorSpaceStandIn* newColorSpace(CGColorSpaceModel model) {
    auto* const space = [[CGColorSpaceStandIn alloc] init];
    space->model_ = model;
    return space;
}

CGDataProviderStandIn* newProvider(const Bytes& bytes) {
    auto* const provider = [[CGDataProviderStandIn alloc] init];
    provider->bytes_ = new Bytes(bytes);
    return provider;
}

CGImageStandIn* newImage(const ImageLayout& layout, CGDataProviderStandIn* provider) {
    auto* const image = [[CGImageStandIn alloc] init];
    image->layout_ = new ImageLayout(layout);
    image->provider_ = [provider retain];
    return image;
}

CGImageRef createImageWithoutProvider(const ImageLayout& layout) {
    CGImageStandIn* const image = newImage(layout, nil);
    image->space_ = newColorSpace(layout.model);
    return (CGImageRef)image;
}

CGImageRef createImage(const ImageLayout& layout, const Bytes& bytes) {
    const CGImageRef image = createImageWithoutProvider(layout);
    objectOf<CGImageStandIn>(image)->provider_ = newProvider(bytes);
    return image;
}

Bytes bytesOf(CGImageRef image) {
    const auto* const provider = objectOf<CGDataProviderStandIn>(CGImageGetDataProvider(image));
    return provider == nil ? Bytes() : *provider->bytes_;
}

CGImageRef maskOf(CGImageRef image) {
    return (CGImageRef)objectOf<CGImageStandIn>(image)->mask_;
}

long referencesTo(const void* object) {
    return static_cast<long>([objectOf<NSObject>(object) retainCount]);
}

}  // namespace velmoranth::standins

namespace {

using velmoranth::standins::called;
using velmoranth::standins::ImageLayout;
using velmoranth::standins::objectOf;

// What a getter of an image answers, 0 for NULL.
template <class Value>
Value get(CGImageRef image, Value ImageLayout::* member) {
    return image == nullptr ? Value{} : objectOf<CGImageStandIn>(image)->layout_->*member;
}

}  // namespace

@implementation CGColorSpaceStandIn
@end

@implementation CGDataProviderStandIn

- (void)dealloc {
    delete bytes_;
    [super dealloc];
}

@end

@implementation CGImageStandIn

- (void)dealloc {
    delete layout_;
    [provider_ release];
    [space_ release];
    [mask_ release];
    [super dealloc];
}

@end

CFTypeRef CFRetain(CFTypeRef object) {
    return [objectOf<NSObject>(object) retain];
}

void CFRelease(CFTypeRef object) {
    [objectOf<NSObject>(object) release];
}

CFTypeRef CFAutorelease(CFTypeRef object) {
    return [objectOf<NSObject>(object) autorelease];
}

CGColorSpaceRef CGColorSpaceCreateDeviceGray() {
    called("CGColorSpaceCreateDeviceGray");
    return (CGColorSpaceRef)velmoranth::standins::newColorSpace(kCGColorSpaceModelMonochrome);
}

CGColorSpaceRef CGColorSpaceCreateDeviceRGB() {
    called("CGColorSpaceCreateDeviceRGB");
    return (CGColorSpaceRef)velmoranth::standins::newColorSpace(kCGColorSpaceModelRGB);
}

CGColorSpaceModel CGColorSpaceGetModel(CGColorSpaceRef space) {
    return space == nullptr ? kCGColorSpaceModelUnknown
                            : objectOf<CGColorSpaceStandIn>(space)->model_;
}

void CGColorSpaceRelease(CGColorSpaceRef space) {
    [objectOf<CGColorSpaceStandIn>(space) release];
}

CGDataProviderRef CGDataProviderRetain(CGDataProviderRef provider) {
    return (CGDataProviderRef)[objectOf<CGDataProviderStandIn>(provider) retain];
}

void CGDataProviderRelease(CGDataProviderRef provider) {
    [objectOf<CGDataProviderStandIn>(provider) release];
}

CGImageRef CGImageRetain(CGImageRef image) {
    return (CGImageRef)[objectOf<CGImageStandIn>(image) retain];
}

void CGImageRelease(CGImageRef image) {
    [objectOf<CGImageStandIn>(image) release];
}

bool CGImageIsMask(CGImageRef image) {
    return image != nullptr && objectOf<CGImageStandIn>(image)->isMask_;
}

size_t CGImageGetWidth(CGImageRef image) {
    return get(image, &ImageLayout::width);
}

size_t CGImageGetHeight(CGImageRef image) {
    return get(image, &ImageLayout::height);
}

size_t CGImageGetBitsPerComponent(CGImageRef image) {
    return get(image, &ImageLayout::bitsPerComponent);
}

size_t CGImageGetBitsPerPixel(CGImageRef image) {
    return get(image, &ImageLayout::bitsPerPixel);
}

size_t CGImageGetBytesPerRow(CGImageRef image) {
    return get(image, &ImageLayout::bytesPerRow);
}

CGColorSpaceRef CGImageGetColorSpace(CGImageRef image) {
    return image == nullptr ? nullptr : (CGColorSpaceRef)objectOf<CGImageStandIn>(image)->space_;
}

CGImageAlphaInfo CGImageGetAlphaInfo(CGImageRef image) {
    return CGImageGetBitmapInfo(image) & velmoranth::standins::kAlphaInfoMask;
}

CGDataProviderRef CGImageGetDataProvider(CGImageRef image) {
    return image == nullptr ? nullptr
                            : (CGDataProviderRef)objectOf<CGImageStandIn>(image)->provider_;
}

CGBitmapInfo CGImageGetBitmapInfo(CGImageRef image) {
    return get(image, &ImageLayout::bitmapInfo);
}

CGImageRef CGImageMaskCreate(size_t width, size_t height, size_t bitsPerComponent,
                             size_t bitsPerPixel, size_t bytesPerRow, CGDataProviderRef provider,
                             const CGFloat* decode, bool shouldInterpolate) {
    const auto noted =
        called(velmoranth::record::messageOf("CoreGraphics", "imageMaskCreate"), width, height,
               bitsPerComponent, bitsPerPixel, bytesPerRow, provider,
               static_cast<BOOL>(shouldInterpolate), velmoranth::standins::wordsIfSet(decode));
    const ImageLayout layout{.width = width,
                             .height = height,
                             .bitsPerComponent = bitsPerComponent,
                             .bitsPerPixel = bitsPerPixel,
                             .bytesPerRow = bytesPerRow,
                             .model = kCGColorSpaceModelUnknown,
                             .bitmapInfo = 0};
    if (provider == nullptr || !velmoranth::standins::isMaskDepth(bitsPerComponent) ||
        !velmoranth::standins::isSound(layout)) {
        return noted.answered(static_cast<CGImageRef>(nullptr));
    }
    CGImageStandIn* const mask =
        velmoranth::standins::newImage(layout, objectOf<CGDataProviderStandIn>(provider));
    mask->isMask_ = YES;
    return noted.answered((CGImageRef)mask);
}

CGImageRef CGImageCreateWithMask(CGImageRef image, CGImageRef mask) {
    const auto noted =
        called(velmoranth::record::messageOf("CoreGraphics", "imageCreateWithMask"), image, mask);
    const auto* const picture = objectOf<CGImageStandIn>(image);
    auto* const through = objectOf<CGImageStandIn>(mask);
    if (picture == nil || through == nil || picture->isMask_ ||
        !velmoranth::standins::canMask(through)) {
        return noted.answered(static_cast<CGImageRef>(nullptr));
    }
    CGImageStandIn* const masked =
        velmoranth::standins::newImage(*picture->layout_, picture->provider_);
    masked->space_ = [picture->space_ retain];
    masked->mask_ = [through retain];
    return noted.answered((CGImageRef)masked);
}
