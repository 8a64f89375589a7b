// Small pieces of code that functions are called through where the phone's calling convention and
// this system's differ. Made at run time, one for each function; they stay. A method that cannot be
// called at all ends the process.
#pragma once

#include "device/emulator/signature.h"

#include <string_view>

namespace velmoranth::emulator {

// For the library to call a function of this system that returns a small number.
[[nodiscard]] void* callFromLibrary(void* function, SmallType result);

// For the library to call a method of this system; the method itself where nothing is to be done.
[[nodiscard]] void* methodFromLibrary(void* implementation, std::string_view encoding);

// For this system to call a method of the library; the method itself where nothing is to be done.
[[nodiscard]] void* methodOfLibrary(void* implementation, std::string_view encoding);

// For the library to call a C++ constructor or destructor of this system.
[[nodiscard]] void* constructorFromLibrary(void* function);

}  // namespace velmoranth::emulator
