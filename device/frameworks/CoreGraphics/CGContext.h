// Contexts to draw into, and those of bitmaps.
#pragma once

#include <CoreGraphics/CGGeometry.h>
#include <CoreGraphics/CGGradient.h>
#include <CoreGraphics/CGImage.h>

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
