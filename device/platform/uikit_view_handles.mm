// The messages of views, image views, labels and windows.
#include "device/platform/geometry.h"
#include "device/platform/uikit_handles.h"
#import <UIKit/UIKit.h>

#include <algorithm>
#include <limits>

namespace velmoranth::device {
platform::ViewRef viewOf(id object) {
    return std::dynamic_pointer_cast<platform::View>(wrapAny(object));
}

// The nearer end for a tag that is no int: never one that the engine gives.
int ViewMessages::tag(UIView* view) {
    using Limits = std::numeric_limits<int>;
    return static_cast<int>(std::clamp<NSInteger>([view tag], Limits::min(), Limits::max()));
}

void ViewMessages::setTag(UIView* view, int tag) {
    [view setTag:tag];
}

platform::Rect ViewMessages::frame(UIView* view) {
    return fromNative([view frame]);
}

void ViewMessages::setFrame(UIView* view, const platform::Rect& frame) {
    [view setFrame:toNative(frame)];
}

platform::Rect ViewMessages::bounds(UIView* view) {
    return fromNative([view bounds]);
}

std::vector<platform::ViewRef> ViewMessages::subviews(UIView* view) {
    return membersOf<platform::View>([view subviews]);
}

void ViewMessages::addSubview(UIView* view, UIView* subview) {
    if (subview != nil) {
        [view addSubview:subview];
    }
}

void ViewMessages::insertSubviewAtIndex(UIView* view, UIView* subview, std::size_t index) {
    constexpr std::size_t kLast = std::numeric_limits<NSInteger>::max();
    if (subview != nil) {
        [view insertSubview:subview atIndex:static_cast<NSInteger>(std::min(index, kLast))];
    }
}

void ViewMessages::removeFromSuperview(UIView* view) {
    [view removeFromSuperview];
}

platform::ViewRef ViewMessages::viewWithTag(UIView* view, int tag) {
    return viewOf([view viewWithTag:tag]);
}

void ViewMessages::setBackgroundColor(UIView* view, const platform::Color& color) {
    [view setBackgroundColor:toNative(color)];
}

void ViewMessages::setClipsToBounds(UIView* view, bool clips) {
    [view setClipsToBounds:clips];
}

void ViewMessages::setAlpha(UIView* view, double alpha) {
    [view setAlpha:alpha];
}

void ViewMessages::setHidden(UIView* view, bool hidden) {
    [view setHidden:hidden];
}

void ViewMessages::addGestureRecognizer(UIView* view, UIGestureRecognizer* recognizer) {
    if (recognizer != nil) {
        [view addGestureRecognizer:recognizer];
    }
}

platform::LayerRef ViewMessages::layer(UIView* view) {
    return wrap<platform::Layer>([view layer]);
}

platform::ImageRef HandleFor<platform::ImageView>::image() const {
    return wrap<platform::Image>([object() image]);
}

void HandleFor<platform::ImageView>::setImage(const platform::ImageRef& image) {
    [object() setImage:nativeOf(image)];
}

void HandleFor<platform::Label>::setFont(const platform::FontRef& font) {
    [object() setFont:nativeOf(font)];
}

void HandleFor<platform::Label>::setTextAlignment(platform::TextAlignment alignment) {
    [object() setTextAlignment:static_cast<NSInteger>(alignment)];
}

void HandleFor<platform::Label>::setText(const platform::NullableString& text) {
    [object() setText:stringOf(text)];
}

void HandleFor<platform::Label>::setTextColor(const platform::Color& color) {
    [object() setTextColor:toNative(color)];
}

void HandleFor<platform::Label>::setShadowColor(const platform::Color& color) {
    [object() setShadowColor:toNative(color)];
}

void HandleFor<platform::Label>::setShadowOffset(platform::Size offset) {
    [object() setShadowOffset:toNative(offset)];
}

platform::ViewControllerRef HandleFor<platform::Window>::rootViewController() const {
    return wrap<platform::ViewController>([object() rootViewController]);
}

}  // namespace velmoranth::device
