// The platform's classes and methods around an open folder, as those of platform_classes.h.
#pragma once

#include "desktop/runtime/runtime.h"
#include "simulator/device.h"
#include "simulator/home_screen/icon_controller.h"

#include <memory>

namespace velmoranth::simulator {

// Makes the classes and methods known; registerPlatformClasses() has been called. `controller` is
// what the class SBIconController answers to sharedInstance.
void registerFolderClasses(const SystemVersion& system, desktop::Runtime& runtime,
                           const std::shared_ptr<IconController>& controller);

}  // namespace velmoranth::simulator
