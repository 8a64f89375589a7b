#include "desktop/image_io/png_structure.h"

#include "desktop/image_io/deflate.h"

#include <algorithm>
#include <string>
#include <string_view>
#include <utility>

namespace velmoranth::desktop::image_io {

namespace {

constexpr std::array<std::uint8_t, 8> kSignature = {0x89, 'P', 'N', 'G', '\r', '\n', 0x1A, '\n'};
constexpr std::size_t kChunkOverhead = 12;  // length, type, checksum
constexpr std::uint32_t kLongestChunk =
    0x7FFFFFFF;  // the PNG standard (ISO 15948) allows no longer
// A deflate stream grows at most this much: 258 bytes from 2 bits.
constexpr std::uint64_t kLargestDeflateRatio = 1032;

struct ColorKind {
    PngColor color;
    std::size_t channels;
    std::string_view depths;  // each as one byte
};

// ISO 15948, table 11.1.
constexpr std::array<ColorKind, 5> kColorKinds = {{
    {PngColor::gray, 1, "\x01\x02\x04\x08\x10"},
    {PngColor::rgb, 3, "\x08\x10"},
    {PngColor::palette, 1, "\x01\x02\x04\x08"},
    {PngColor::grayAlpha, 2, "\x08\x10"},
    {PngColor::rgba, 4, "\x08\x10"},
}};

const ColorKind* kindOf(PngColor color) {
    const auto* found = std::ranges::find(kColorKinds, color, &ColorKind::color);
    return found == kColorKinds.end() ? nullptr : found;
}

std::uint32_t bigEndian32(Bytes bytes) {
    return std::uint32_t{bytes[0]} << 24 | std::uint32_t{bytes[1]} << 16 |
           std::uint32_t{bytes[2]} << 8 | std::uint32_t{bytes[3]};
}

struct Chunk {
    std::string_view type;
    Bytes data;
    std::size_t offset = 0;  // of its length, from the start of the file

    // Told apart by the case of the first letter.
    [[nodiscard]] bool isCritical() const { return (type[0] & 0x20) == 0; }

