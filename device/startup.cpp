// The two constructors of the library, in source order. This object is linked last: across objects
// the order of linking decides, and the library's +load methods come before both.
#include "device/startup.h"

#include "core/entry_points.h"

#include "device/platform/pool.h"
#include "device/platform/services.h"

namespace {

// Set where a +load method has carried out both steps. Not all that is published of the phone's
// loaders agrees on how they call constructors whose pointers are signed; of +load there is no
// doubt.
bool haveRun = false;

__attribute__((constructor)) void installHooks() {
    if (haveRun) {
        return;
    }
    velmoranth::device::withPool([] {
        velmoranth::device::usePlatform();
        velmoranth::core::installHooks();
    });
}

__attribute__((constructor)) void startSettings() {
    if (haveRun) {
        return;
    }
    velmoranth::device::withPool([] { velmoranth::core::startSettings(); });
}

}  // namespace

namespace velmoranth::device {

void startUp() {
    ::installHooks();
    ::startSettings();
    haveRun = true;
}

}  // namespace velmoranth::device
