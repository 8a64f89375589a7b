// A library for processors that authenticate pointers, in a process that has no keys for functions
// and data.
#pragma once

#include "device/emulator/image.h"

namespace velmoranth::emulator {

// With keys switched off the instructions that sign and authenticate leave pointers as they are,
// and calls that authenticate are plain calls: they become those. Return addresses, whose key
// stays, are signed as ever. Throws a LoadError for one that this does not know.
void switchKeysOff(const Image& image);

}  // namespace velmoranth::emulator
