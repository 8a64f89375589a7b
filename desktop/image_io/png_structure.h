// What a PNG file and the phone's own variant of it have in common: the chunks, the header, and how
// an interlaced picture is cut into passes. Walking the chunks first gives problems with their
// place in the file, and finds cut-off and lying files before a decoder allocates for them.
#pragma once

#include "desktop/image_io/formats.h"
#include "desktop/result/result.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace velmoranth::desktop::image_io {

// As the header has it.
enum class PngColor : std::uint8_t { gray = 0, rgb = 2, palette = 3, grayAlpha = 4, rgba = 6 };

struct PngHeader {
    std::uint32_t width = 0;   // pixels
    std::uint32_t height = 0;  // pixels
    std::uint8_t bitDepth = 0;
    PngColor color = PngColor::gray;
    bool interlaced = false;

    [[nodiscard]] std::size_t bitsPerPixel() const;
};

struct PngStructure {
    PngHeader header;
    bool isPhoneVariant = false;
    std::uint32_t phoneBitmapInfo = 0;  // of the phone's variant: its first chunk's value
    Bytes palette;                      // empty when there is none
    Bytes transparency;                 // tRNS, empty when there is none
    std::vector<Bytes> imageData;       // IDAT, in the order of the file
    std::size_t imageDataSize = 0;      // of all of them together
    // Nothing but the image data, in one row of chunks, decides about the picture: there are
    // neither a palette nor transparency, nor chunks that a reader has to look at or may refuse.
    bool isPlain = true;
};

// A pass of an interlaced picture: its pixels are those at (x0 + i * dx, y0 + j * dy).
struct PngPass {
    std::uint32_t x0;
    std::uint32_t y0;
    std::uint32_t dx;
    std::uint32_t dy;
};

inline constexpr std::array<PngPass, 1> kWholePicture = {{{0, 0, 1, 1}}};
// Adam7: ISO 15948, section 8.2.
inline constexpr std::array<PngPass, 7> kInterlacedPasses = {{{0, 0, 8, 8},
                                                              {4, 0, 8, 8},
                                                              {0, 4, 4, 8},
                                                              {2, 0, 4, 4},
                                                              {0, 2, 2, 4},
                                                              {1, 0, 2, 2},
                                                              {0, 1, 1, 2}}};

// The passes of a picture, in the order of the file.
[[nodiscard]] std::span<const PngPass> passesOf(const PngHeader& header);

// The size of a pass, 0 x 0 when it holds no pixel.
struct PassSize {
    std::uint32_t width = 0;
    std::uint32_t height = 0;
};

[[nodiscard]] PassSize sizeOf(const PngPass& pass, const PngHeader& header);
// Bytes of a row of so many pixels, without its filter byte.
[[nodiscard]] std::uint64_t rowBytes(const PngHeader& header, std::uint32_t width);
// Bytes of the whole image data once it is inflated, filter bytes included. The size of the picture
// is within limits.
[[nodiscard]] std::uint64_t inflatedSize(const PngHeader& header);

[[nodiscard]] bool isPng(Bytes file);
// A PNG whose first chunk is the phone's.
[[nodiscard]] bool isPhonePng(Bytes file);

// Walks the chunks up to IEND; what follows is not looked at. Fails when the file is cut off, the
// checksum of a critical chunk is wrong, the header is not valid, the stored picture exceeds the
// limits, or the image data is missing or too short to hold it.
[[nodiscard]] Result<PngStructure> readPngStructure(Bytes file, const DecodeLimits& limits);

}  // namespace velmoranth::desktop::image_io
