// Paths.
#pragma once

#include <CoreGraphics/CGGeometry.h>
#import <Foundation/Foundation.h>

@interface UIBezierPath : NSObject
+ (UIBezierPath*)bezierPathWithRect:(CGRect)rect;
// Owned by the path.
- (const struct CGPath*)CGPath;
@end
