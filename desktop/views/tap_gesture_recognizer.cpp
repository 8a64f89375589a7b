#include "desktop/views/tap_gesture_recognizer.h"

#include <utility>

namespace velmoranth::desktop {

TapGestureRecognizer::TapGestureRecognizer(platform::Object& target, platform::Selector action)
    : target_(&target), action_(std::move(action)) {
    if (auto* const node = dynamic_cast<ViewNode*>(&target)) {
        node_ = node->weak_from_this();
    }
}

platform::ObjectRef TapGestureRecognizer::target() const {
    const std::shared_ptr<ViewNode> node = node_.lock();
    return node == nullptr ? nullptr : platform::ObjectRef(node, target_);
}

}  // namespace velmoranth::desktop
