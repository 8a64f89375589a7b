#include "test_pictures.h"

#include <random>

namespace velmoranth::tests {

namespace {

using catalog::Picture;

Picture blank(std::uint32_t width, std::uint32_t height, Format format) {
    return {.format = format,
            .width = width,
            .height = height,
            .pixels = ByteVector(std::size_t{width} * height * Picture::bytesPerPixel(format))};
}

}  // namespace

Picture noise(std::uint32_t width, std::uint32_t height, Format format, std::uint32_t seed) {
    Picture picture = blank(width, height, format);
    std::mt19937 random(seed);
    for (std::uint8_t& byte : picture.pixels) {
        byte = static_cast<std::uint8_t>(random());
    }
    return picture;
}

Picture artwork(std::uint32_t width, std::uint32_t height, Format format) {
    Picture picture = blank(width, height, format);
    const std::size_t size = Picture::bytesPerPixel(format);
    for (std::size_t i = 0; i < picture.pixels.size(); ++i) {
        const std::size_t x = i / size % width;
        const std::size_t y = i / size / width;
        const std::size_t channel = i % size;
        const bool flat = x / 8 % 3 == 0;
        const std::size_t value = flat ? 40 * channel + y / 16 * 8 : x * (channel + 1) + y * 3;
        picture.pixels[i] = static_cast<std::uint8_t>(value & 0xFCU);
    }
    return picture;
}

Picture ofColors(std::uint32_t width, std::uint32_t height, std::uint32_t colors) {
    Picture picture = blank(width, height, Format::bgra);
    std::mt19937 random(colors);
    for (std::size_t i = 0; i < picture.pixels.size() / 4; ++i) {
        const std::size_t color = i < colors ? i : random() % colors;
        for (std::size_t j = 0; j < 4; ++j) {
            picture.pixels[4 * i + j] =
                static_cast<std::uint8_t>(j < 2 ? color >> (8 * j) : color * 7 + j);
        }
    }
    return picture;
}

Picture opaque(Picture picture) {
    const std::size_t size = Picture::bytesPerPixel(picture.format);
    for (std::size_t i = size - 1; i < picture.pixels.size(); i += size) {
        picture.pixels[i] = 255;
    }
    return picture;
}

catalog::BitmapShape shapeOf(const Picture& picture, std::uint32_t rowBytes) {
    return {.width = picture.width,
            .height = picture.height,
            .pixelFormat = picture.format == Format::bgra ? catalog::fourCharacterCode("ARGB")
                                                          : catalog::fourCharacterCode("GA8 "),
            .colorSpace = 1,
            .rowBytes = rowBytes};
}

std::string differenceFrom(const Picture& expected, const catalog::Result<Picture>& decoded) {
    if (!decoded) {
        return decoded.error().message;
    }
    if (decoded->format != expected.format || decoded->width != expected.width ||
        decoded->height != expected.height || decoded->pixels.size() != expected.pixels.size()) {
        return "another shape";
    }
    const auto [differs, original] =
        std::mismatch(decoded->pixels.begin(), decoded->pixels.end(), expected.pixels.begin());
    if (differs == decoded->pixels.end()) {
        return "";
    }
    return "byte " + std::to_string(differs - decoded->pixels.begin()) + " is " +
           std::to_string(*differs) + ", not " + std::to_string(*original);
}

std::string problemOf(const catalog::Result<Picture>& decoded) {
    return decoded ? "" : decoded.error().message;
}

}  // namespace velmoranth::tests
