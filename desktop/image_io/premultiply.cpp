// toPremultipliedBgra. Colours round to the nearest 255th, once, from the full precision of the
// samples. The layouts that themes are full of have loops of their own; all others share one that
// knows where each component lies.
#include "desktop/image_io/image_io.h"
#include "desktop/image_io/packed_samples.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <optional>
#include <vector>

namespace velmoranth::desktop {

namespace {

using platform::AlphaInfo;
using platform::BitmapLayout;
using platform::ByteOrder;
using platform::ColorSpace;

static_assert(std::endian::native == std::endian::little,
              "pixels are handled as words with blue in the lowest byte");

constexpr std::uint32_t packed(std::uint8_t blue, std::uint8_t green, std::uint8_t red,
                               std::uint8_t alpha) {
    return std::uint32_t{alpha} << 24 | std::uint32_t{red} << 16 | std::uint32_t{green} << 8 | blue;
}

std::uint32_t load(const std::uint8_t* bytes) {
    std::uint32_t word = 0;
    std::memcpy(&word, bytes, sizeof(word));
    return word;
}

void store(std::uint32_t word, std::uint8_t* bytes) {
    std::memcpy(bytes, &word, sizeof(word));
}

// Two components at once, in bits 0-7 and 16-23. (t + (t >> 8)) >> 8 with t = c * a + 128 equals
// c * a / 255 rounded to nearest for all c and a, and no half carries into the other.
constexpr std::uint32_t scaledPair(std::uint32_t pair, std::uint32_t alpha) {
    const std::uint32_t product = pair * alpha + 0x00800080;
    return ((product + ((product >> 8) & 0x00FF00FF)) >> 8) & 0x00FF00FF;
}

// R, G, B, A, straight.
void rgbaRow(const std::uint8_t* source, std::uint8_t* target, std::size_t width) {
    for (std::size_t x = 0; x < width; ++x) {
        const std::uint32_t word = load(source + 4 * x);
        const std::uint32_t alpha = word >> 24;
        const std::uint32_t redBlue = scaledPair(word & 0x00FF00FF, alpha);
        const std::uint32_t green = scaledPair((word >> 8) & 0x000000FF, alpha);
        store(alpha << 24 | (redBlue & 0xFF) << 16 | green << 8 | redBlue >> 16, target + 4 * x);
    }
}

// B, G, R, A, premultiplied. A colour above its alpha, which only a damaged file has, is cut.
void premultipliedBgraRow(const std::uint8_t* source, std::uint8_t* target, std::size_t width) {
    for (std::size_t x = 0; x < width; ++x) {
        const std::uint8_t* from = source + 4 * x;
        std::uint8_t* to = target + 4 * x;
        const std::uint8_t alpha = from[3];
        to[0] = std::min(from[0], alpha);
        to[1] = std::min(from[1], alpha);
        to[2] = std::min(from[2], alpha);
        to[3] = alpha;
    }
}

// R, G, B.
void rgbRow(const std::uint8_t* source, std::uint8_t* target, std::size_t width) {
    for (std::size_t x = 0; x < width; ++x) {
        const std::uint8_t* from = source + 3 * x;
        store(packed(from[2], from[1], from[0], 255), target + 4 * x);
    }
}

using RowFunction = void (*)(const std::uint8_t*, std::uint8_t*, std::size_t);

RowFunction commonRowFunction(const BitmapLayout& layout) {
    struct Common {
        std::size_t bitsPerPixel;
        AlphaInfo alphaInfo;
        ByteOrder byteOrder;
        RowFunction convert;
    };

    constexpr std::array<Common, 3> kCommon = {{
        {32, AlphaInfo::last, ByteOrder::standard, rgbaRow},
        {32, AlphaInfo::premultipliedFirst, ByteOrder::little32, premultipliedBgraRow},
        {24, AlphaInfo::none, ByteOrder::standard, rgbRow},
    }};
    if (layout.colorSpace != ColorSpace::deviceRGB || layout.bitsPerComponent != 8) {
        return nullptr;
    }
    const auto* found = std::ranges::find_if(kCommon, [&](const Common& common) {
        return common.bitsPerPixel == layout.bitsPerPixel && common.alphaInfo == layout.alphaInfo &&
               common.byteOrder == layout.byteOrder;
    });
    return found == kCommon.end() ? nullptr : found->convert;
}

// One component a pixel, of at most 8 bits: what each of its values looks like.
using PixelTable = std::array<std::uint32_t, 256>;

std::optional<PixelTable> pixelTable(const DecodedImage& image) {
    const BitmapLayout& layout = image.layout;
    const bool isIndexed = layout.colorSpace == ColorSpace::indexed;
    const bool isPlain = layout.alphaInfo == AlphaInfo::none &&
                         (isIndexed || layout.colorSpace == ColorSpace::deviceGray);
    if ((!isPlain && layout.alphaInfo != AlphaInfo::only) ||
        layout.bitsPerComponent != layout.bitsPerPixel || layout.bitsPerPixel > 8 ||
        !std::has_single_bit(layout.bitsPerPixel)) {
        return std::nullopt;
    }
    PixelTable table;
    table.fill(packed(0, 0, 0, 255));  // an index beyond the palette
    const unsigned maximum = (1U << layout.bitsPerPixel) - 1;
    for (unsigned sample = 0; sample <= maximum; ++sample) {
        const auto level = static_cast<std::uint8_t>(sample * 255 / maximum);
        if (layout.alphaInfo == AlphaInfo::only) {
            table[sample] = packed(0, 0, 0, level);
        } else if (!isIndexed) {
            table[sample] = packed(level, level, level, 255);
        } else if (sample < image.palette.size()) {
            const PaletteEntry& entry = image.palette[sample];
            table[sample] = packed(entry.blue, entry.green, entry.red, 255);
        }
    }
    return table;
}

// Where the components of a pixel lie, in whole components from its start.
struct Positions {
    std::size_t red = 0;
    std::size_t green = 0;
    std::size_t blue = 0;
    std::optional<std::size_t> alpha;
    bool isPremultiplied = false;
};

std::optional<Positions> positionsOf(const BitmapLayout& layout) {
    const std::size_t bits = layout.bitsPerComponent;
    if ((bits != 8 && bits != 16) || layout.bitsPerPixel % bits != 0) {
        return std::nullopt;
    }
    const bool isGray = layout.colorSpace == ColorSpace::deviceGray;
    const std::size_t colors = isGray ? 1 : 3;
    const AlphaInfo kind = layout.alphaInfo;
    const bool isFirst = kind == AlphaInfo::first || kind == AlphaInfo::premultipliedFirst ||
                         kind == AlphaInfo::noneSkipFirst;
    const std::size_t components = colors + (kind == AlphaInfo::none ? 0 : 1);
    if (layout.colorSpace == ColorSpace::indexed || kind == AlphaInfo::only ||
        layout.bitsPerPixel != components * bits) {
        return std::nullopt;
    }
    const bool isReversed = layout.byteOrder == ByteOrder::little32;
    if (isReversed && layout.bitsPerPixel != 32) {
        return std::nullopt;
    }
    const auto place = [&](std::size_t index) {
        return isReversed ? components - 1 - index : index;
    };
    const std::size_t firstColor = isFirst ? 1 : 0;
    Positions positions{.red = place(firstColor),
                        .green = place(firstColor + (isGray ? 0 : 1)),
                        .blue = place(firstColor + (isGray ? 0 : 2)),
                        .alpha = {},
                        .isPremultiplied = kind == AlphaInfo::premultipliedFirst ||
                                           kind == AlphaInfo::premultipliedLast};
    if (kind != AlphaInfo::none && kind != AlphaInfo::noneSkipFirst &&
        kind != AlphaInfo::noneSkipLast) {
        positions.alpha = place(isFirst ? 0 : colors);
    }
    return positions;
}

// Converts a row of 8-bit or 16-bit components.
class GeneralRow {
  public:
    GeneralRow(const Positions& positions, const BitmapLayout& layout)
        : positions_(positions),
          componentBytes_(layout.bitsPerComponent / 8),
          pixelBytes_(layout.bitsPerPixel / 8),
          maximum_(layout.bitsPerComponent == 16 ? 65535 : 255) {}

