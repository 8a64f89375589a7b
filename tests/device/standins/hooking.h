// The hooking library, as tests look into it.
#pragma once

#include <objc/runtime.h>

#include <functional>

namespace velmoranth::standins {

// What is done in each installation once the method is replaced and before the library is told what
// it was: any thread may call the method then.
void whileHooking(const std::function<void(Class cls, SEL selector)>& action);

// Whether the hooking library has replaced that class's method.
[[nodiscard]] bool isHooked(Class cls, SEL selector);

}  // namespace velmoranth::standins
