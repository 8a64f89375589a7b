// Lets exceptions pass through the library's functions: its compact unwind entries, which this
// process's unwinder does not know, are written anew as DWARF frame records.
#pragma once

#include "device/emulator/image.h"

namespace velmoranth::emulator {

// Once a library, after its imports are bound: the records name its personality routine.
void registerFrames(const Image& image);

}  // namespace velmoranth::emulator
