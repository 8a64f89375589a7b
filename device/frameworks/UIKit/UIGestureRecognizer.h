// Gestures.
#pragma once

#import <Foundation/Foundation.h>

@interface UIGestureRecognizer : NSObject
- (id)initWithTarget:(id)target action:(SEL)action;
@end

@interface UITapGestureRecognizer : UIGestureRecognizer
@end
