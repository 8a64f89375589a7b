// A small CoreGraphics for tests: images with their layout and bytes, masks, bitmap contexts that
// linear gradients fill. Its objects are Objective-C's, as the phone's are, so
// living("CGImageStandIn") and so on count them.
#pragma once

#include "device/standins/standin.h"
#include <CoreGraphics/CGContext.h>
#include <CoreGraphics/CGImage.h>

#include <cstddef>
#include <cstdint>
#include <vector>

namespace velmoranth::standins {

struct ImageLayout {
    std::size_t width = 1;
    std::size_t height = 1;
    std::size_t bitsPerComponent = 8;
    std::size_t bitsPerPixel = 32;
    std::size_t bytesPerRow = 4;
    CGColorSpaceModel model = kCGColorSpaceModelRGB;
    CGBitmapInfo bitmapInfo = 3;  // straight alpha, last
};

using Bytes = std::vector<std::uint8_t>;

// An image of any layout and as many bytes as it is given, with a reference for the caller.
[[nodiscard]] CGImageRef createImage(const ImageLayout& layout, const Bytes& bytes);
// One whose provider is NULL.
[[nodiscard]] CGImageRef createImageWithoutProvider(const ImageLayout& layout);

[[nodiscard]] Bytes bytesOf(CGImageRef image);
// What CGImageCreateWithMask gave the image; NULL for any other.
[[nodiscard]] CGImageRef maskOf(CGImageRef image);

// How far the context's user space has been moved.
[[nodiscard]] CGPoint translationOf(CGContextRef context);
// The context's memory, top row first.
[[nodiscard]] Bytes memoryOf(CGContextRef context);
[[nodiscard]] std::size_t bytesPerRowOf(CGContextRef context);

// A context as UIKit makes it: its origin at the top left, `scale` pixels a point; with a reference
// for the caller. NULL when a size is not positive.
[[nodiscard]] CGContextRef createFlippedContext(CGSize size, bool opaque, CGFloat scale);
[[nodiscard]] CGFloat scaleOf(CGContextRef context);

// References to an object of CoreGraphics.
[[nodiscard]] long referencesTo(const void* object);

}  // namespace velmoranth::standins

typedef const void* CFTypeRef;

// For objects of CoreGraphics and for Foundation's.
extern "C" {
CFTypeRef CFRetain(CFTypeRef object);
void CFRelease(CFTypeRef object);
CFTypeRef CFAutorelease(CFTypeRef object);
}
