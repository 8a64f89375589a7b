#include "desktop/catalog/palette_image.h"

#include "desktop/catalog/byte_reader.h"
#include "desktop/catalog/failure.h"
#include "desktop/catalog/lzfse.h"

#include <algorithm>
#include <array>
#include <cstring>

namespace velmoranth::catalog {

namespace {

constexpr std::string_view kMark = "\x0D\xF0\xFE\xCA";
constexpr std::uint32_t kNewestVersion = 1;
constexpr std::size_t kHeaderSize = 10;  // bytes
constexpr std::size_t kMostColors = 4096;
constexpr std::size_t kMostEntryBytes = 8;

using Palette = std::vector<std::uint32_t>;

// Colours are stored with their alpha first.
std::uint32_t readColor(ByteReader& reader) {
    const std::uint32_t alpha = reader.u8();
    const std::uint32_t red = reader.u8();
    const std::uint32_t green = reader.u8();
    return std::uint32_t{reader.u8()} | green << 8U | red << 16U | alpha << 24U;
}

// Wide colours have 10000 for the whole, and their blue first.
std::uint32_t readWideColor(ByteReader& reader) {
    std::uint32_t pixel = 0;
    for (const unsigned shift : {0U, 8U, 16U, 24U}) {
        const std::uint32_t value = (reader.u16() * 255U + 5000U) / 10000U;
        pixel |= std::min(value, 255U) << shift;
    }
    return pixel;
}

struct Entry {
    std::uint32_t pixelFormat;
    std::size_t bytes;
    std::uint32_t (*read)(ByteReader& reader);
};

constexpr std::array<Entry, 2> kEntries{{
    {.pixelFormat = fourCharacterCode("ARGB"), .bytes = 4, .read = readColor},
    {.pixelFormat = fourCharacterCode("RGBW"), .bytes = 8, .read = readWideColor},
}};

unsigned indexBits(std::size_t colors) {
    unsigned bits = 1;
    while (std::size_t{1} << bits < colors) {
        bits *= 2;
    }
    return bits;
}

// Bytes of a row of indexes: whole words of 16 bits.
std::size_t indexRowBytes(std::size_t width, unsigned bits) {
    return (width * bits + 15) / 16 * 2;
}

// Takes the words of a row apart; the first index of a word is in its highest bits. Writes whole
// words of indexes.
template <unsigned Bits>
void unpackRow(Bytes words, std::uint16_t* indexes) {
    constexpr unsigned inWord = 16 / Bits;
    constexpr unsigned mask = (1U << Bits) - 1;
    for (std::size_t i = 0; i < words.size() / 2; ++i) {
        const unsigned word = words[2 * i] | static_cast<unsigned>(words[2 * i + 1]) << 8U;
        for (unsigned j = 0; j < inWord; ++j) {
            indexes[i * inWord + j] =
                static_cast<std::uint16_t>(word >> (16 - Bits * (j + 1)) & mask);
        }
    }
}

using UnpackRow = void (*)(Bytes words, std::uint16_t* indexes);

UnpackRow unpackerFor(unsigned bits) {
    switch (bits) {
        case 1:
            return unpackRow<1>;
        case 2:
            return unpackRow<2>;
        case 4:
            return unpackRow<4>;
        case 8:
            return unpackRow<8>;
        default:
            return unpackRow<16>;
    }
}

// A function of its own so that its loop is a plain one over numbers.
std::uint16_t highest(std::span<const std::uint16_t> indexes) {
    std::uint16_t value = 0;
    for (const std::uint16_t index : indexes) {
        value = std::max(value, index);
    }
    return value;
}

void writeRow(std::span<const std::uint16_t> indexes, const Palette& palette,
              std::uint8_t* pixels) {
    for (std::size_t x = 0; x < indexes.size(); ++x) {
        std::memcpy(pixels + 4 * x, &palette[indexes[x]], 4);
    }
}

Result<void> writeRows(Bytes rows, const Palette& palette, std::uint32_t width,
                       std::span<std::uint8_t> pixels) {
    const unsigned bits = indexBits(palette.size());
    const std::size_t rowBytes = indexRowBytes(width, bits);
    const UnpackRow unpack = unpackerFor(bits);
    std::vector<std::uint16_t> unpacked(rowBytes * 8 / bits);
    const std::span<const std::uint16_t> indexes(unpacked.data(), width);
    for (std::size_t y = 0; y < rows.size() / rowBytes; ++y) {
        unpack(rows.subspan(y * rowBytes, rowBytes), unpacked.data());
        if (highest(indexes) >= palette.size()) {
            return failure("the palette image has an index beyond its palette");
        }
        writeRow(indexes, palette, pixels.data() + y * width * 4);
    }
    return {};
}

// What the band holds once it is decompressed.
Result<Bytes> decompressed(Bytes data, std::uint32_t width, std::uint32_t rows, Scratch& scratch) {
    if (!isLzfse(data)) {
        return data;
    }
    // No more than any palette could make necessary.
    const std::size_t most =
        kHeaderSize + kMostColors * kMostEntryBytes + rows * indexRowBytes(width, 16);
    const std::span<std::uint8_t> room = scratch.take(std::min(most, lzfseSize(data).value_or(0)));
    const auto size = room.empty() ? std::nullopt : decodeLzfse(data, room);
    if (!size) {
        return failure("the palette image's LZFSE data is damaged");
    }
    return room.first(*size);
}

}  // namespace

Result<void> decodePaletteImage(Bytes data, const PixelFormat& format, std::uint32_t width,
                                std::uint32_t rows, Scratch& scratch,
                                std::span<std::uint8_t> pixels) {
    const auto entry = std::ranges::find(kEntries, format.code, &Entry::pixelFormat);
    if (entry == kEntries.end()) {
        return failure("a palette image of " + pixelFormatName(format.code) +
                       " pixels is not supported");
    }
    const Result<Bytes> contents = decompressed(data, width, rows, scratch);
    if (!contents) {
        return tl::unexpected(contents.error());
    }
    ByteReader reader(*contents);
    const bool marked = reader.expect(kMark);
    const std::uint32_t version = reader.u32();
    const std::size_t colors = reader.u16();
    if (!reader.ok() || !marked || version > kNewestVersion) {
        return failure("the palette image does not begin as one");
    }
    if (colors == 0 || colors > kMostColors) {
        return failure("the palette image has a palette of " + std::to_string(colors) + " colours");
    }
    ByteReader entries(reader.take(colors * entry->bytes));
    if (!reader.ok() || reader.remaining() != rows * indexRowBytes(width, indexBits(colors))) {
        return failure("the palette image is not as long as its rows");
    }
    Palette palette(colors);
    std::ranges::generate(palette, [&] { return entry->read(entries); });
    return writeRows(reader.take(reader.remaining()), palette, width, pixels);
}

}  // namespace velmoranth::catalog