    void convert(const std::uint8_t* source, std::uint8_t* target, std::size_t width) const {
        for (std::size_t x = 0; x < width; ++x) {
            const std::uint8_t* pixel = source + x * pixelBytes_;
            const std::uint64_t alpha =
                positions_.alpha ? component(pixel, *positions_.alpha) : maximum_;
            std::uint8_t* to = target + 4 * x;
            to[0] = color(pixel, positions_.blue, alpha);
            to[1] = color(pixel, positions_.green, alpha);
            to[2] = color(pixel, positions_.red, alpha);
            to[3] = reduced(alpha, maximum_);
        }
    }

  private:
    [[nodiscard]] std::uint64_t component(const std::uint8_t* pixel, std::size_t position) const {
        const std::uint8_t* bytes = pixel + position * componentBytes_;
        return componentBytes_ == 1 ? bytes[0] : std::uint64_t{bytes[0]} << 8 | bytes[1];
    }

    [[nodiscard]] std::uint8_t color(const std::uint8_t* pixel, std::size_t position,
                                     std::uint64_t alpha) const {
        const std::uint64_t value = component(pixel, position);
        return positions_.isPremultiplied ? reduced(std::min(value, alpha), maximum_)
                                          : reduced(value * alpha, maximum_ * maximum_);
    }

