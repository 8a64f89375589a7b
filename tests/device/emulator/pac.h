// Pointer authentication, for this process to play a system that has it: what the library gives
// away is used only after it was authenticated, and what it is given is signed. How is the
// documents' table, from which pointer_rules.h is made. Of a library for arm64, and in a process
// without keys, pointers are as they are.
#pragma once

#include "pointer_rules.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>

namespace velmoranth::emulator {

class Image;

namespace pac {

// What kind of library the process has, before any of its pointers is used. A library for arm64e
// gets keys for functions and data unless VELMORANTH_KEYS is "returns" rather than "all": then it
// has that for return addresses alone, as the apps of the App Store have, which are arm64 and load
// libraries for arm64e. Any other value is a LoadError. Ends the process where the processor has no
// authentication.
void begin(const Image& image, bool isArm64e);

[[nodiscard]] bool isArm64e();
[[nodiscard]] bool hasKeys();

// Signs with any key, as the loader does. The modifier is what `modifierOf` gives.
[[nodiscard]] std::uint64_t sign(std::uint64_t pointer, Key key, std::uint64_t modifier);
[[nodiscard]] std::uint64_t modifierOf(bool address, std::uint16_t number, const void* place);

// The pointer without its signature, once that is what the rule of its kind asks for. `place` is
// where it lies, `what` names it. Any other signature ends the process, with the kind and that
// name.
[[nodiscard]] std::uint64_t authentic(Kind kind, std::uint64_t pointer, const void* place,
                                      const std::string& what);
// The same for a virtual function, whose number is that of a name of kNumbers.
[[nodiscard]] std::uint64_t authenticEntry(const char* name, std::uint64_t pointer,
                                           const void* place);

// A function that the library gives as an argument, and one that it is given.
template <class Function>
[[nodiscard]] Function given(Function function, const std::string& what) {
    return reinterpret_cast<Function>(
        authentic(Kind::function, reinterpret_cast<std::uint64_t>(function), nullptr, what));
}

template <class Function>
[[nodiscard]] Function handedOver(Function function) {
    const Rule& rule = kRules[static_cast<std::size_t>(Kind::function)];
    return function == nullptr || !hasKeys()
               ? function
               : reinterpret_cast<Function>(
                     sign(reinterpret_cast<std::uint64_t>(function), rule.key, rule.number));
}

// Where the library begins and ends.
[[nodiscard]] std::pair<std::uint64_t, std::uint64_t> libraryPlace();

// Whether a pointer leads into the library.
[[nodiscard]] bool isInLibrary(const void* pointer);

}  // namespace pac
}  // namespace velmoranth::emulator
