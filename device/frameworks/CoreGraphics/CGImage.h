// Bitmap images, and the colour spaces and bytes that they are made of.
#pragma once

#include <CoreGraphics/CGGeometry.h>
#include <stddef.h>
#include <stdint.h>

// Colour spaces. Create gives a reference that Release takes back; both release functions take
// NULL.
typedef struct CGColorSpace* CGColorSpaceRef;

typedef int32_t CGColorSpaceModel;

enum : CGColorSpaceModel {
    kCGColorSpaceModelUnknown = -1,
    kCGColorSpaceModelMonochrome = 0,
    kCGColorSpaceModelRGB = 1,
    kCGColorSpaceModelIndexed = 5,
};

extern "C" {
CGColorSpaceRef CGColorSpaceCreateDeviceGray(void);
CGColorSpaceRef CGColorSpaceCreateDeviceRGB(void);
CGColorSpaceModel CGColorSpaceGetModel(CGColorSpaceRef space);
void CGColorSpaceRelease(CGColorSpaceRef space);
}

// What images take their bytes from.
typedef struct CGDataProvider* CGDataProviderRef;

extern "C" {
CGDataProviderRef CGDataProviderRetain(CGDataProviderRef provider);
void CGDataProviderRelease(CGDataProviderRef provider);
}

// Bitmap images and image masks. Getters answer 0 or NULL for NULL, and Retain and Release take it.
typedef struct CGImage* CGImageRef;

typedef uint32_t CGImageAlphaInfo;
// An alpha kind and a byte order.
typedef uint32_t CGBitmapInfo;

enum : CGBitmapInfo { kCGBitmapByteOrderMask = 0x7000 };

extern "C" {
CGImageRef CGImageRetain(CGImageRef image);
void CGImageRelease(CGImageRef image);
bool CGImageIsMask(CGImageRef image);
size_t CGImageGetWidth(CGImageRef image);
size_t CGImageGetHeight(CGImageRef image);
size_t CGImageGetBitsPerComponent(CGImageRef image);
size_t CGImageGetBitsPerPixel(CGImageRef image);
size_t CGImageGetBytesPerRow(CGImageRef image);
// NULL for a mask.
CGColorSpaceRef CGImageGetColorSpace(CGImageRef image);
CGImageAlphaInfo CGImageGetAlphaInfo(CGImageRef image);
CGDataProviderRef CGImageGetDataProvider(CGImageRef image);
CGBitmapInfo CGImageGetBitmapInfo(CGImageRef image);
CGImageRef CGImageMaskCreate(size_t width, size_t height, size_t bitsPerComponent,
                             size_t bitsPerPixel, size_t bytesPerRow, CGDataProviderRef provider,
                             const CGFloat* decode, bool shouldInterpolate);
CGImageRef CGImageCreateWithMask(CGImageRef image, CGImageRef mask);
}