    // `value` of `whole`, in 255ths.
    static std::uint8_t reduced(std::uint64_t value, std::uint64_t whole) {
        return static_cast<std::uint8_t>((value * 255 + whole / 2) / whole);
    }

    Positions positions_;
    std::size_t componentBytes_;
    std::size_t pixelBytes_;
    std::uint64_t maximum_;
};

template <class ConvertRow>
std::vector<std::uint8_t> convertRows(const DecodedImage& image, const ConvertRow& convertRow) {
    const BitmapLayout& layout = image.layout;
    std::vector<std::uint8_t> pixels(layout.width * layout.height * 4);
    for (std::size_t y = 0; y < layout.height; ++y) {
        convertRow(image.samples->data() + y * layout.bytesPerRow,
                   pixels.data() + y * layout.width * 4, layout.width);
    }
    return pixels;
}

bool holdsItsSamples(const DecodedImage& image) {
    const BitmapLayout& layout = image.layout;
    return image.samples != nullptr && layout.width != 0 && layout.height != 0 &&
           layout.bytesPerRow >= (layout.width * layout.bitsPerPixel + 7) / 8 &&
           image.samples->size() / layout.height >= layout.bytesPerRow;
}

}  // namespace

std::vector<std::uint8_t> toPremultipliedBgra(const DecodedImage& image) {
    if (!holdsItsSamples(image)) {
        return {};
    }
    if (const RowFunction convert = commonRowFunction(image.layout)) {
        return convertRows(image, convert);
    }
    if (const auto table = pixelTable(image)) {
        const std::size_t bits = image.layout.bitsPerPixel;
        return convertRows(
            image, [&](const std::uint8_t* source, std::uint8_t* target, std::size_t width) {
                for (std::size_t x = 0; x < width; ++x) {
                    store((*table)[image_io::packedSample(source, x, bits)], target + 4 * x);
                }
            });
    }
    if (const auto positions = positionsOf(image.layout)) {
        const GeneralRow row(*positions, image.layout);
        return convertRows(image, [&](const std::uint8_t* source, std::uint8_t* target,
                                      std::size_t width) { row.convert(source, target, width); });
    }
    return {};
}

}  // namespace velmoranth::desktop
