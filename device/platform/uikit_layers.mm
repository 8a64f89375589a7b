// Colours, and the layers that views are drawn by.
#include "device/platform/geometry.h"
#include "device/platform/uikit_handles.h"
#import <QuartzCore/CALayer.h>
#import <UIKit/UIKit.h>

namespace velmoranth::device {

UIColor* toNative(const platform::Color& color) {
    using Name = platform::Color::Name;
    const Class colors = classNamed("UIColor");
    switch (color.name) {
        case Name::clear:
            return [colors clearColor];
        case Name::black:
            return [colors blackColor];
        case Name::white:
            return [colors whiteColor];
        case Name::gray:
            return [colors grayColor];
        case Name::none:
            break;
    }
    return [colors colorWithRed:color.red green:color.green blue:color.blue alpha:color.alpha];
}

platform::Rect HandleFor<platform::Layer>::bounds() const {
    return fromNative([object() bounds]);
}

void HandleFor<platform::Layer>::renderInContext(const platform::GraphicsContextRef& context) {
    if (context != nullptr) {
        [object() renderInContext:static_cast<struct CGContext*>(context->native())];
    }
}

void HandleFor<platform::Layer>::setOpacity(float opacity) {
    [object() setOpacity:opacity];
}

void HandleFor<platform::Layer>::setMasksToBounds(bool masks) {
    [object() setMasksToBounds:masks];
}

void HandleFor<platform::Layer>::setShadowColor(const platform::Color& color) {
    [object() setShadowColor:[toNative(color) CGColor]];
}

void HandleFor<platform::Layer>::setShadowOpacity(float opacity) {
    [object() setShadowOpacity:opacity];
}

void HandleFor<platform::Layer>::setShadowOffset(platform::Size offset) {
    [object() setShadowOffset:toNative(offset)];
}

void HandleFor<platform::Layer>::setShadowRadius(double radius) {
    [object() setShadowRadius:radius];
}

void HandleFor<platform::Layer>::setShadowPathRect(const platform::Rect& rect) {
    [object()
        setShadowPath:[[classNamed("UIBezierPath") bezierPathWithRect:toNative(rect)] CGPath]];
}

}  // namespace velmoranth::device
