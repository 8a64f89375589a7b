// Archives for tests, sound ones and others.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace velmoranth::tests {

enum class PackedKind { file, folder, symbolicLink, hardLink, device, pipe };

struct PackedEntry {
    std::string name;
    std::string contents = {};  // of a link where it leads
    PackedKind kind = PackedKind::file;
};

enum class Packing { none, gzip, bzip2, xz, lzma, zstd };

[[nodiscard]] std::string tarOf(const std::vector<PackedEntry>& entries,
                                Packing packing = Packing::none);
[[nodiscard]] std::string zipOf(const std::vector<PackedEntry>& entries);

// The bytes alone, packed as a tar may be.
[[nodiscard]] std::string packedOf(const std::string& bytes, Packing packing);

// An ar file of these members.
[[nodiscard]] std::string arOf(const std::vector<PackedEntry>& members);

// A package with these files, its members named as dpkg-deb names them.
[[nodiscard]] std::string packageOf(const std::vector<PackedEntry>& entries,
                                    Packing packing = Packing::gzip);

}  // namespace velmoranth::tests
