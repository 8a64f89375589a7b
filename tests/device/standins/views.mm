#import "device/standins/views.h"

#include <algorithm>

using namespace velmoranth::standins;

@protocol SizedImage
- (CGSize)size;
@end

namespace {

UIView* firstWithTag(UIView* view, NSInteger tag) {
    if (view->_tag == tag) {
        return view;
    }
    for (id subview in view->_subviews) {
        if ([subview isKindOfClass:[UIView class]]) {
            if (UIView* const found = firstWithTag(subview, tag)) {
                return found;
            }
        }
    }
    return nil;
}

}  // namespace

namespace velmoranth::standins {

void leaveSuperview(UIView* view) {
    if (view != nil && view->_superview != nil) {
        [[view retain] autorelease];
        [view->_superview->_subviews removeObjectIdenticalTo:view];
        view->_superview = nil;
    }
}

void insertInto(UIView* superview, UIView* view, NSInteger index) {
    if (view == nil) {
        return;
    }
    [view retain];
    leaveSuperview(view);
    const auto count = static_cast<NSInteger>([superview->_subviews count]);
    [superview->_subviews
        insertObject:view
             atIndex:static_cast<NSUInteger>(std::clamp<NSInteger>(index, 0, count))];
    view->_superview = superview;
    [view release];
}

}  // namespace velmoranth::standins

@implementation UIView (WithoutANote)

- (id)initWithoutANoteWithFrame:(CGRect)frame {
    if ((self = [super init])) {
        _frame = frame;
        _subviews = [[NSMutableArray alloc] init];
        _gestureRecognizers = [[NSMutableArray alloc] init];
        _layer = [[CALayer alloc] init];
        _layer->_bounds.size = frame.size;
        _layer->_view = self;
    }
    return self;
}

@end

@implementation UIView

- (id)init {
    const Noted noted = received(self, _cmd);
    return noted.answered([self initWithoutANoteWithFrame:CGRect{}]);
}

- (id)initWithFrame:(CGRect)frame {
    const Noted noted = received(self, _cmd, frame);
    if (const auto other = answerSet(self, _cmd)) {
        [*other retain];
        [self release];
        return noted.answered(*other);
    }
    return noted.answered([self initWithoutANoteWithFrame:frame]);
}

- (void)dealloc {
    for (id subview in _subviews) {
        if ([subview isKindOfClass:[UIView class]]) {
            static_cast<UIView*>(subview)->_superview = nil;
        }
    }
    [_subviews release];
    [_gestureRecognizers release];
    [_backgroundColor release];
    if (_layer != nil) {  // it has been initialised
        _layer->_view = nil;
    }
    [_layer release];
    [super dealloc];
}

- (NSInteger)tag {
    received(self, _cmd);
    return _tag;
}

- (void)setTag:(NSInteger)tag {
    received(self, _cmd, tag);
    _tag = tag;
}

- (CGRect)frame {
    received(self, _cmd);
    return _frame;
}

- (void)setFrame:(CGRect)frame {
    received(self, _cmd, frame);
    _frame = frame;
    _layer->_bounds.size = frame.size;
}

- (CGRect)bounds {
    received(self, _cmd);
    return {{0, 0}, _frame.size};
}

- (NSArray*)subviews {
    received(self, _cmd);
    return [[_subviews copy] autorelease];
}

- (UIView*)superview {
    received(self, _cmd);
    return _superview;
}

- (void)addSubview:(UIView*)view {
    received(self, _cmd, view);
    insertInto(self, view, NSIntegerMax);
}

- (void)insertSubview:(UIView*)view atIndex:(NSInteger)index {
    received(self, _cmd, view, index);
    insertInto(self, view, index);
}

- (void)removeFromSuperview {
    received(self, _cmd);
    leaveSuperview(self);
}

- (UIView*)viewWithTag:(NSInteger)tag {
    received(self, _cmd, tag);
    return firstWithTag(self, tag);
}

- (void)setBackgroundColor:(UIColor*)color {
    received(self, _cmd, color);
    replace(_backgroundColor, color);
}

- (void)setClipsToBounds:(BOOL)clips {
    received(self, _cmd, clips);
    _clipsToBounds = clips;
}

- (CGFloat)alpha {
    received(self, _cmd);
    return numberAnswer(self, _cmd, static_cast<double>(_layer->_opacity));
}

- (void)setAlpha:(CGFloat)alpha {
    received(self, _cmd, alpha);
    _layer->_opacity = static_cast<float>(std::clamp(alpha, 0.0, 1.0));
}

- (BOOL)isHidden {
    received(self, _cmd);
    return _hidden;
}

- (void)setHidden:(BOOL)hidden {
    received(self, _cmd, hidden);
    _hidden = hidden;
}

- (void)addGestureRecognizer:(UIGestureRecognizer*)recognizer {
    received(self, _cmd, recognizer);
    [_gestureRecognizers addObject:recognizer];
}

- (CALayer*)layer {
    received(self, _cmd);
    return _layer;
}

- (void)layoutSubviews {
    received(self, _cmd);
}

+ (void)animateWithDuration:(NSTimeInterval)duration
                 animations:(void (^)(void))animations
                 completion:(void (^)(BOOL finished))completion {
    animate(self, _cmd, {wordsOf(duration)}, animations, completion);
}

+ (void)animateWithDuration:(NSTimeInterval)duration
                      delay:(NSTimeInterval)delay
     usingSpringWithDamping:(CGFloat)damping
      initialSpringVelocity:(CGFloat)velocity
                    options:(NSUInteger)options
                 animations:(void (^)(void))animations
                 completion:(void (^)(BOOL finished))completion {
    animate(
        self, _cmd,
        {wordsOf(duration), wordsOf(delay), wordsOf(damping), wordsOf(velocity), wordsOf(options)},
        animations, completion);
}

@end

@implementation UIImageView

- (id)initWithImage:(UIImage*)image {
    const Noted noted = received(self, _cmd, image);
    const CGSize size = image == nil ? CGSize{} : [static_cast<id<SizedImage>>(image) size];
    if ((self = [super initWithoutANoteWithFrame:CGRect{{0, 0}, size}])) {
        _image = [static_cast<id>(image) retain];
    }
    return noted.answered(self);
}

- (void)dealloc {
    [static_cast<id>(_image) release];
    [super dealloc];
}

- (UIImage*)image {
    received(self, _cmd);
    return _image;
}

- (void)setImage:(UIImage*)image {
    received(self, _cmd, image);
    replace(_image, image);
}

@end

@implementation UILabel

- (void)dealloc {
    [static_cast<id>(_font) release];
    [_text release];
    [_textColor release];
    [_shadowColor release];
    [super dealloc];
}

- (void)setFont:(UIFont*)font {
    received(self, _cmd, font);
    replace(_font, font);
}

- (void)setTextAlignment:(NSInteger)alignment {
    received(self, _cmd, alignment);
    _textAlignment = alignment;
}

- (void)setText:(NSString*)text {
    received(self, _cmd, text);
    replace(_text, text);
}

- (void)setTextColor:(UIColor*)color {
    received(self, _cmd, color);
    replace(_textColor, color);
}

- (void)setShadowColor:(UIColor*)color {
    received(self, _cmd, color);
    replace(_shadowColor, color);
}

- (void)setShadowOffset:(CGSize)offset {
    received(self, _cmd, offset);
    _shadowOffset = offset;
}

@end
