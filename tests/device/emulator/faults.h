// What the processor finds wrong by itself: a pointer that the library authenticates and uses.
#pragma once

#include "device/emulator/image.h"

#include <string>

namespace velmoranth::emulator {

// From here on, a fault that a signature may have led to says so before it ends the process: what
// kind of pointer it was, and where in the library it was used, by the library's symbols if those
// lie beside it (unstripped/).
void tellOfFaults(const Image& image, const std::string& path);

// The symbol of a library's file that lies before an address, with the distance; the address where
// there is none.
[[nodiscard]] std::string symbolBefore(const std::string& path, std::uint64_t address);

}  // namespace velmoranth::emulator
