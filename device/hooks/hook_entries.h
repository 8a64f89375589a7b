// The C functions of the hook table's rows, for whoever installs them.
#pragma once

#include "platform/objc_runtime.h"

#include <objc/runtime.h>

namespace velmoranth::device {

struct HookEntry {
    IMP entry = nullptr;  // what takes the method's place
    IMP* slot = nullptr;  // where it looks for the platform's implementation
};

// The C function that the replacement of a row is; null for any other implementation.
[[nodiscard]] const HookEntry* hookEntryOf(const platform::Implementation& replacement);

// The C function of a method that the table adds to a class; null for any other implementation.
[[nodiscard]] IMP addedMethodEntryOf(const platform::Implementation& implementation);

}  // namespace velmoranth::device
