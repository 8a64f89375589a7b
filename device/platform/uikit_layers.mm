// Colours, and the layers that views are drawn by.
#include "device/platform/geometry.h"
#include "device/platform/uikit_handles.h"
#import <QuartzCore/CALayer.h>
#import <UIKit/UIKit.h>

namespace velmoranth::device {
namespace {

struct NamedColor {
    platform::Color color;
    UIColor* (*send)(Class colors);
};

constexpr NamedColor kNamedColors[] = {
    {platform::kClearColor, [](Class colors) { return [colors clearColor]; }},
    {platform::kBlackColor, [](Class colors) { return [colors blackColor]; }},
    {platform::kWhiteColor, [](Class colors) { return [colors whiteColor]; }},
    {platform::kGrayColor, [](Class colors) { return [colors grayColor]; }},
};

}  // namespace

UIColor* toNative(const platform::Color& color) {
    const Class colors = classNamed("UIColor");
    for (const NamedColor& named : kNamedColors) {
        if (named.color == color) {
            return named.send(colors);
        }
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
