// What stands for the functions and objects that the library imports.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace velmoranth::emulator {

struct Import {
    std::string_view name;  // as the file has it, with an underscore more than in C
    const void* address;
};

// Of the phone's Objective-C runtime and libSystem, what this system does not have or has
// otherwise.
[[nodiscard]] std::span<const Import> objectiveCImports();
[[nodiscard]] std::span<const Import> exceptionImports();
[[nodiscard]] std::span<const Import> systemImports();

// What authenticates what it is given, where the library signs; nothing elsewhere.
[[nodiscard]] std::span<const Import> signedImports();

// Of the phone's C++ library; null when it has none of that name.
[[nodiscard]] const void* cxxImport(const std::string& name);

// The address of any import. Throws a LoadError that names it and its library when there is none.
[[nodiscard]] std::uint64_t importOf(const std::string& name, std::string_view library);

}  // namespace velmoranth::emulator
