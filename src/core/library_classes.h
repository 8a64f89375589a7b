// The classes that the library brings into a process and the methods by which others reach them.
#pragma once

#include "platform/objc_runtime.h"

#include <vector>

namespace velmoranth::core {

// In the order in which they are registered.
[[nodiscard]] std::vector<platform::ClassDefinition> libraryClasses();

}  // namespace velmoranth::core
