// The app of the process.
#pragma once

#import <UIKit/UIViewController.h>

@interface UIApplication : NSObject
+ (UIApplication*)sharedApplication;
- (UIWindow*)keyWindow;
@end
