#include "core/entry_points.h"

#include "core/change_observers.h"
#include "core/hook_table.h"
#include "core/settings.h"
#include "core/velmoranth.h"
#include "platform/platform.h"

namespace velmoranth::core {

using platform::platform;

void registerClasses() {
    platform().objc.registerClass({.name = "VelMoranth",
                                   .superclass = "NSObject",
                                   .load = VelMoranth::load,
                                   .initialize = VelMoranth::initialize});
}

void installHooks() {
    HookTable::install();
}

void startSettings() {
    platform().objc.sendLoad(platform().objc.getClass("VelMoranth"));
    loadSettings();
    registerChangeObservers();
}

}  // namespace velmoranth::core
