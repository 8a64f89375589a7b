// The payloads that are no bitmaps: files, colours and tables of icon sizes. Offsets of problems
// are from the payload's start.
#pragma once

#include "desktop/catalog/catalog.h"

#include <cstdint>
#include <vector>

namespace velmoranth::catalog {

// Whether the payload begins as a file's does.
[[nodiscard]] bool isRawFile(Bytes payload);

// Decompressed where the payload says that it is compressed and it is.
[[nodiscard]] Result<std::vector<std::uint8_t>> readRawFile(Bytes payload, const Limits& limits);

[[nodiscard]] Result<Color> readColor(Bytes payload);

[[nodiscard]] Result<std::vector<IconSize>> readIconSizes(Bytes payload);

}  // namespace velmoranth::catalog
