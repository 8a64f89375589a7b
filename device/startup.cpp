// The two constructors of the library, in source order. This object is linked last: across objects
// the order of linking decides, and the library's +load methods come before both.
#include "device/startup.h"

#include "core/entry_points.h"

#include "device/platform/pool.h"
#include "device/platform/services.h"

namespace {

bool haveBegun = false;
bool wereCalledForLoad = false;

void installTheHooks() {
    velmoranth::device::withPool([] {
        velmoranth::device::usePlatform();
        velmoranth::core::installHooks();
    });
}

// Sends the main class its load, too.
void startTheSettings() {
    velmoranth::device::withPool([] { velmoranth::core::startSettings(); });
}

__attribute__((constructor)) void installHooks() {
    if (!wereCalledForLoad) {
        haveBegun = true;
        installTheHooks();
    }
}

__attribute__((constructor)) void startSettings() {
    if (!wereCalledForLoad) {
        startTheSettings();
    }
}

}  // namespace

namespace velmoranth::device {

void startUp() {
    if (!haveBegun) {
        haveBegun = wereCalledForLoad = true;
        installTheHooks();
        startTheSettings();
    }
}

}  // namespace velmoranth::device
