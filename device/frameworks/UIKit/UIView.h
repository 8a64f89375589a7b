// Views and their animations.
#pragma once

#include <CoreGraphics/CGGeometry.h>
#import <Foundation/Foundation.h>
#import <QuartzCore/CALayer.h>
#import <UIKit/UIColor.h>
#import <UIKit/UIGestureRecognizer.h>

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
