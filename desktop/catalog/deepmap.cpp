#include "desktop/catalog/deepmap.h"

#include "desktop/catalog/byte_reader.h"
#include "desktop/catalog/deepmap_prediction.h"
#include "desktop/catalog/failure.h"
#include "desktop/catalog/lzfse.h"

#include <algorithm>
#include <array>
#include <cstring>

namespace velmoranth::catalog {

namespace {

using Format = Picture::Format;

constexpr std::size_t kTileSide = 256;  // pixels
constexpr std::string_view kGridMark = "KCBC";

struct Version {
    std::string_view mark;
    std::uint32_t number;
    bool tiled;           // segments are tiles, else bands of the whole width
    std::size_t padding;  // the planes of a segment are padded to a multiple of so many bytes
};

constexpr Version kFirst{.mark = "dmap", .number = 5, .tiled = true, .padding = 8};
constexpr Version kSecond{.mark = "dmp2", .number = 1, .tiled = false, .padding = 16};

// How the pixels are stored where they are not predicted.
struct PixelCode {
    std::uint32_t code;
    std::size_t bytesPerPixel;
    std::size_t components;  // besides alpha
    bool hasAlpha;
    Format format;
};

constexpr std::array<PixelCode, 4> kPixelCodes{{
    {.code = 1,
     .bytesPerPixel = 1,
     .components = 1,
     .hasAlpha = false,
     .format = Format::grayAlpha},
    {.code = 2, .bytesPerPixel = 2, .components = 1, .hasAlpha = true, .format = Format::grayAlpha},
    {.code = 3, .bytesPerPixel = 3, .components = 3, .hasAlpha = false, .format = Format::bgra},
    {.code = 4, .bytesPerPixel = 4, .components = 3, .hasAlpha = true, .format = Format::bgra},
}};

struct Header {
    std::uint32_t method = 0;
    bool halvedChroma = false;
    const PixelCode* pixel = nullptr;
    std::size_t segmentWidth = 0;  // pixels; less at the right edge
    std::size_t segmentRows = 0;   // less at the bottom
};

// Where a band's pixels go. Rows are tight.
struct Canvas {
    std::size_t width = 0;  // pixels
    std::size_t rows = 0;
    std::size_t bytesPerPixel = 0;
    std::span<std::uint8_t> pixels;

    [[nodiscard]] std::size_t stride() const { return width * bytesPerPixel; }
};

// The part of a canvas that a segment covers.
struct Area {
    std::size_t width = 0;  // pixels
    std::size_t rows = 0;
    std::size_t stride = 0;          // bytes
    std::span<std::uint8_t> pixels;  // from its first pixel on

