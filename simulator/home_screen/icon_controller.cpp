#include "simulator/home_screen/icon_controller.h"

#include "desktop/views/view_node.h"

namespace velmoranth::simulator {

using platform::ObjectRef;

namespace {

// A handle to an object that lives as a view; nil for another one.
ObjectRef handleOf(platform::Object& object) {
    auto* const node = dynamic_cast<desktop::ViewNode*>(&object);
    const auto kept = node == nullptr ? nullptr : node->weak_from_this().lock();
    return kept == nullptr ? nullptr : ObjectRef(kept, &object);
}

}  // namespace

void IconController::_closeFolderControllerAnimatedWithCompletion(
    platform::Object& folderController, bool animated) {
    runtime_.send<void, ObjectRef, bool, FolderCompletion>(
        *this, "_closeFolderController:animated:withCompletion:", handleOf(folderController),
        animated, nullptr);
}

void IconController::closeFolder(const ObjectRef& folderController, bool animated,
                                 const FolderCompletion& completion) {
    if (close_ != nullptr) {
        close_(folderController, animated, completion);
    }
}

}  // namespace velmoranth::simulator
