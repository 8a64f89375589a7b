#include "core/entry_points.h"

#include "core/change_observers.h"
#include "core/hook_table.h"
#include "core/library_classes.h"
#include "core/settings.h"
#include "platform/platform.h"

namespace velmoranth::core {

using platform::platform;

void registerClasses() {
    for (const platform::ClassDefinition& definition : libraryClasses()) {
        platform().objc.registerClass(definition);
    }
}

void installHooks() {
    HookTable::install();
}

void startSettings() {
    platform().objc.sendMessage(platform().objc.getClass("VelMoranth"), "load");
    loadSettings();
    registerChangeObservers();
}

}  // namespace velmoranth::core
