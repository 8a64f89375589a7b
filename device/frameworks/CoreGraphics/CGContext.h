// Contexts to draw into, those of bitmaps, and gradients to draw.
#pragma once

#include <CoreGraphics/CGImage.h>

typedef struct CGGradient* CGGradientRef;

typedef uint32_t CGGradientDrawingOptions;

extern "C" {
// `count` stops, each with the space's components and alpha; NULL locations are evenly spread.
CGGradientRef CGGradientCreateWithColorComponents(CGColorSpaceRef space, const CGFloat* components,
                                                  const CGFloat* locations, size_t count);
CGGradientRef CGGradientRetain(CGGradientRef gradient);
void CGGradientRelease(CGGradientRef gradient);
}

typedef struct CGContext* CGContextRef;

extern "C" {
CGContextRef CGContextRetain(CGContextRef context);
void CGContextRelease(CGContextRef context);
void CGContextTranslateCTM(CGContextRef context, CGFloat x, CGFloat y);
void CGContextDrawLinearGradient(CGContextRef context, CGGradientRef gradient, CGPoint start,
                                 CGPoint end, CGGradientDrawingOptions options);
// NULL data: memory of its own, zeroed. 0 bytes a row: as it chooses.
CGContextRef CGBitmapContextCreate(void* data, size_t width, size_t height, size_t bitsPerComponent,
                                   size_t bytesPerRow, CGColorSpaceRef space,
                                   CGBitmapInfo bitmapInfo);
CGImageRef CGBitmapContextCreateImage(CGContextRef context);
}
