// The two constructors of the library, in source order. This object is linked last: across objects
// the order of linking decides, and the library's +load methods come before both.
#include "core/entry_points.h"

#include "device/platform/pool.h"
#include "device/platform/services.h"

namespace {

__attribute__((constructor)) void installHooks() {
    velmoranth::device::withPool([] {
        velmoranth::device::usePlatform();
        velmoranth::core::installHooks();
    });
}

__attribute__((constructor)) void startSettings() {
    velmoranth::device::withPool([] { velmoranth::core::startSettings(); });
}

}  // namespace
