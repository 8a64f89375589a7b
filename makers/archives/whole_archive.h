// What the library does not tell of archives that are cut short.
#pragma once

#include "desktop/result/result.h"

#include "makers/archives/byte_source.h"

#include <string_view>

namespace velmoranth::makers {

// How many first bytes of an archive tell its kind.
inline constexpr std::size_t kStartSize = 512;

[[nodiscard]] bool isZip(std::string_view start);

// Whether a zip, which begins as one, has the list of its contents at its end, and a record behind
// the list that says where it begins. One that was cut has not, though all files may come before
// the cut.
[[nodiscard]] desktop::Result<bool> hasZipList(const ByteSource& source);

// Why nothing of the library's formats was found in it, as a line without a path.
[[nodiscard]] desktop::Problem whyNoArchive(std::string_view start, const ByteSource& source);

}  // namespace velmoranth::makers
