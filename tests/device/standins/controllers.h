// Stand-ins of view controllers, windows, alerts, the app, the device and its screen.
#pragma once

#import "device/standins/views.h"

@interface UIViewController : StandIn {
  @public
    UIView* _view;
    UIViewController* _presentedViewController;
}
- (UIView*)view;
- (void)setView:(UIView*)view;
- (void)presentViewController:(UIViewController*)controller
                     animated:(BOOL)animated
                   completion:(void (^)(void))completion;
@end

@interface UIWindow : UIView {
  @public
    UIViewController* _rootViewController;
}
- (UIViewController*)rootViewController;
- (void)setRootViewController:(UIViewController*)controller;
@end

@interface UIAlertAction : StandIn {
  @public
    NSString* _title;
    NSInteger _style;
    void (^_handler)(UIAlertAction* action);
}
+ (id)actionWithTitle:(NSString*)title
                style:(NSInteger)style
              handler:(void (^)(UIAlertAction* action))handler;
@end

@interface UIAlertController : UIViewController {
  @public
    NSString* _title;
    NSString* _message;
    NSInteger _preferredStyle;
    NSMutableArray* _actions;
}
+ (id)alertControllerWithTitle:(NSString*)title
                       message:(NSString*)message
                preferredStyle:(NSInteger)style;
- (void)addAction:(UIAlertAction*)action;
@end

@interface UIApplication : StandIn {
  @public
    UIWindow* _keyWindow;
}
+ (UIApplication*)sharedApplication;
- (UIWindow*)keyWindow;
@end

@interface UIDevice : StandIn {
}
+ (UIDevice*)currentDevice;
- (NSInteger)userInterfaceIdiom;
- (NSInteger)orientation;
@end

@interface UIScreen : StandIn {
}
+ (UIScreen*)mainScreen;
- (CGFloat)scale;
- (CGRect)bounds;
@end

namespace velmoranth::standins {

// Nil when there is none. The app holds it.
void setKeyWindow(UIWindow* window);

// What a touch of an alert's button does.
void choose(UIAlertAction* action);

// No idiom: the device does not respond to userInterfaceIdiom.
void setDevice(std::optional<long> idiom, long orientation);

// Points, and pixels per point; 375 × 667 at 2 until set.
void setScreen(CGSize size, double scale);

}  // namespace velmoranth::standins
