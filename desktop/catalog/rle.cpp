#include "desktop/catalog/rle.h"

#include "desktop/catalog/byte_reader.h"
#include "desktop/catalog/failure.h"

#include <algorithm>
#include <array>
#include <cstring>

namespace velmoranth::catalog {

namespace {

constexpr std::size_t kHeaderSize = 12;  // bytes; the offsets of the rows follow
constexpr std::uint32_t kCountMask = 0x00FFFFFF;
constexpr std::uint32_t kLiterals = 0x00;
constexpr std::uint32_t kRepeat = 0x80;

// Writes one pixel again and again.
using Repeat = void (*)(const std::uint8_t* pixel, std::uint8_t* output, std::size_t count);

template <class Pixel>
void repeat(const std::uint8_t* pixel, std::uint8_t* output, std::size_t count) {
    Pixel value = 0;
    std::memcpy(&value, pixel, sizeof value);
    for (std::size_t i = 0; i < count; ++i) {
        std::memcpy(output + i * sizeof value, &value, sizeof value);
    }
}

// The codes tell pixels by size: 3 is gray and alpha or five bits a channel, 4 is four channels or
// wide gray and alpha.
struct PixelCode {
    std::uint32_t code;
    std::uint32_t bytesPerPixel;
    Repeat repeat;
};

constexpr std::array<PixelCode, 4> kPixelCodes{{
    {.code = 1, .bytesPerPixel = 1, .repeat = repeat<std::uint8_t>},
    {.code = 3, .bytesPerPixel = 2, .repeat = repeat<std::uint16_t>},
    {.code = 4, .bytesPerPixel = 4, .repeat = repeat<std::uint32_t>},
    {.code = 20, .bytesPerPixel = 8, .repeat = repeat<std::uint64_t>},
}};

// What is wrong with the packets; null when they make exactly the row.
const char* decodeRow(ByteReader packets, const PixelCode& pixel, std::span<std::uint8_t> row) {
    while (!row.empty()) {
        const std::uint32_t control = packets.u32();
        const std::size_t count = control & kCountMask;
        const std::uint32_t kind = control >> 24U;
        const std::size_t bytes = count * pixel.bytesPerPixel;
        // A packet of nothing would let rows share packets without end.
        if (packets.ok() && (count == 0 || (kind != kLiterals && kind != kRepeat))) {
            return "the run-length data has a packet that nobody knows";
        }
        if (bytes > row.size()) {
            return "a row's run-length packets have too many pixels";
        }
        const Bytes pixels = packets.take(kind == kRepeat ? pixel.bytesPerPixel : bytes);
        if (!packets.ok()) {
            return "the run-length data ends within a row";
        }
        if (kind == kRepeat) {
            pixel.repeat(pixels.data(), row.data(), count);
        } else {
            std::memcpy(row.data(), pixels.data(), bytes);
        }
        row = row.subspan(bytes);
    }
    return nullptr;
}

}  // namespace

Result<void> decodeRle(Bytes data, const RowsShape& shape, std::span<std::uint8_t> output) {
    ByteReader reader(data);
    const std::uint32_t code = reader.u32();
    const std::uint32_t width = reader.u32();
    const std::uint32_t rows = reader.u32();
    ByteReader offsets(reader.take(std::size_t{shape.rows} * 4));
    if (!reader.ok()) {
        return failure("the run-length data ends before its rows do");
    }
    const auto pixel = std::ranges::find(kPixelCodes, code, &PixelCode::code);
    if (pixel == kPixelCodes.end() || pixel->bytesPerPixel != shape.bytesPerPixel) {
        return failure("the run-length data has pixels of another format");
    }
    if (width != shape.width || rows != shape.rows) {
        return failure("the run-length data is " + std::to_string(width) + "x" +
                       std::to_string(rows) + " pixels, not " + std::to_string(shape.width) + "x" +
                       std::to_string(shape.rows));
    }
    const std::size_t rowBytes = std::size_t{shape.width} * shape.bytesPerPixel;
    for (std::size_t y = 0; y < shape.rows; ++y) {
        const std::size_t offset = offsets.u32();
        if (offset < kHeaderSize || offset > data.size()) {
            return failure("a row of the run-length data begins outside of it");
        }
        const char* const wrong = decodeRow(ByteReader(data.subspan(offset)), *pixel,
                                            output.subspan(y * rowBytes, rowBytes));
        if (wrong != nullptr) {
            return failure(wrong);
        }
    }
    return {};
}

}  // namespace velmoranth::catalog
