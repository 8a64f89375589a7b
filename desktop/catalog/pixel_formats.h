// How the pixels of a bitmap are stored, and what of them a Picture has.
#pragma once

#include "desktop/catalog/catalog.h"

namespace velmoranth::catalog {

// Turns stored pixels into a picture's: as many as `pixels` has room for, which `stored` must have.
using ConvertPixels = void (*)(Bytes stored, std::span<std::uint8_t> pixels);

struct PixelFormat {
    std::uint32_t code = 0;           // four-character code
    std::uint32_t bytesPerPixel = 0;  // as stored
    Picture::Format picture = Picture::Format::bgra;
    ConvertPixels convert = nullptr;  // null where a picture has the pixels as they are stored

    [[nodiscard]] std::size_t pictureBytesPerPixel() const {
        return Picture::bytesPerPixel(picture);
    }
};

// Null when the code is not one of a bitmap's. Lives for ever. Wide colours are floating-point
// numbers in the colour spaces that go beyond sRGB, 4 and 5.
[[nodiscard]] const PixelFormat* findPixelFormat(std::uint32_t code, std::uint32_t colorSpace);

// Makes every alpha 255.
void makeOpaque(Picture::Format format, std::span<std::uint8_t> pixels);

}  // namespace velmoranth::catalog
