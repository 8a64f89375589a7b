// Gradients.
#pragma once

#include <CoreGraphics/CGColorSpace.h>
#include <CoreGraphics/CGGeometry.h>

typedef struct CGGradient* CGGradientRef;

typedef uint32_t CGGradientDrawingOptions;

extern "C" {
// `count` stops, each with the space's components and alpha; NULL locations are evenly spread.
CGGradientRef CGGradientCreateWithColorComponents(CGColorSpaceRef space, const CGFloat* components,
                                                  const CGFloat* locations, size_t count);
CGGradientRef CGGradientRetain(CGGradientRef gradient);
void CGGradientRelease(CGGradientRef gradient);
}
