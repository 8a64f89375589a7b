// The messages behind the handles of views, layers and controllers, on plain objects, so that the
// handles of many interfaces share one body each.
#pragma once

#include "platform/uikit.h"

#include "device/platform/handle.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

@class UIGestureRecognizer;
@class UIView;
@class UIViewController;

namespace velmoranth::device {

// A handle that fits the object's class. Nil for nil and for what is no view.
[[nodiscard]] platform::ViewRef viewOf(id object);

// Handles of an array's members that have the interface, in their order. Nothing for nil and for
// what is no array.
template <class Interface>
[[nodiscard]] std::vector<std::shared_ptr<Interface>> membersOf(id array) {
    std::vector<std::shared_ptr<Interface>> members;
    forEach(array, [&members](id element) {
        if (auto fitting = std::dynamic_pointer_cast<Interface>(wrapAny(element))) {
            members.push_back(std::move(fitting));
        }
    });
    return members;
}

struct ViewMessages {
    [[nodiscard]] static int tag(UIView* view);
    static void setTag(UIView* view, int tag);
    [[nodiscard]] static platform::Rect frame(UIView* view);
    static void setFrame(UIView* view, const platform::Rect& frame);
    [[nodiscard]] static platform::Rect bounds(UIView* view);
    [[nodiscard]] static std::vector<platform::ViewRef> subviews(UIView* view);
    static void addSubview(UIView* view, UIView* subview);
    static void insertSubviewAtIndex(UIView* view, UIView* subview, std::size_t index);
    static void removeFromSuperview(UIView* view);
    [[nodiscard]] static platform::ViewRef viewWithTag(UIView* view, int tag);
    static void setBackgroundColor(UIView* view, const platform::Color& color);
    static void setClipsToBounds(UIView* view, bool clips);
    static void setAlpha(UIView* view, double alpha);
    static void setHidden(UIView* view, bool hidden);
    static void addGestureRecognizer(UIView* view, UIGestureRecognizer* recognizer);
    [[nodiscard]] static platform::LayerRef layer(UIView* view);
};

struct ViewControllerMessages {
    [[nodiscard]] static platform::ViewRef view(UIViewController* controller);
    static void presentAnimated(UIViewController* controller, UIViewController* presented,
                                bool animated);
};

}  // namespace velmoranth::device
