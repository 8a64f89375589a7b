#import "device/standins/layers.h"

namespace velmoranth::standins {
namespace {

void (*layerRenderer)(CALayer* layer, struct CGContext* context) = nullptr;

UIColor* colorOf(CGFloat red, CGFloat green, CGFloat blue, CGFloat alpha) {
    UIColor* const color = [[[UIColor alloc] init] autorelease];
    color->_color = {red, green, blue, alpha};
    return color;
}

}  // namespace

void fire(UIGestureRecognizer* recognizer) {
    [recognizer->_target performSelector:recognizer->_action];
}

void setLayerRenderer(void (*render)(CALayer* layer, struct CGContext* context)) {
    layerRenderer = render;
}

}  // namespace velmoranth::standins

using namespace velmoranth::standins;

@implementation UIColor

+ (UIColor*)colorWithRed:(CGFloat)red green:(CGFloat)green blue:(CGFloat)blue alpha:(CGFloat)alpha {
    received(self, _cmd, red, green, blue, alpha);
    return colorOf(red, green, blue, alpha);
}

+ (UIColor*)clearColor {
    received(self, _cmd);
    return colorOf(0, 0, 0, 0);
}

+ (UIColor*)blackColor {
    received(self, _cmd);
    return colorOf(0, 0, 0, 1);
}

+ (UIColor*)whiteColor {
    received(self, _cmd);
    return colorOf(1, 1, 1, 1);
}

+ (UIColor*)grayColor {
    received(self, _cmd);
    return colorOf(0.5, 0.5, 0.5, 1);
}

- (struct CGColor*)CGColor {
    return &_color;
}

@end

@implementation UIBezierPath

+ (UIBezierPath*)bezierPathWithRect:(CGRect)rect {
    received(self, _cmd, rect);
    UIBezierPath* const path = [[[self alloc] init] autorelease];
    path->_path.rect = rect;
    return path;
}

- (const struct CGPath*)CGPath {
    return &_path;
}

@end

@implementation CALayer

- (id)init {
    if ((self = [super init])) {
        _opacity = 1;
        _shadowColor = {0, 0, 0, 1};
        _shadowOffset = {0, -3};
        _shadowRadius = 3;
    }
    return self;
}

- (CGRect)bounds {
    received(self, _cmd);
    return _bounds;
}

- (void)renderInContext:(struct CGContext*)context {
    received(self, _cmd, context);
    if (layerRenderer != nullptr) {
        layerRenderer(self, context);
    }
}

- (void)setOpacity:(float)opacity {
    received(self, _cmd, opacity);
    _opacity = opacity;
}

- (void)setMasksToBounds:(BOOL)masks {
    received(self, _cmd, masks);
    _masksToBounds = masks;
}

- (void)setShadowColor:(struct CGColor*)color {
    received(self, _cmd, color);
    _shadowColor = color == nullptr ? CGColor{} : *color;
}

- (void)setShadowOpacity:(float)opacity {
    received(self, _cmd, opacity);
    _shadowOpacity = opacity;
}

- (void)setShadowOffset:(CGSize)offset {
    received(self, _cmd, offset);
    _shadowOffset = offset;
}

- (void)setShadowRadius:(CGFloat)radius {
    received(self, _cmd, radius);
    _shadowRadius = radius;
}

- (void)setShadowPath:(const struct CGPath*)path {
    received(self, _cmd, path);
    _hasShadowPath = path != nullptr;
    _shadowPathRect = path == nullptr ? CGRect{} : path->rect;
}

@end

@implementation UIGestureRecognizer

- (id)initWithTarget:(id)target action:(SEL)action {
    received(self, _cmd, target, action);
    if ((self = [super init])) {
        _target = target;
        _action = action;
    }
    return self;
}

@end

@implementation UITapGestureRecognizer
@end
