// The library's Objective-C classes, categories and selectors, made known to this process's
// runtime.
#pragma once

#include "device/emulator/image.h"

namespace velmoranth::emulator {

// Once a library, after its imports are bound and before any of its code runs.
void registerObjectiveC(const Image& image);

// The +load methods of its classes and categories, in the system's order.
void runLoadMethods(const Image& image);

}  // namespace velmoranth::emulator
