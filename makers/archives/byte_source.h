// Bytes that an archive is read from, at any place: those of a file or of memory.
#pragma once

#include "desktop/result/result.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <span>

namespace velmoranth::makers {

struct ByteSource {
    std::uint64_t size = 0;
    // Fills from there on; less than asked for only at the end, nothing behind it.
    std::function<desktop::Result<std::size_t>(std::uint64_t at, std::span<std::uint8_t> bytes)>
        read;
};

// The file stays open for as long as the source is used, and the memory stays as it is.
[[nodiscard]] desktop::Result<ByteSource> sourceOfFile(int file);
[[nodiscard]] ByteSource sourceOfBytes(std::span<const std::uint8_t> bytes);

}  // namespace velmoranth::makers
