// Small Mach-O libraries for tests, made in memory.
#pragma once

#include "device/emulator/macho_file.h"

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

namespace velmoranth::emulator {

// One segment of 0x1000 bytes at 0, "__DATA", with a section of 64 bytes at 0x100, and the tables
// of fixups behind the load commands.
class MachOBuilder {
  public:
    using Bytes = std::vector<std::uint8_t>;

    Bytes rebases = {};
    Bytes bindings = {};
    Bytes lazyBindings = {};
    Bytes exports = {};
    std::uint64_t sectionAddress = 0x100;
    std::uint64_t segmentFileSize = 0;
    Bytes contents = {};  // of the segment, where the file has any
    std::uint32_t protection = 3;
    std::uint32_t subtype = 0;  // of the processor

    [[nodiscard]] Bytes bytes() const {
        Bytes out;
        for (const std::uint32_t word :
             {0xfeedfacfU, 0x0100000cU, subtype, 6U, 3U, kCommandsSize, 0U, 0U}) {
            put(out, word);
        }
        putSegment(out);
        putLibrary(out);
        putTables(out);
        out.insert(out.end(), contents.begin(), contents.end());
        return out;
    }

    [[nodiscard]] MachOFile file() const { return MachOFile(bytes()); }

  private:
    static constexpr std::uint32_t kSegmentSize = 72 + 80;
    static constexpr std::uint32_t kLibrarySize = 56;
    static constexpr std::uint32_t kTablesSize = 48;
    static constexpr std::uint32_t kCommandsSize = kSegmentSize + kLibrarySize + kTablesSize;

    template <class T>
    static void put(Bytes& out, T value) {
        const std::size_t place = out.size();
        out.resize(place + sizeof value);
        std::memcpy(&out[place], &value, sizeof value);
    }

    static void putName(Bytes& out, std::string name, std::size_t size) {
        name.resize(size);
        out.insert(out.end(), name.begin(), name.end());
    }

    void putSegment(Bytes& out) const {
        put(out, std::uint32_t{0x19});
        put(out, kSegmentSize);
        putName(out, "__DATA", 16);
        const std::uint64_t place = contents.empty()
                                        ? 0
                                        : 32 + kCommandsSize + rebases.size() + bindings.size() +
                                              lazyBindings.size() + exports.size();
        for (const std::uint64_t number :
             {std::uint64_t{0}, std::uint64_t{0x1000}, place, segmentFileSize + contents.size()}) {
            put(out, number);
        }
        for (const std::uint32_t word : {7U, protection, 1U, 0U}) {
            put(out, word);
        }
        putName(out, "__objc_selrefs", 16);
        putName(out, "__DATA", 16);
        put(out, sectionAddress);
        put(out, std::uint64_t{64});
        out.resize(out.size() + 32);
    }

    static void putLibrary(Bytes& out) {
        for (const std::uint32_t word : {0x0cU, kLibrarySize, 24U, 0U, 0U, 0U}) {
            put(out, word);
        }
        putName(out, "/usr/lib/libobjc.A.dylib", kLibrarySize - 24);
    }

    void putTables(Bytes& out) const {
        put(out, std::uint32_t{0x80000022});
        put(out, kTablesSize);
        Bytes tables;
        for (const Bytes* const table : {&rebases, &bindings, &kNoTable, &lazyBindings, &exports}) {
            put(out, static_cast<std::uint32_t>(32 + kCommandsSize + tables.size()));
            put(out, static_cast<std::uint32_t>(table->size()));
            tables.insert(tables.end(), table->begin(), table->end());
        }
        out.insert(out.end(), tables.begin(), tables.end());
    }

    inline static const Bytes kNoTable;
};

// The message of the LoadError that `work` ends with; "" when it ends well.
template <class Work>
[[nodiscard]] std::string errorOf(Work work) {
    try {
        work();
    } catch (const std::exception& error) {
        return error.what();
    }
    return "";
}

}  // namespace velmoranth::emulator
