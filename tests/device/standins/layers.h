// Stand-ins of colours, paths, layers and gestures.
#pragma once

#import "device/standins/messages.h"

struct CGColor {
    CGFloat red;
    CGFloat green;
    CGFloat blue;
    CGFloat alpha;
};

struct CGPath {
    CGRect rect;
};

@interface UIColor : StandIn {
  @public
    struct CGColor _color;
}
+ (UIColor*)colorWithRed:(CGFloat)red green:(CGFloat)green blue:(CGFloat)blue alpha:(CGFloat)alpha;
+ (UIColor*)clearColor;
+ (UIColor*)blackColor;
+ (UIColor*)whiteColor;
+ (UIColor*)grayColor;
- (struct CGColor*)CGColor;
@end

@interface UIBezierPath : StandIn {
  @public
    struct CGPath _path;
}
+ (UIBezierPath*)bezierPathWithRect:(CGRect)rect;
- (const struct CGPath*)CGPath;
@end

@class UIView;

@interface CALayer : StandIn {
  @public
    UIView* _view;  // whose layer it is; not held
    CGRect _bounds;
    float _opacity;
    BOOL _masksToBounds;
    struct CGColor _shadowColor;
    float _shadowOpacity;
    CGSize _shadowOffset;
    CGFloat _shadowRadius;
    CGRect _shadowPathRect;
    BOOL _hasShadowPath;
}
- (CGRect)bounds;
- (void)renderInContext:(struct CGContext*)context;
- (void)setOpacity:(float)opacity;
- (void)setMasksToBounds:(BOOL)masks;
- (void)setShadowColor:(struct CGColor*)color;
- (void)setShadowOpacity:(float)opacity;
- (void)setShadowOffset:(CGSize)offset;
- (void)setShadowRadius:(CGFloat)radius;
- (void)setShadowPath:(const struct CGPath*)path;
@end

@interface UIGestureRecognizer : StandIn {
  @public
    id _target;  // not held
    SEL _action;
}
- (id)initWithTarget:(id)target action:(SEL)action;
@end

@interface UITapGestureRecognizer : UIGestureRecognizer {
}
@end

namespace velmoranth::standins {

// What the user's gesture does: sends the action to the target.
void fire(UIGestureRecognizer* recognizer);

// What renders a layer; nothing until set.
void setLayerRenderer(void (*render)(CALayer* layer, struct CGContext* context));

}  // namespace velmoranth::standins
