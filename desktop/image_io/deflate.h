// Compressed data of PNG files: whole buffers in, whole buffers out.
#pragma once

#include "platform/foundation.h"

#include <cstdint>
#include <span>

namespace velmoranth::desktop::image_io {

// The CRC-32 of PNG chunks and zip files.
[[nodiscard]] std::uint32_t crc32(std::span<const std::uint8_t> bytes);

enum class Wrapper {
    none,  // a bare deflate stream
    zlib,  // with header and checksum
};

enum class InflateResult {
    complete,  // the output is filled to its last byte
    damaged,
    tooShort,  // the stream ends before the output is full
    tooLong,   // the stream holds more than the output takes
};

// Fills `output` from `stream`; bytes after the end of the stream do not matter. The output's
// contents count only when the result is `complete`.
[[nodiscard]] InflateResult inflate(Wrapper wrapper, std::span<const std::uint8_t> stream,
                                    std::span<std::uint8_t> output);

// A zlib stream. `level` 1 (fast) to 12 (small).
[[nodiscard]] platform::Data deflateZlib(std::span<const std::uint8_t> bytes, int level);

}  // namespace velmoranth::desktop::image_io
