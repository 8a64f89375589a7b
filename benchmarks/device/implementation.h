// A function of any signature as the runtime keeps it.
#pragma once

#include <objc/runtime.h>

namespace velmoranth::benchmarks {

template <class Function>
IMP implementationOf(Function function) {
    return reinterpret_cast<IMP>(reinterpret_cast<void (*)()>(function));
}

}  // namespace velmoranth::benchmarks
