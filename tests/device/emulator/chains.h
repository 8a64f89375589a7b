// The pointers of a library for processors that authenticate them, as the loaders of iOS 12 and 13
// read them: the pointers of a page are a chain, and each says in its bits what it becomes, how it
// is signed, and how far the next one is. Whatever those loaders would refuse is a LoadError.
#pragma once

#include "device/emulator/fixups.h"

#include <cstdint>
#include <optional>
#include <vector>

namespace velmoranth::emulator {

struct Signing {
    std::uint8_t key = 0;  // ia, ib, da, db
    bool address = false;
    std::uint16_t number = 0;

    friend bool operator==(const Signing&, const Signing&) = default;
};

struct ChainedPointer {
    std::uint64_t address = 0;
    // What it becomes: an import, or what lies in the library at `target`, whose topmost 8 bits are
    // its own.
    bool isImport = false;
    Binding import = {};  // without an address
    std::uint64_t target = 0;
    std::optional<Signing> signing = {};

    friend bool operator==(const ChainedPointer&, const ChainedPointer&) = default;
};

// In the order of the chains.
[[nodiscard]] std::vector<ChainedPointer> chainedPointersOf(const MachOFile& file);

}  // namespace velmoranth::emulator