    [[nodiscard]] std::size_t size() const { return width * rows; }
};

Result<const PixelCode*> findPixelCode(std::uint32_t code, Format format) {
    const auto found = std::ranges::find(kPixelCodes, code, &PixelCode::code);
    if (found == kPixelCodes.end()) {
        return failure("the deepmap has pixels of code " + std::to_string(code) +
                       ", which is not supported");
    }
    if (found->format != format) {
        return failure("the deepmap has pixels of another format");
    }
    return &*found;
}

Result<Header> readHeader(ByteReader& reader, const Version& version, Format format,
                          const Canvas& canvas) {
    const bool isGrid = ByteReader(reader).expect(kGridMark);
    const std::uint32_t number = reader.u32();
    reader.skip(4);  // the code that the inner header repeats
    const std::uint64_t length = reader.u64();
    const bool lengthIsRight = length == reader.remaining();
    if (isGrid || ByteReader(reader).expect(kGridMark)) {
        return failure("the deepmap is a grid, which is not supported");
    }
    const bool marked = reader.expect(version.mark);
    Header header;
    header.method = reader.u8();
    header.halvedChroma = reader.u8() != 0;
    reader.skip(1);
    const std::uint32_t code = reader.u8();
    const std::size_t width = version.tiled ? canvas.width : reader.u16();
    header.segmentWidth = version.tiled ? kTileSide : canvas.width;
    header.segmentRows = version.tiled ? kTileSide : reader.u16();
    if (!reader.ok() || number != version.number || !marked) {
        return failure("the deepmap does not begin as one");
    }
    if (!lengthIsRight) {
        return failure("the deepmap is not as long as it says");
    }
    if (width != canvas.width || header.segmentRows == 0) {
        return failure("the deepmap has segments of " + std::to_string(width) + "x" +
                       std::to_string(header.segmentRows) + " pixels");
    }
    const Result<const PixelCode*> pixel = findPixelCode(code, format);
    if (!pixel) {
        return tl::unexpected(pixel.error());
    }
    header.pixel = *pixel;
    return header;
}

Result<Bytes> nextSegment(ByteReader& reader) {
    const Bytes segment = reader.take(reader.u32());
    if (!reader.ok()) {
        return failure("the deepmap ends before its segments do");
    }
    return segment;
}

// The next segment, decompressed into `room`: its size.
Result<std::size_t> readSegment(ByteReader& reader, std::span<std::uint8_t> room) {
    const Result<Bytes> segment = nextSegment(reader);
    if (!segment) {
        return tl::unexpected(segment.error());
    }
    const std::optional<std::size_t> size = decodeLzfseOrLzvn(*segment, room);
    if (!size) {
        return failure("a segment of the deepmap is damaged");
    }
    return *size;
}

// A row of stored pixels to a picture's pixels. Those without alpha are opaque.
void writePixels(const PixelCode& pixel, const std::uint8_t* stored, std::uint8_t* pixels,
                 std::size_t width) {
    if (pixel.hasAlpha) {
        std::memcpy(pixels, stored, width * pixel.bytesPerPixel);
        return;
    }
    const std::size_t size = pixel.bytesPerPixel;
    for (std::size_t x = 0; x < width; ++x) {
        std::memcpy(pixels + x * (size + 1), stored + x * size, size);
        pixels[x * (size + 1) + size] = 255;
    }
}

void writeArea(const PixelCode& pixel, const std::uint8_t* stored, const Area& area) {
    for (std::size_t y = 0; y < area.rows; ++y) {
        writePixels(pixel, stored + y * area.width * pixel.bytesPerPixel,
                    area.pixels.data() + y * area.stride, area.width);
    }
}

// Method 1.
Result<void> decodeRaw(ByteReader& reader, const Header& header, const Canvas& canvas) {
    const std::size_t size = canvas.width * canvas.rows * header.pixel->bytesPerPixel;
    const Bytes stored = reader.take(size);
    if (!reader.ok()) {
        return failure("the deepmap ends before its pixels do");
    }
    writeArea(*header.pixel, stored.data(),
              Area{.width = canvas.width,
                   .rows = canvas.rows,
                   .stride = canvas.stride(),
                   .pixels = canvas.pixels});
    return {};
}

// Gives every area in its turn to `decode`, until one fails.
template <class Decode>
Result<void> forEachArea(const Header& header, const Canvas& canvas, const Decode& decode) {
    for (std::size_t y = 0; y < canvas.rows; y += header.segmentRows) {
        for (std::size_t x = 0; x < canvas.width; x += header.segmentWidth) {
            const Area area{
                .width = std::min(header.segmentWidth, canvas.width - x),
                .rows = std::min(header.segmentRows, canvas.rows - y),
                .stride = canvas.stride(),
                .pixels = canvas.pixels.subspan(y * canvas.stride() + x * canvas.bytesPerPixel)};
            if (Result<void> done = decode(area); !done) {
                return done;
            }
        }
    }
    return {};
}

// Method 2.
Result<void> decodePredicted(ByteReader& reader, const Header& header, const Area& area,
                             std::size_t padding, Scratch& scratch) {
    const PlanesShape shape{.width = area.width,
                            .rows = area.rows,
                            .components = header.pixel->components,
                            .hasAlpha = header.pixel->hasAlpha,
                            .halvedChroma = header.halvedChroma};
    const std::size_t most = (shape.size() + padding - 1) / padding * padding;
    const std::span<std::uint8_t> planes = scratch.take(most);
    const Result<std::size_t> size = readSegment(reader, planes);
    if (!size) {
        return tl::unexpected(size.error());
    }
    if (*size < shape.size()) {
        return failure("a segment of the deepmap is shorter than its planes");
    }
    if (!decodePlanes(planes.first(shape.size()), shape, area.pixels, area.stride)) {
        return failure("a row of the deepmap has a predictor that nobody knows");
    }
    return {};
}

// Method 3.
Result<void> decodePixels(ByteReader& reader, const Header& header, const Area& area,
                          Scratch& scratch) {
    const PixelCode& pixel = *header.pixel;
    const std::size_t expected = area.size() * pixel.bytesPerPixel;
    const bool inPlace = pixel.hasAlpha && area.stride == area.width * pixel.bytesPerPixel;
    const std::span<std::uint8_t> stored =
        inPlace ? area.pixels.first(expected) : scratch.take(expected);
    const Result<std::size_t> size = readSegment(reader, stored);
    if (!size) {
        return tl::unexpected(size.error());
    }
    if (*size != expected) {
        return failure("a segment of the deepmap is shorter than its pixels");
    }
    if (!inPlace) {
        writeArea(pixel, stored.data(), area);
    }
    return {};
}

struct Palette {
    std::size_t count = 0;
    bool alphaApart = false;                  // a plane of alpha comes before the indexes
    std::array<std::uint32_t, 256> colors{};  // as a picture's pixels
};

Result<Palette> readPalette(ByteReader& reader, const Header& header, const Version& version) {
    Palette palette;
    palette.count = reader.u16();
    const std::uint32_t type = reader.u16();
    const Bytes colors = reader.take(palette.count * 4);
    if (!reader.ok()) {
        return failure("the deepmap ends within its palette");
    }
    if (palette.count == 0 || palette.count > palette.colors.size()) {
        return failure("the deepmap has a palette of " + std::to_string(palette.count) +
                       " colours");
    }
    const bool known = version.tiled ? type == 0 : type == 3 || type == 4;
    if (!known || header.pixel->bytesPerPixel != 4) {
        return failure("the deepmap has a palette of type " + std::to_string(type) +
                       " for pixels of code " + std::to_string(header.pixel->code) +
                       ", which is not supported");
    }
    palette.alphaApart = type != 4;
    std::memcpy(palette.colors.data(), colors.data(), colors.size());
    if (palette.alphaApart) {
        std::ranges::for_each(palette.colors, [](std::uint32_t& color) { color &= 0x00FFFFFFU; });
    }
    return palette;
}

// The planes of an area: alpha where it is apart, and indexes.
Result<void> writeIndexed(Bytes planes, const Palette& palette, const Area& area) {
    const Bytes indexes = planes.last(area.size());
    if (std::ranges::max(indexes) >= palette.count) {
        return failure("the deepmap has an index beyond its palette");
    }
    for (std::size_t y = 0; y < area.rows; ++y) {
        const std::uint8_t* const index = indexes.data() + y * area.width;
        const std::uint8_t* const alpha = planes.data() + y * area.width;
        std::uint8_t* const pixels = area.pixels.data() + y * area.stride;
        for (std::size_t x = 0; x < area.width; ++x) {
            std::uint32_t pixel = palette.colors[index[x]];
            if (palette.alphaApart) {
                pixel |= std::uint32_t{alpha[x]} << 24U;
            }
            std::memcpy(pixels + 4 * x, &pixel, sizeof pixel);
        }
    }
    return {};
}

// Method 4. Segments are read until the planes are complete, since the second version may cut one
// area into several.
Result<void> decodeIndexed(ByteReader& reader, const Palette& palette, const Area& area,
                           Scratch& scratch) {
    const std::span<std::uint8_t> planes =
        scratch.take(palette.alphaApart ? 2 * area.size() : area.size());
    std::span<std::uint8_t> room = planes;
    while (!room.empty()) {
        const Result<std::size_t> size = readSegment(reader, room);
        if (!size) {
            return tl::unexpected(size.error());
        }
        room = room.subspan(*size);
    }
    return writeIndexed(planes, palette, area);
}

Result<void> decodeBody(ByteReader& reader, const Header& header, const Version& version,
                        const Canvas& canvas, Scratch& scratch) {
    switch (header.method) {
        case 1:
            return decodeRaw(reader, header, canvas);
        case 2:
            return forEachArea(header, canvas, [&](const Area& area) {
                return decodePredicted(reader, header, area, version.padding, scratch);
            });
        case 3:
            return forEachArea(header, canvas, [&](const Area& area) {
                return decodePixels(reader, header, area, scratch);
            });
        case 4: {
            const Result<Palette> palette = readPalette(reader, header, version);
            if (!palette) {
                return tl::unexpected(palette.error());
            }
            Header planes = header;
            planes.segmentRows = version.tiled ? kTileSide : canvas.rows;
            return forEachArea(planes, canvas, [&](const Area& area) {
                return decodeIndexed(reader, *palette, area, scratch);
            });
        }
        default:
            return failure("the deepmap's method " + std::to_string(header.method) +
                           " is not supported");
    }
}

Result<void> decodeVersion(const Version& version, Bytes data, Format format, const Canvas& canvas,
                           Scratch& scratch) {
    ByteReader reader(data);
    const Result<Header> header = readHeader(reader, version, format, canvas);
    if (!header) {
        return tl::unexpected(header.error());
    }
    Result<void> done = decodeBody(reader, *header, version, canvas, scratch);
    if (done && reader.remaining() > 0) {
        return failure("the deepmap goes on behind its pixels");
    }
    return done;
}

Canvas canvasOf(Format format, std::uint32_t width, std::uint32_t rows,
                std::span<std::uint8_t> pixels) {
    return {.width = width,
            .rows = rows,
            .bytesPerPixel = Picture::bytesPerPixel(format),
            .pixels = pixels};
}

}  // namespace

Result<void> decodeDeepmap(Bytes data, Picture::Format format, std::uint32_t width,
                           std::uint32_t rows, Scratch& scratch, std::span<std::uint8_t> pixels) {
    return decodeVersion(kFirst, data, format, canvasOf(format, width, rows, pixels), scratch);
}

Result<void> decodeDeepmap2(Bytes data, Picture::Format format, std::uint32_t width,
                            std::uint32_t rows, Scratch& scratch, std::span<std::uint8_t> pixels) {
    return decodeVersion(kSecond, data, format, canvasOf(format, width, rows, pixels), scratch);
}

}  // namespace velmoranth::catalog
