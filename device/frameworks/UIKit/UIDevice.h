// The device and its screen.
#pragma once

#include <CoreGraphics/CGGeometry.h>
#import <Foundation/Foundation.h>

@interface UIDevice : NSObject
+ (UIDevice*)currentDevice;
- (NSInteger)userInterfaceIdiom;
- (NSInteger)orientation;
@end

@interface UIScreen : NSObject
+ (UIScreen*)mainScreen;
- (CGFloat)scale;
- (CGRect)bounds;
@end
