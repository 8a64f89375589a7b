// Alerts and their buttons.
#pragma once

#import <UIKit/UIViewController.h>

@interface UIAlertAction : NSObject
+ (id)actionWithTitle:(NSString*)title
                style:(NSInteger)style
              handler:(void (^)(UIAlertAction* action))handler;
@end

@interface UIAlertController : UIViewController
+ (id)alertControllerWithTitle:(NSString*)title
                       message:(NSString*)message
                preferredStyle:(NSInteger)style;
- (void)addAction:(UIAlertAction*)action;
@end
