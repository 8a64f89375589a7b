#include "desktop/catalog/pixel_formats.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>

namespace velmoranth::catalog {

namespace {

constexpr std::uint32_t kOpaque = 0xFF;
constexpr std::uint32_t kOpaqueBgra = 0xFF000000;
constexpr std::uint16_t kOpaqueGray = 0xFF00;

template <class Number>
Number load(const std::uint8_t* bytes, std::size_t index) {
    Number value = 0;
    std::memcpy(&value, bytes + index * sizeof value, sizeof value);
    return value;
}

template <class Number>
void store(std::uint8_t* bytes, std::size_t index, Number value) {
    std::memcpy(bytes + index * sizeof value, &value, sizeof value);
}

// A picture's pixel as the number that its bytes are.
constexpr std::uint32_t bgra(std::uint32_t blue, std::uint32_t green, std::uint32_t red,
                             std::uint32_t alpha) {
    return blue | green << 8U | red << 16U | alpha << 24U;
}

constexpr std::uint16_t grayAlpha(std::uint32_t gray, std::uint32_t alpha) {
    return static_cast<std::uint16_t>(gray | alpha << 8U);
}

// The numbers are stored with their low byte first, which is how they are read here.
static_assert(std::endian::native == std::endian::little);

void convertGray(Bytes stored, std::span<std::uint8_t> pixels) {
    for (std::size_t i = 0; i < pixels.size() / 2; ++i) {
        store(pixels.data(), i, grayAlpha(stored[i], kOpaque));
    }
}

constexpr std::uint32_t fromFiveBits(std::uint32_t value) {
    return (value & 31U) << 3U | (value & 31U) >> 2U;
}

void convertFiveBits(Bytes stored, std::span<std::uint8_t> pixels) {
    for (std::size_t i = 0; i < pixels.size() / 4; ++i) {
        const std::uint32_t value = load<std::uint16_t>(stored.data(), i);
        store(pixels.data(), i,
              bgra(fromFiveBits(value), fromFiveBits(value >> 5U), fromFiveBits(value >> 10U),
                   kOpaque));
    }
}

constexpr std::uint32_t fromWide(std::uint32_t value) {
    return (value * 255U + 32767U) / 65535U;
}

// From a floating-point number of 16 bits, of which 1 is the whole. What is not a number counts as
// very large.
std::uint32_t fromHalf(std::uint32_t half) {
    // The exponent is moved to where a float has it, and the difference of the biases, 112, is made
    // up for by multiplying: that is right for subnormal numbers too.
    const float value = std::bit_cast<float>((half & 0x7FFFU) << 13U) * 0x1p112F;
    const float positive = (half & 0x8000U) != 0 ? 0.0F : value;
    // Rounded: as twice the number, and then half of that.
    const auto twice = static_cast<std::int32_t>(std::min(positive, 1.0F) * 510.0F);
    return (static_cast<std::uint32_t>(twice) + 1U) / 2U;
}

template <auto Channel>
void convertWide(Bytes stored, std::span<std::uint8_t> pixels) {
    const auto channel = [&](std::size_t index) {
        return Channel(load<std::uint16_t>(stored.data(), index));
    };
    for (std::size_t i = 0; i < pixels.size() / 4; ++i) {
        store(pixels.data(), i,
              bgra(channel(4 * i + 2), channel(4 * i + 1), channel(4 * i), channel(4 * i + 3)));
    }
}

void convertWideGray(Bytes stored, std::span<std::uint8_t> pixels) {
    for (std::size_t i = 0; i < pixels.size() / 2; ++i) {
        store(pixels.data(), i,
              grayAlpha(fromWide(load<std::uint16_t>(stored.data(), 2 * i)),
                        fromWide(load<std::uint16_t>(stored.data(), 2 * i + 1))));
    }
}

using Format = Picture::Format;

constexpr std::array<PixelFormat, 6> kPixelFormats{{
    {fourCharacterCode("ARGB"), 4, Format::bgra, nullptr},
    {fourCharacterCode("GA8 "), 2, Format::grayAlpha, nullptr},
    {fourCharacterCode("GRAY"), 1, Format::grayAlpha, convertGray},
    {fourCharacterCode("RGB5"), 2, Format::bgra, convertFiveBits},
    {fourCharacterCode("RGBW"), 8, Format::bgra, convertWide<fromWide>},
    {fourCharacterCode("GA16"), 4, Format::grayAlpha, convertWideGray},
}};

constexpr PixelFormat kExtendedWide{fourCharacterCode("RGBW"), 8, Format::bgra,
                                    convertWide<fromHalf>};

constexpr std::uint32_t kExtendedSrgb = 4;
constexpr std::uint32_t kExtendedLinearSrgb = 5;

// Gray and alpha to blue, green, red and alpha, which is red, green, blue and alpha too.
std::vector<std::uint8_t> widened(const Picture& picture) {
    const std::size_t count = picture.pixels.size() / 2;
    std::vector<std::uint8_t> pixels(count * 4);
    for (std::size_t i = 0; i < count; ++i) {
        const std::uint32_t pixel = load<std::uint16_t>(picture.pixels.data(), i);
        store(pixels.data(), i, (pixel & 0xFFU) * 0x10101U | (pixel & 0xFF00U) << 16U);
    }
    return pixels;
}

}  // namespace

const PixelFormat* findPixelFormat(std::uint32_t code, std::uint32_t colorSpace) {
    if (code == kExtendedWide.code &&
        (colorSpace == kExtendedSrgb || colorSpace == kExtendedLinearSrgb)) {
        return &kExtendedWide;
    }
    const auto found = std::ranges::find(kPixelFormats, code, &PixelFormat::code);
    return found == kPixelFormats.end() ? nullptr : &*found;
}

void makeOpaque(Picture::Format format, std::span<std::uint8_t> pixels) {
    if (format == Format::bgra) {
        for (std::size_t i = 0; i < pixels.size() / 4; ++i) {
            store(pixels.data(), i, load<std::uint32_t>(pixels.data(), i) | kOpaqueBgra);
        }
        return;
    }
    for (std::size_t i = 0; i < pixels.size() / 2; ++i) {
        const auto pixel =
            static_cast<std::uint16_t>(load<std::uint16_t>(pixels.data(), i) | kOpaqueGray);
        store(pixels.data(), i, pixel);
    }
}

std::vector<std::uint8_t> toBgra(const Picture& picture) {
    return picture.format == Format::bgra ? picture.pixels : widened(picture);
}

std::vector<std::uint8_t> toRgba(const Picture& picture) {
    if (picture.format == Format::grayAlpha) {
        return widened(picture);
    }
    const std::size_t count = picture.pixels.size() / 4;
    std::vector<std::uint8_t> pixels(count * 4);
    for (std::size_t i = 0; i < count; ++i) {
        const auto pixel = load<std::uint32_t>(picture.pixels.data(), i);
        store(pixels.data(), i,
              (pixel & 0xFF00FF00U) | (pixel & 0xFFU) << 16U | (pixel >> 16U & 0xFFU));
    }
    return pixels;
}

}  // namespace velmoranth::catalog
