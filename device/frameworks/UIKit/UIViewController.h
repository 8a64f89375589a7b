// View controllers and the windows that show them.
#pragma once

#import <UIKit/UIView.h>

@interface UIViewController : NSObject
- (UIView*)view;
- (void)presentViewController:(UIViewController*)controller
                     animated:(BOOL)animated
                   completion:(void (^)(void))completion;
@end

@interface UIWindow : UIView
- (UIViewController*)rootViewController;
@end