    [[nodiscard]] std::size_t end() const { return offset + kChunkOverhead + data.size(); }
};

Result<Chunk> readChunk(Bytes file, std::size_t offset) {
    const Bytes rest = file.subspan(offset);
    if (rest.size() < kChunkOverhead) {
        return refuse("the PNG file is cut off", offset);
    }
    const std::uint32_t length = bigEndian32(rest);
    if (length > kLongestChunk) {
        return refuse("the length of a PNG chunk is not valid", offset);
    }
    if (length > rest.size() - kChunkOverhead) {
        return refuse("the PNG file is cut off", offset);
    }
    // Chunk types are bytes in the file and looked up as text.
    const char* type = reinterpret_cast<const char*>(rest.data()) + 4;
    const Chunk chunk{
        .type = std::string_view(type, 4), .data = rest.subspan(8, length), .offset = offset};
    // A wrong checksum of a chunk that a reader may skip is no reason to lose the picture.
    if (chunk.isCritical() &&
        crc32(rest.subspan(4, std::size_t{4} + length)) != bigEndian32(rest.subspan(8 + length))) {
        const bool isText = std::ranges::all_of(
            chunk.type, [](char letter) { return letter >= 'A' && letter <= 'z'; });
        return refuse("the checksum of a PNG chunk" +
                          (isText ? " " + std::string(chunk.type) : std::string()) + " is wrong",
                      offset);
    }
    return chunk;
}

// What every reader passes by, of a length that none refuses.
bool isPassedBy(const Chunk& chunk) {
    constexpr std::size_t kLongest = 1024 * 1024;
    const bool isText = std::ranges::all_of(chunk.type, [](char letter) {
        return (letter >= 'A' && letter <= 'Z') || (letter >= 'a' && letter <= 'z');
    });
    return !chunk.isCritical() && chunk.type != "tRNS" && isText && chunk.data.size() <= kLongest;
}

Result<PngHeader> readHeader(const Chunk& chunk) {
    if (chunk.type != "IHDR" || chunk.data.size() != 13) {
        return refuse("the PNG file does not start with a header", chunk.offset);
    }
    PngHeader header{.width = bigEndian32(chunk.data),
                     .height = bigEndian32(chunk.data.subspan(4)),
                     .bitDepth = chunk.data[8],
                     .color = static_cast<PngColor>(chunk.data[9]),
                     .interlaced = chunk.data[12] == 1};
    const ColorKind* kind = kindOf(header.color);
    if (kind == nullptr ||
        kind->depths.find(static_cast<char>(header.bitDepth)) == std::string_view::npos) {
        return refuse("the PNG header is not valid: colour type " + std::to_string(chunk.data[9]) +
                          " with bit depth " + std::to_string(header.bitDepth),
                      chunk.offset);
    }
    if (chunk.data[10] != 0 || chunk.data[11] != 0 || chunk.data[12] > 1) {
        return refuse("the PNG header names an unknown compression, filter or interlace method",
                      chunk.offset);
    }
    return header;
}

}  // namespace

std::size_t PngHeader::bitsPerPixel() const {
    const ColorKind* kind = kindOf(color);
    return kind == nullptr ? 0 : kind->channels * bitDepth;
}

std::span<const PngPass> passesOf(const PngHeader& header) {
    if (header.interlaced) {
        return kInterlacedPasses;
    }
    return kWholePicture;
}

PassSize sizeOf(const PngPass& pass, const PngHeader& header) {
    if (header.width <= pass.x0 || header.height <= pass.y0) {
        return {};
    }
    return {.width = (header.width - pass.x0 - 1) / pass.dx + 1,
            .height = (header.height - pass.y0 - 1) / pass.dy + 1};
}

std::uint64_t rowBytes(const PngHeader& header, std::uint32_t width) {
    return (std::uint64_t{width} * header.bitsPerPixel() + 7) / 8;
}

std::uint64_t inflatedSize(const PngHeader& header) {
    std::uint64_t size = 0;
    for (const PngPass& pass : passesOf(header)) {
        const PassSize passSize = sizeOf(pass, header);
        size += (rowBytes(header, passSize.width) + 1) * passSize.height;
    }
    return size;
}

bool isPng(Bytes file) {
    return file.size() >= kSignature.size() &&
           std::equal(kSignature.begin(), kSignature.end(), file.begin());
}

bool isPhonePng(Bytes file) {
    constexpr std::string_view kType = "CgBI";
    constexpr std::size_t kTypeOffset = kSignature.size() + 4;
    return isPng(file) && file.size() >= kTypeOffset + kType.size() &&
           std::equal(kType.begin(), kType.end(), file.begin() + kTypeOffset);
}

Result<PngStructure> readPngStructure(Bytes file, const DecodeLimits& limits) {
    if (!isPng(file)) {
        return refuse("the file is not a PNG");
    }
    PngStructure structure;
    auto chunk = readChunk(file, kSignature.size());
    if (chunk && chunk->type == "CgBI") {
        if (chunk->data.size() != 4) {
            return refuse("the first chunk of the PNG file is not valid", chunk->offset);
        }
        structure.isPhoneVariant = true;
        structure.phoneBitmapInfo = bigEndian32(chunk->data);
        chunk = readChunk(file, chunk->end());
    }
    if (!chunk) {
        return tl::make_unexpected(chunk.error());
    }
    auto header = readHeader(*chunk);
    if (!header) {
        return tl::make_unexpected(std::move(header).error());
    }
    structure.header = *header;
    const auto stored = fitted(
        {.width = header->width, .height = header->height, .bitsPerPixel = header->bitsPerPixel()},
        limits);
    if (!stored) {
        return tl::make_unexpected(stored.error());
    }

    std::size_t endOfImageData = 0;
    while (chunk->type != "IEND") {
        chunk = readChunk(file, chunk->end());
        if (!chunk) {
            return tl::make_unexpected(chunk.error());
        }
        if (chunk->type == "IDAT") {
            structure.isPlain = structure.isPlain &&
                                (structure.imageData.empty() || chunk->offset == endOfImageData);
            endOfImageData = chunk->end();
            structure.imageData.push_back(chunk->data);
            structure.imageDataSize += chunk->data.size();
        } else if (chunk->type == "PLTE") {
            structure.palette = chunk->data;
        } else if (chunk->type == "tRNS") {
            structure.transparency = chunk->data;
        }
        structure.isPlain = structure.isPlain &&
                            (chunk->type == "IDAT" || chunk->type == "IEND" || isPassedBy(*chunk));
    }
    if (structure.imageDataSize == 0) {
        return refuse("the PNG file has no image data");
    }
    if (inflatedSize(structure.header) / kLargestDeflateRatio > structure.imageDataSize) {
        return refuse("the image data of the PNG file is too short for its size");
    }
    return structure;
}

}  // namespace velmoranth::desktop::image_io
