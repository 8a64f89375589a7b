// The messages of views, image views, labels and windows.
#include "device/platform/geometry.h"
#include "device/platform/uikit_colors.h"
#include "device/platform/uikit_handles.h"
#import <UIKit/UIImageView.h>
#import <UIKit/UILabel.h>
#import <UIKit/UIViewController.h>

#include <algorithm>
#include <limits>

namespace velmoranth::device {
namespace {

UIView* asView(id object) {
    return static_cast<UIView*>(object);
}

UILabel* labelOf(const LabelHandle& handle) {
    return static_cast<UILabel*>(handle.object());
}

}  // namespace

platform::ViewRef viewOf(id object) {
    return std::dynamic_pointer_cast<platform::View>(wrapAny(object));
}

// The nearer end for a tag that is no int: never one that the engine gives.
int ViewMessages::tag(id view) {
    using Limits = std::numeric_limits<int>;
    return static_cast<int>(
        std::clamp<NSInteger>([asView(view) tag], Limits::min(), Limits::max()));
}

void ViewMessages::setTag(id view, int tag) {
    [asView(view) setTag:tag];
}

platform::Rect ViewMessages::frame(id view) {
    return fromNative([asView(view) frame]);
}

void ViewMessages::setFrame(id view, const platform::Rect& frame) {
    [asView(view) setFrame:toNative(frame)];
}

platform::Rect ViewMessages::bounds(id view) {
    return fromNative([asView(view) bounds]);
}

std::vector<platform::ViewRef> ViewMessages::subviews(id view) {
    return membersOf<platform::View>([asView(view) subviews]);
}

void ViewMessages::addSubview(id view, id subview) {
    if (subview != nil) {
        [asView(view) addSubview:asView(subview)];
    }
}

void ViewMessages::insertSubviewAtIndex(id view, id subview, std::size_t index) {
    constexpr std::size_t kLast = std::numeric_limits<NSInteger>::max();
    if (subview != nil) {
        [asView(view) insertSubview:asView(subview)
                            atIndex:static_cast<NSInteger>(std::min(index, kLast))];
    }
}

void ViewMessages::removeFromSuperview(id view) {
    [asView(view) removeFromSuperview];
}

platform::ViewRef ViewMessages::viewWithTag(id view, int tag) {
    return viewOf([asView(view) viewWithTag:tag]);
}

void ViewMessages::setBackgroundColor(id view, const platform::Color& color) {
    [asView(view) setBackgroundColor:toNative(color)];
}

void ViewMessages::setClipsToBounds(id view, bool clips) {
    [asView(view) setClipsToBounds:clips];
}

void ViewMessages::setAlpha(id view, double alpha) {
    [asView(view) setAlpha:alpha];
}

void ViewMessages::setHidden(id view, bool hidden) {
    [asView(view) setHidden:hidden];
}

void ViewMessages::addGestureRecognizer(id view, id recognizer) {
    if (recognizer != nil) {
        [asView(view) addGestureRecognizer:static_cast<UIGestureRecognizer*>(recognizer)];
    }
}

platform::LayerRef ViewMessages::layer(id view) {
    return wrap<platform::Layer>([asView(view) layer]);
}

platform::ImageRef ImageViewHandle::image() const {
    return wrap<platform::Image>([static_cast<UIImageView*>(object()) image]);
}

void ImageViewHandle::setImage(const platform::ImageRef& image) {
    [static_cast<UIImageView*>(object()) setImage:static_cast<UIImage*>(nativeOf(image))];
}

void LabelHandle::setFont(const platform::FontRef& font) {
    [labelOf(*this) setFont:static_cast<UIFont*>(nativeOf(font))];
}

void LabelHandle::setTextAlignment(platform::TextAlignment alignment) {
    [labelOf(*this) setTextAlignment:static_cast<NSInteger>(alignment)];
}

void LabelHandle::setText(const platform::NullableString& text) {
    [labelOf(*this) setText:stringOf(text)];
}

void LabelHandle::setTextColor(const platform::Color& color) {
    [labelOf(*this) setTextColor:toNative(color)];
}

void LabelHandle::setShadowColor(const platform::Color& color) {
    [labelOf(*this) setShadowColor:toNative(color)];
}

void LabelHandle::setShadowOffset(platform::Size offset) {
    [labelOf(*this) setShadowOffset:toNative(offset)];
}

platform::ViewControllerRef WindowHandle::rootViewController() const {
    return wrap<platform::ViewController>([static_cast<UIWindow*>(object()) rootViewController]);
}

}  // namespace velmoranth::device
