// Calls loops over bits compiled for the processor that runs them. Such loops shift by numbers that
// they have just loaded. x86-64 has one-step shifts for that (BMI2) since 2013 only, so a compiler
// uses them only where it is told; where they are there, LZFSE is read up to a third faster. The
// choice is made by an ordinary branch: functions that the loader chooses would do the same, but
// not under sanitizers nor with every C library.
#pragma once

namespace velmoranth::catalog {

#if defined(__x86_64__)

template <auto Loop, typename... Arguments>
[[gnu::target("bmi2")]] bool callWithFastShifts(Arguments&... arguments) {
    return Loop(arguments...);
}

#endif

// Calls a function that is [[gnu::always_inline]], so that it takes on its caller's instructions.
template <auto Loop, typename... Arguments>
bool callBitLoop(Arguments&... arguments) {
#if defined(__x86_64__)
    if (__builtin_cpu_supports("bmi2") != 0) {
        return callWithFastShifts<Loop>(arguments...);
    }
#endif
    return Loop(arguments...);
}

}  // namespace velmoranth::catalog
