// Calls loops over the bytes of pictures compiled for the processor that runs them. x86-64 has
// vectors of 32 bytes (AVX2) since 2013 only, so a compiler uses them only where it is told; where
// they are there, compositing takes a third of the time. The choice is made by an ordinary branch:
// functions that the loader chooses would do the same, but not under sanitizers nor with every C
// library.
#pragma once

namespace velmoranth::desktop {

#if defined(__x86_64__)

template <auto Loop, typename... Arguments>
[[gnu::target("avx2")]] void callWithWideVectors(Arguments... arguments) {
    Loop(arguments...);
}

#endif

// Calls a function that is [[gnu::always_inline]], so that it takes on its caller's instructions.
// All that it calls has to be the same.
template <auto Loop, typename... Arguments>
void callWide(Arguments... arguments) {
#if defined(__x86_64__)
    if (__builtin_cpu_supports("avx2") != 0) {
        callWithWideVectors<Loop>(arguments...);
        return;
    }
#endif
    Loop(arguments...);
}

}  // namespace velmoranth::desktop
