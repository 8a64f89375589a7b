#include "desktop/catalog/lzfse.h"

#include "desktop/catalog/byte_reader.h"
#include "desktop/catalog/catalog.h"
#include "desktop/catalog/lzfse_block.h"
#include "desktop/catalog/lzvn.h"

#include <cstring>
#include <limits>

namespace velmoranth::catalog {

namespace {

// Four characters as a block begins with them, the first one lowest.
constexpr std::uint32_t magic(const char (&text)[5]) {
    const std::uint32_t code = fourCharacterCode(text);
    return code >> 24U | (code >> 8U & 0xFF00U) | (code << 8U & 0xFF0000U) | code << 24U;
}

constexpr std::uint32_t kEnd = magic("bvx$");
constexpr std::uint32_t kStored = magic("bvx-");
constexpr std::uint32_t kLzvn = magic("bvxn");
constexpr std::uint32_t kPlainTables = magic("bvx1");
constexpr std::uint32_t kPackedTables = magic("bvx2");

struct Block {
    std::uint32_t kind = 0;
    std::uint32_t rawBytes = 0;           // decoded
    std::span<const std::uint8_t> bytes;  // whole, for blocks with tables; else the payload
    LzfseHeader header;                   // of a block with tables
    std::size_t next = 0;                 // bytes from this block to the one behind it
};

// The block that the bytes begin with; nothing when it is none or is not all there.
std::optional<Block> readBlock(std::span<const std::uint8_t> input) {
    ByteReader reader(input);
    Block block;
    block.kind = reader.u32();
    if (!reader.ok()) {
        return std::nullopt;
    }
    switch (block.kind) {
        case kEnd:
            break;
        case kStored:
            block.rawBytes = reader.u32();
            block.bytes = reader.take(block.rawBytes);
            break;
        case kLzvn:
            block.rawBytes = reader.u32();
            block.bytes = reader.take(reader.u32());
            break;
        case kPlainTables:
        case kPackedTables: {
            const std::optional<LzfseHeader> header =
                block.kind == kPlainTables ? readPlainHeader(input) : readPackedHeader(input);
            if (!header) {
                return std::nullopt;
            }
            block.header = *header;
            block.rawBytes = header->rawBytes;
            block.next = static_cast<std::size_t>(header->blockSize());
            block.bytes = input.first(block.next);
            return block;
        }
        default:
            return std::nullopt;
    }
    if (!reader.ok()) {
        return std::nullopt;
    }
    block.next = reader.position();
    return block;
}

// Behind the first `written` bytes of the output. False when the block is damaged.
bool decodeBlock(const Block& block, std::span<std::uint8_t> output, std::size_t written) {
    if (block.rawBytes > output.size() - written) {
        return false;
    }
    switch (block.kind) {
        case kStored:
            if (block.rawBytes > 0) {
                std::memcpy(output.data() + written, block.bytes.data(), block.rawBytes);
            }
            return true;
        case kLzvn: {
            const auto end =
                decodeLzvnPayload(block.bytes, output.first(written + block.rawBytes), written);
            return end && end->read == block.bytes.size() &&
                   end->written == written + block.rawBytes;
        }
        default:
            return decodeLzfseBlock(block.bytes, block.header, output, written);
    }
}

}  // namespace

bool isLzfse(std::span<const std::uint8_t> input) {
    return input.size() >= 4 && std::memcmp(input.data(), "bvx", 3) == 0;
}

std::optional<std::size_t> lzfseSize(std::span<const std::uint8_t> input) {
    std::size_t size = 0;
    for (;;) {
        const std::optional<Block> block = readBlock(input);
        if (!block || block->rawBytes > std::numeric_limits<std::size_t>::max() - size) {
            return std::nullopt;
        }
        if (block->kind == kEnd) {
            return size;
        }
        size += block->rawBytes;
        input = input.subspan(block->next);
    }
}

std::optional<std::size_t> decodeLzfse(std::span<const std::uint8_t> input,
                                       std::span<std::uint8_t> output) {
    std::size_t written = 0;
    for (;;) {
        const std::optional<Block> block = readBlock(input);
        if (!block) {
            return std::nullopt;
        }
        if (block->kind == kEnd) {
            return written;
        }
        if (!decodeBlock(*block, output, written)) {
            return std::nullopt;
        }
        written += block->rawBytes;
        input = input.subspan(block->next);
    }
}

std::optional<std::size_t> decodeLzfseOrLzvn(std::span<const std::uint8_t> input,
                                             std::span<std::uint8_t> output) {
    return isLzfse(input) ? decodeLzfse(input, output) : decodeLzvn(input, output);
}

}  // namespace velmoranth::catalog
