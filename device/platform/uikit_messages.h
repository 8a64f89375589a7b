// The messages behind the handles of views, layers and controllers, on plain objects, so that the
// handles of many interfaces share one body each.
#pragma once

#include "platform/uikit.h"

#include "device/platform/handle.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

namespace velmoranth::device {

// A handle that fits the object's class. Nil for nil and for what is no view.
[[nodiscard]] platform::ViewRef viewOf(id object);

// Handles of an array's members that have the interface, in their order. Nothing for nil and for
// what is no array.
template <class Interface>
[[nodiscard]] std::vector<std::shared_ptr<Interface>> membersOf(id array) {
    std::vector<std::shared_ptr<Interface>> members;
    if ([array isKindOfClass:[NSArray class]]) {
        for (NSUInteger i = 0; i < [static_cast<NSArray*>(array) count]; ++i) {
            const platform::ObjectRef member =
                wrapAny([static_cast<NSArray*>(array) objectAtIndex:i]);
            if (auto fitting = std::dynamic_pointer_cast<Interface>(member)) {
                members.push_back(std::move(fitting));
            }
        }
    }
    return members;
}

struct ViewMessages {
    [[nodiscard]] static int tag(id view);
    static void setTag(id view, int tag);
    [[nodiscard]] static platform::Rect frame(id view);
    static void setFrame(id view, const platform::Rect& frame);
    [[nodiscard]] static platform::Rect bounds(id view);
    [[nodiscard]] static std::vector<platform::ViewRef> subviews(id view);
    static void addSubview(id view, id subview);
    static void insertSubviewAtIndex(id view, id subview, std::size_t index);
    static void removeFromSuperview(id view);
    [[nodiscard]] static platform::ViewRef viewWithTag(id view, int tag);
    static void setBackgroundColor(id view, const platform::Color& color);
    static void setClipsToBounds(id view, bool clips);
    static void setAlpha(id view, double alpha);
    static void setHidden(id view, bool hidden);
    static void addGestureRecognizer(id view, id recognizer);
    [[nodiscard]] static platform::LayerRef layer(id view);
};

struct ViewControllerMessages {
    [[nodiscard]] static platform::ViewRef view(id controller);
    static void presentAnimated(id controller, id presented, bool animated);
};

}  // namespace velmoranth::device
