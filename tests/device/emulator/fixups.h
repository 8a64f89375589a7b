// The places of a library that the loader writes to: pointers into the library itself, and pointers
// to what it imports. Decoded from the compact opcodes of the file; every place lies in a segment.
#pragma once

#include "device/emulator/macho_file.h"

#include <cstdint>
#include <string>
#include <vector>

namespace velmoranth::emulator {

struct Binding {
    std::uint64_t address = 0;
    std::string name;
    int ordinal = 0;  // as MachOFile::libraryOf takes it
    std::int64_t addend = 0;

    friend bool operator==(const Binding&, const Binding&) = default;
};

// Addresses of pointers to the library itself.
[[nodiscard]] std::vector<std::uint64_t> rebasesOf(const MachOFile& file);

// Imports, lazy ones too.
[[nodiscard]] std::vector<Binding> bindingsOf(const MachOFile& file);

// The address of an exported function or object; 0 when the library exports none of that name.
[[nodiscard]] std::uint64_t exportOf(const MachOFile& file, const std::string& name);

}  // namespace velmoranth::emulator
