// Colours, and the layers that views are drawn by.
#include "device/platform/geometry.h"
#include "device/platform/uikit_colors.h"
#include "device/platform/uikit_handles.h"
#import <QuartzCore/CALayer.h>
#import <UIKit/UIBezierPath.h>
#import <UIKit/UIColor.h>
#include <objc/runtime.h>

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

CALayer* layerOf(const LayerHandle& handle) {
    return static_cast<CALayer*>(handle.object());
}

}  // namespace

UIColor* toNative(const platform::Color& color) {
    const Class colors = static_cast<Class>(objc_getClass("UIColor"));
    for (const NamedColor& named : kNamedColors) {
        if (named.color == color) {
            return named.send(colors);
        }
    }
    return [colors colorWithRed:color.red green:color.green blue:color.blue alpha:color.alpha];
}

platform::Rect LayerHandle::bounds() const {
    return fromNative([layerOf(*this) bounds]);
}

void LayerHandle::renderInContext(const platform::GraphicsContextRef& context) {
    if (context != nullptr) {
        [layerOf(*this) renderInContext:static_cast<struct CGContext*>(context->native())];
    }
}

void LayerHandle::setOpacity(float opacity) {
    [layerOf(*this) setOpacity:opacity];
}

void LayerHandle::setMasksToBounds(bool masks) {
    [layerOf(*this) setMasksToBounds:masks];
}

void LayerHandle::setShadowColor(const platform::Color& color) {
    [layerOf(*this) setShadowColor:[toNative(color) CGColor]];
}

void LayerHandle::setShadowOpacity(float opacity) {
    [layerOf(*this) setShadowOpacity:opacity];
}

void LayerHandle::setShadowOffset(platform::Size offset) {
    [layerOf(*this) setShadowOffset:toNative(offset)];
}

void LayerHandle::setShadowRadius(double radius) {
    [layerOf(*this) setShadowRadius:radius];
}

void LayerHandle::setShadowPathRect(const platform::Rect& rect) {
    const Class paths = static_cast<Class>(objc_getClass("UIBezierPath"));
    [layerOf(*this) setShadowPath:[[paths bezierPathWithRect:toNative(rect)] CGPath]];
}

}  // namespace velmoranth::device
