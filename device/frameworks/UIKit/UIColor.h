// Colours.
#pragma once

#include <CoreGraphics/CGGeometry.h>
#import <Foundation/Foundation.h>

@interface UIColor : NSObject
+ (UIColor*)colorWithRed:(CGFloat)red green:(CGFloat)green blue:(CGFloat)blue alpha:(CGFloat)alpha;
+ (UIColor*)clearColor;
+ (UIColor*)blackColor;
+ (UIColor*)whiteColor;
+ (UIColor*)grayColor;
// Owned by the colour.
- (struct CGColor*)CGColor;
@end
