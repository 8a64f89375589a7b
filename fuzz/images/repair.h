// Makes the checksums of a PNG's chunks right again, so that changes to a chunk get past the check
// of its checksum.
#pragma once

#include "desktop/image_io/deflate.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace velmoranth::desktop::fuzz {

inline std::vector<std::uint8_t> withRightChecksums(std::span<const std::uint8_t> file) {
    std::vector<std::uint8_t> repaired(file.begin(), file.end());
    std::size_t at = 8;
    while (repaired.size() >= at + 12) {
        const std::span<std::uint8_t> rest = std::span(repaired).subspan(at);
        const std::size_t length = std::size_t{rest[0]} << 24 | std::size_t{rest[1]} << 16 |
                                   std::size_t{rest[2]} << 8 | rest[3];
        if (length > rest.size() - 12) {
            break;
        }
        const std::uint32_t checksum = image_io::crc32(rest.subspan(4, 4 + length));
        for (std::size_t i = 0; i < 4; ++i) {
            rest[8 + length + i] = static_cast<std::uint8_t>(checksum >> (24 - 8 * i));
        }
        at += 12 + length;
    }
    return repaired;
}

}  // namespace velmoranth::desktop::fuzz
