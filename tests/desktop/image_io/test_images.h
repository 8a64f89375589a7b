// Image files for the tests, made by each format's own library where there is one, and patterns to
// fill them with.
#pragma once

#include "desktop/image_io/image_io.h"
#include "platform/foundation.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace velmoranth::desktop::test_images {

using platform::Data;

// The decoded file; fails the test when it does not decode, and returns an image without samples.
[[nodiscard]] DecodedImage decoded(std::span<const std::uint8_t> file);
// What is wrong with the file, "none" when it decodes.
[[nodiscard]] std::string problemOf(std::span<const std::uint8_t> file,
                                    const DecodeLimits& limits = {});

// Bytes that look random and are the same every time.
[[nodiscard]] Data noise(std::size_t size, std::uint32_t seed = 1);

// Rows of `width` samples-or-pixels of `bitsPerPixel`, full of noise, unused bits 0.
[[nodiscard]] Data noiseRows(std::size_t width, std::size_t height, std::size_t bitsPerPixel);

struct PngSpec {
    std::size_t width = 13;
    std::size_t height = 11;
    int colorType = 6;  // as in the file
    int bitDepth = 8;
    bool interlaced = false;
    std::vector<PaletteEntry> palette = {};
    // As in the tRNS chunk: alpha of palette entries, or one gray, or red, green and blue.
    std::vector<std::uint16_t> transparency = {};
};

[[nodiscard]] std::size_t bitsPerPixel(const PngSpec& spec);
// `rows` in the order of the file, rows without filter bytes.
[[nodiscard]] Data pngFile(const PngSpec& spec, std::span<const std::uint8_t> rows);

struct PhonePngOptions {
    std::uint32_t bitmapInfo = 0x50002002;
    std::size_t pieces = 1;        // image-data chunks
    bool zlibWrapped = false;      // instead of a bare stream
    int filter = -1;               // -1: all five in turn
    std::ptrdiff_t extraRows = 0;  // stored beyond the picture; negative: missing
};

// The phone's variant, `rows` as stored: B, G, R, premultiplied A. Palette entries are R, G, B.
[[nodiscard]] Data phonePngFile(const PngSpec& spec, std::span<const std::uint8_t> rows,
                                const PhonePngOptions& options = {});

[[nodiscard]] Data jpegFile(std::size_t width, std::size_t height, std::size_t components,
                            std::span<const std::uint8_t> samples, bool progressive = false);

struct GifSpec {
    std::size_t canvasWidth = 13;
    std::size_t canvasHeight = 11;
    std::size_t left = 0;
    std::size_t top = 0;
    std::size_t width = 13;
    std::size_t height = 11;
    bool interlaced = false;
    int transparentIndex = -1;
    std::size_t frames = 1;
};

// A file with the 16 colours of palette16.
[[nodiscard]] Data gifFile(const GifSpec& spec, std::span<const std::uint8_t> indices);
[[nodiscard]] std::vector<PaletteEntry> palette16();

struct TiffSpec {
    std::uint32_t width = 13;
    std::uint32_t height = 11;
    std::uint16_t components = 4;
    std::uint16_t bitDepth = 8;
    std::uint16_t photometric = 2;
    std::uint16_t compression = 1;
    int extraSample = -1;
    bool tiled = false;
    bool bigEndian = false;
    std::uint16_t orientation = 1;
};

[[nodiscard]] Data tiffFile(const TiffSpec& spec, std::span<const std::uint8_t> rows);

// A chunk with its checksum, or with another one.
void appendChunk(Data& file, std::string_view type, std::span<const std::uint8_t> data,
                 std::uint32_t checksumChange = 0);
[[nodiscard]] Data pngSignature();
// The data of a header chunk.
[[nodiscard]] Data pngHeader(std::uint32_t width, std::uint32_t height, std::uint8_t bitDepth,
                             std::uint8_t colorType, std::uint8_t interlace = 0);
[[nodiscard]] Data zlibStream(std::span<const std::uint8_t> bytes);

}  // namespace velmoranth::desktop::test_images
