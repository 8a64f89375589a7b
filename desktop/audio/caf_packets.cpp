#include "desktop/audio/caf_packets.h"

#include "desktop/audio/sound_kinds.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <span>
#include <string_view>

namespace velmoranth::desktop {

namespace {

std::int64_t bigEndian(std::span<const std::uint8_t> bytes) {
    std::uint64_t value = 0;
    for (const std::uint8_t byte : bytes) {
        value = value << 8 | byte;
    }
    return static_cast<std::int64_t>(value);
}

}  // namespace

// A chunk is its type (four letters), its size (64 bits) and its contents. That of the packets
// begins with the number of packets and of valid frames (64 bits each), then the priming and the
// remainder frames (32 bits each): the packet table chunk as Apple describes the Core Audio Format.
CafTrim cafTrimOf(const SoundFile& file) {
    constexpr std::string_view kPacketTable = "pakt";
    constexpr std::uint64_t kFileHeader = 8;
    constexpr std::size_t kChunkHeader = 12;
    constexpr std::size_t kTableHeader = 24;
    constexpr int kMaxChunks = 64;
    constexpr std::int64_t kMaxPriming = kMaxSampleRate;  // at least a second
    std::uint64_t offset = kFileHeader;
    for (int i = 0; i < kMaxChunks; ++i) {
        std::array<std::uint8_t, kChunkHeader + kTableHeader> bytes{};
        const std::span<const std::uint8_t> chunk(bytes.data(), file.readAt(offset, bytes));
        if (chunk.size() < kChunkHeader) {
            break;
        }
        if (std::equal(kPacketTable.begin(), kPacketTable.end(), chunk.begin())) {
            if (chunk.size() < bytes.size()) {
                break;
            }
            const std::int64_t valid = bigEndian(chunk.subspan(kChunkHeader + 8, 8));
            const std::int64_t priming = bigEndian(chunk.subspan(kChunkHeader + 16, 4));
            return valid > 0 && priming <= kMaxPriming ? CafTrim{priming, valid} : CafTrim{};
        }
        const std::int64_t size = bigEndian(chunk.subspan(4, 8));
        if (size < 0 || static_cast<std::uint64_t>(size) > file.size()) {
            break;  // to the end of the file, or beyond
        }
        offset += kChunkHeader + static_cast<std::uint64_t>(size);
    }
    return {};
}

}  // namespace velmoranth::desktop
