// The hooking library: replaces a method and gives back the implementation that it had.
#pragma once

#include <objc/runtime.h>

extern "C" void MSHookMessageEx(Class cls, SEL selector, IMP replacement, IMP* original);
