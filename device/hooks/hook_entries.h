// The C functions of the hook table's rows, for whoever installs them.
#pragma once

#include "platform/objc_runtime.h"

#include <objc/runtime.h>

namespace velmoranth::device {

struct HookEntry {
    IMP entry = nullptr;                            // what takes the method's place
    IMP* slot = nullptr;                            // where the platform's implementation is kept
    platform::Implementation (*saved)() = nullptr;  // the slot as the table keeps it
};

// The entry of the row that keeps its implementation in `saved`; null when there is no such row.
[[nodiscard]] const HookEntry* hookEntryOf(const platform::Implementation* saved);

// The C function of a method that the table adds to a class; null for any other implementation.
[[nodiscard]] IMP addedMethodEntryOf(const platform::Implementation& implementation);

}  // namespace velmoranth::device
