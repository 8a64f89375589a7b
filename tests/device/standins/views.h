// Stand-ins of views: a real tree with tags, frames, layers and gestures, image views and labels.
#pragma once

#import "device/standins/layers.h"

@class UIImage;
@class UIFont;

@interface UIView : StandIn {
  @public
    CGRect _frame;
    NSInteger _tag;
    BOOL _hidden;
    BOOL _clipsToBounds;
    UIColor* _backgroundColor;
    NSMutableArray* _subviews;
    UIView* _superview;  // not held
    NSMutableArray* _gestureRecognizers;
    CALayer* _layer;  // has the alpha
}
- (id)initWithFrame:(CGRect)frame;
- (NSInteger)tag;
- (void)setTag:(NSInteger)tag;
- (CGRect)frame;
- (void)setFrame:(CGRect)frame;
- (CGRect)bounds;
- (NSArray*)subviews;
- (UIView*)superview;
- (void)addSubview:(UIView*)view;
- (void)insertSubview:(UIView*)view atIndex:(NSInteger)index;
- (void)removeFromSuperview;
- (UIView*)viewWithTag:(NSInteger)tag;
- (void)setBackgroundColor:(UIColor*)color;
- (void)setClipsToBounds:(BOOL)clips;
- (CGFloat)alpha;
- (void)setAlpha:(CGFloat)alpha;
- (BOOL)isHidden;
- (void)setHidden:(BOOL)hidden;
- (void)addGestureRecognizer:(UIGestureRecognizer*)recognizer;
- (CALayer*)layer;
- (void)layoutSubviews;

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

// For the stand-ins.
@interface UIView (WithoutANote)
- (id)initWithoutANoteWithFrame:(CGRect)frame;
@end

@interface UIImageView : UIView {
  @public
    UIImage* _image;
}
- (id)initWithImage:(UIImage*)image;
- (UIImage*)image;
- (void)setImage:(UIImage*)image;
@end

@interface UILabel : UIView {
  @public
    UIFont* _font;
    NSInteger _textAlignment;
    NSString* _text;
    UIColor* _textColor;
    UIColor* _shadowColor;
    CGSize _shadowOffset;
}
- (void)setFont:(UIFont*)font;
- (void)setTextAlignment:(NSInteger)alignment;
- (void)setText:(NSString*)text;
- (void)setTextColor:(UIColor*)color;
- (void)setShadowColor:(UIColor*)color;
- (void)setShadowOffset:(CGSize)offset;
@end

namespace velmoranth::standins {

// Animations whose completion has not run; the platform keeps both blocks until then.
[[nodiscard]] std::size_t pendingAnimations();
// Runs the completions of all of them, in the order in which they began.
void finishAnimations(bool finished);

// For the stand-ins, without a note: as addSubview: and its like do. Nil does nothing.
void insertInto(UIView* superview, UIView* view, NSInteger index);
void leaveSuperview(UIView* view);
// What both of the class's methods do.
void animate(id views, SEL selector, const std::vector<std::string>& numbers,
             void (^animations)(void), void (^completion)(BOOL finished));

}  // namespace velmoranth::standins
