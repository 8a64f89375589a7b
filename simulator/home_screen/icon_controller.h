// SBIconController: the one object that whoever wants a folder closed sends a message to. What
// closing means is the home screen's business.
#pragma once

#include "desktop/runtime/runtime.h"
#include "platform/springboard.h"
#include "simulator/toolkit/class_names.h"

#include <functional>
#include <utility>

namespace velmoranth::simulator {

// Called when the folder is gone; may be empty.
using FolderCompletion = std::function<void()>;

class IconController final : public Named<"SBIconController", platform::SBIconController> {
  public:
    using CloseFolder = std::function<void(const platform::ObjectRef& folderController,
                                           bool animated, const FolderCompletion& completion)>;

    // The runtime outlives this object.
    explicit IconController(desktop::Runtime& runtime) : runtime_(runtime) {}

    // Sends _closeFolderController:animated:withCompletion: to itself.
    void _closeFolderControllerAnimatedWithCompletion(platform::Object& folderController,
                                                      bool animated) override;

    // What the platform's _closeFolderController:animated:withCompletion: does. Without a home
    // screen nothing.
    void closeFolder(const platform::ObjectRef& folderController, bool animated,
                     const FolderCompletion& completion);

    void setCloseFolder(CloseFolder close) { close_ = std::move(close); }

  private:
    desktop::Runtime& runtime_;
    CloseFolder close_;
};

}  // namespace velmoranth::simulator
