// UIFont, as far as the library sends to it.
#pragma once

#include <CoreGraphics/CGGeometry.h>
#import <Foundation/Foundation.h>

@interface UIFont : NSObject
+ (UIFont*)fontWithName:(NSString*)name size:(CGFloat)size;
@end
