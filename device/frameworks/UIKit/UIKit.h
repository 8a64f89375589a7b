// UIKit, as far as the library calls it.
#pragma once

#include <CoreGraphics/CGContext.h>
#import <Foundation/Foundation.h>
#import <QuartzCore/CALayer.h>

#include <cstdint>

@class CIImage;
@class CUINamedVectorGlyph;

@interface UIColor : NSObject
+ (UIColor*)colorWithRed:(CGFloat)red green:(CGFloat)green blue:(CGFloat)blue alpha:(CGFloat)alpha;
+ (UIColor*)clearColor;
+ (UIColor*)blackColor;
+ (UIColor*)whiteColor;
+ (UIColor*)grayColor;
// Owned by the colour.
- (struct CGColor*)CGColor;
@end

@interface UIBezierPath : NSObject
+ (UIBezierPath*)bezierPathWithRect:(CGRect)rect;
// Owned by the path.
- (const struct CGPath*)CGPath;
@end

@interface UIFont : NSObject
+ (UIFont*)fontWithName:(NSString*)name size:(CGFloat)size;
@end

@interface UIImage : NSObject
+ (UIImage*)imageWithContentsOfFile:(NSString*)path;
+ (UIImage*)imageWithCGImage:(CGImageRef)image;
+ (UIImage*)_applicationIconImageForBundleIdentifier:(NSString*)identifier
                                              format:(int)format
                                               scale:(CGFloat)scale;
- (CGSize)size;
- (CGFloat)scale;
- (CGImageRef)CGImage;
- (CIImage*)CIImage;
- (void)drawInRect:(CGRect)rect;
@end

extern "C" NSData* UIImagePNGRepresentation(UIImage* image);

// The stack of image contexts of the calling thread.
extern "C" {
void UIGraphicsBeginImageContextWithOptions(CGSize size, BOOL opaque, CGFloat scale);
CGContextRef UIGraphicsGetCurrentContext(void);
UIImage* UIGraphicsGetImageFromCurrentImageContext(void);
void UIGraphicsEndImageContext(void);
}

@interface UIGestureRecognizer : NSObject
- (id)initWithTarget:(id)target action:(SEL)action;
@end

@interface UITapGestureRecognizer : UIGestureRecognizer
@end

// Views and their animations.
@interface UIView : NSObject
- (id)initWithFrame:(CGRect)frame;
- (NSInteger)tag;
- (void)setTag:(NSInteger)tag;
- (CGRect)frame;
- (void)setFrame:(CGRect)frame;
- (CGRect)bounds;
- (NSArray*)subviews;
- (void)addSubview:(UIView*)view;
- (void)insertSubview:(UIView*)view atIndex:(NSInteger)index;
- (void)removeFromSuperview;
- (UIView*)viewWithTag:(NSInteger)tag;
- (void)setBackgroundColor:(UIColor*)color;
- (void)setClipsToBounds:(BOOL)clips;
- (void)setAlpha:(CGFloat)alpha;
- (void)setHidden:(BOOL)hidden;
- (void)addGestureRecognizer:(UIGestureRecognizer*)recognizer;
- (CALayer*)layer;

+ (void)animateWithDuration:(NSTimeInterval)duration
                 animations:(void (^)(void))animations
                 completion:(void (^)(BOOL finished))completion;
+ (void)animateWithDuration:(NSTimeInterval)duration
                      delay:(NSTimeInterval)delay
     usingSpringWithDamping:(CGFloat)damping
      initialSpringVelocity:(CGFloat)velocity
                    options:(NSUInteger)options
                 animations:(void (^)(void))animations
                 completion:(void (^)(BOOL finished))completion;
@end

@interface UIImageView : UIView
- (id)initWithImage:(UIImage*)image;
- (UIImage*)image;
- (void)setImage:(UIImage*)image;
@end

@interface UILabel : UIView
- (void)setFont:(UIFont*)font;
- (void)setTextAlignment:(NSInteger)alignment;
- (void)setText:(NSString*)text;
- (void)setTextColor:(UIColor*)color;
- (void)setShadowColor:(UIColor*)color;
- (void)setShadowOffset:(CGSize)offset;
@end

// View controllers and the windows that show them.
@interface UIViewController : NSObject
- (UIView*)view;
- (void)presentViewController:(UIViewController*)controller
                     animated:(BOOL)animated
                   completion:(void (^)(void))completion;
@end

@interface UIWindow : UIView
- (UIViewController*)rootViewController;
@end

// Alerts and their buttons.
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

// The app of the process.
@interface UIApplication : NSObject
+ (UIApplication*)sharedApplication;
- (UIWindow*)keyWindow;
@end

// The device and its screen.
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

@interface _UIFeedback : NSObject
- (std::uint32_t)_effectiveSystemSoundID;
@end

@interface _UIImageContent : NSObject
- (CUINamedVectorGlyph*)vectorGlyph;
@end
