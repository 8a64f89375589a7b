// The PNG variant that the phone's tools make of an application's pictures ("CgBI"): the image data
// is a bare deflate stream, colours are stored B, G, R and premultiplied. No library reads it. It
// comes in colour type 6 with 8 bits; the other types are read likewise, and all are delivered as
// the platform draws: premultiplied B, G, R, A.
#include "desktop/image_io/deflate.h"
#include "desktop/image_io/formats.h"
#include "desktop/image_io/packed_samples.h"
#include "desktop/image_io/png_rows.h"
#include "desktop/image_io/png_structure.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

namespace velmoranth::desktop::image_io {

namespace {

constexpr std::size_t kPixelBytes = 4;  // of what is delivered
using Pixel = std::array<std::uint8_t, kPixelBytes>;

// The low bits of the variant's first chunk are a bitmap's: alpha kind "none, skip first".
constexpr std::uint32_t kAlphaMask = 0x1F;

bool isMarkedOpaque(const PngStructure& structure) {
    return (structure.phoneBitmapInfo & kAlphaMask) ==
           static_cast<std::uint32_t>(platform::AlphaInfo::noneSkipFirst);
}

// Turns the rows of a picture into pixels.
class RowExpander {
  public:
    static Result<RowExpander> create(const PngStructure& structure) {
        const PngHeader& header = structure.header;
        if (header.bitDepth > 8) {
            return refuse("the phone's PNG variant is not read with 16 bits a component");
        }
        if (header.color == PngColor::palette &&
            (structure.palette.empty() || structure.palette.size() % 3 != 0 ||
             structure.palette.size() > std::size_t{3} << header.bitDepth)) {
            return refuse("the palette of the PNG file is missing or not valid");
        }
        return RowExpander(structure);
    }

    // `row` holds `width` stored pixels, `pixels` takes as many.
    void expand(const std::uint8_t* row, std::size_t width, std::uint8_t* pixels) const {
        switch (color_) {
            case PngColor::gray:
            case PngColor::palette:
                for (std::size_t x = 0; x < width; ++x) {
                    store(bySample_[packedSample(row, x, bitDepth_)], pixels, x);
                }
                break;
            case PngColor::rgb:
                for (std::size_t x = 0; x < width; ++x) {
                    const std::uint8_t* bgr = row + 3 * x;
                    const Pixel pixel{bgr[0], bgr[1], bgr[2], 255};
                    store(pixel == transparentPixel_ ? Pixel{} : pixel, pixels, x);
                }
                break;
            case PngColor::grayAlpha:
                for (std::size_t x = 0; x < width; ++x) {
                    const std::uint8_t gray = row[2 * x];
                    store({gray, gray, gray, row[2 * x + 1]}, pixels, x);
                }
                break;
            case PngColor::rgba:
                std::copy_n(row, width * kPixelBytes, pixels);
                break;
        }
        if (isOpaque_) {
            for (std::size_t x = 0; x < width; ++x) {
                pixels[x * kPixelBytes + 3] = 255;
            }
        }
    }

  private:
    explicit RowExpander(const PngStructure& structure)
        : color_(structure.header.color),
          bitDepth_(structure.header.bitDepth),
          isOpaque_(isMarkedOpaque(structure)) {
        switch (color_) {
            case PngColor::gray:
                fillGrays(structure.transparency);
                break;
            case PngColor::palette:
                fillPalette(structure.palette, structure.transparency);
                break;
            case PngColor::rgb:
                if (const Bytes key = structure.transparency; key.size() == 6) {
                    // R, G, B of 16 bits each.
                    transparentPixel_ = Pixel{key[5], key[3], key[1], 255};
                }
                break;
            case PngColor::grayAlpha:
            case PngColor::rgba:
                break;
        }
    }

    void fillGrays(Bytes transparency) {
        const unsigned maximum = (1U << bitDepth_) - 1;
        for (unsigned sample = 0; sample <= maximum; ++sample) {
            const auto gray = static_cast<std::uint8_t>(sample * 255 / maximum);
            const bool isHidden = transparency.size() == 2 && transparency[1] == sample;
            bySample_[sample] = isHidden ? Pixel{} : Pixel{gray, gray, gray, 255};
        }
    }

    void fillPalette(Bytes palette, Bytes transparency) {
        // A sample beyond the palette is opaque black, as in an ordinary PNG.
        bySample_.fill({0, 0, 0, 255});
        for (std::size_t index = 0; index < palette.size() / 3; ++index) {
            const Bytes rgb = palette.subspan(3 * index, 3);
            const std::uint8_t alpha = index < transparency.size() ? transparency[index] : 255;
            bySample_[index] = {multiplied(rgb[2], alpha), multiplied(rgb[1], alpha),
                                multiplied(rgb[0], alpha), alpha};
        }
    }

    static void store(const Pixel& pixel, std::uint8_t* pixels, std::size_t x) {
        std::memcpy(pixels + x * kPixelBytes, pixel.data(), kPixelBytes);
    }

    PngColor color_;
    std::size_t bitDepth_;
    bool isOpaque_;
    std::array<Pixel, 256> bySample_ = {};  // for one component a pixel
    std::optional<Pixel> transparentPixel_;
};

// Concatenates the image data, unless it is in one piece as it stands.
Bytes joined(const PngStructure& structure, platform::Data& storage) {
    if (structure.imageData.size() == 1) {
        return structure.imageData.front();
    }
    storage.reserve(structure.imageDataSize);
    for (const Bytes piece : structure.imageData) {
        storage.insert(storage.end(), piece.begin(), piece.end());
    }
    return storage;
}

// Whether this looks like the two bytes that open a zlib stream (RFC 1950, section 2.2).
bool hasZlibHeader(Bytes stream) {
    return stream.size() >= 2 && (stream[0] & 0x0F) == 8 && (stream[0] << 8 | stream[1]) % 31 == 0;
}

Result<platform::Data> inflateRows(const PngStructure& structure) {
    platform::Data storage;
    const Bytes stream = joined(structure, storage);
    platform::Data rows(inflatedSize(structure.header));
    InflateResult result = InflateResult::damaged;
    if (hasZlibHeader(stream)) {
        result = inflate(Wrapper::zlib, stream, rows);
    }
    if (result == InflateResult::damaged) {
        result = inflate(Wrapper::none, stream, rows);
    }
    switch (result) {
        case InflateResult::complete:
            return rows;
        case InflateResult::tooShort:
            return refuse("the image data of the PNG file is too short for its size");
        case InflateResult::tooLong:
            return refuse("the image data of the PNG file is too long for its size");
        case InflateResult::damaged:
            break;
    }
    return refuse("the image data of the PNG file is damaged");
}

}  // namespace

Result<DecodedImage> decodePhonePng(Bytes file, const DecodeLimits& limits) {
    const auto structure = readPngStructure(file, limits);
    if (!structure) {
        return tl::make_unexpected(structure.error());
    }
    const PngHeader& header = structure->header;
    const auto layout = fitted({.width = header.width,
                                .height = header.height,
                                .bitsPerComponent = 8,
                                .bitsPerPixel = 8 * kPixelBytes,
                                .colorSpace = platform::ColorSpace::deviceRGB,
                                .alphaInfo = platform::AlphaInfo::premultipliedFirst,
                                .byteOrder = platform::ByteOrder::little32},
                               limits);
    if (!layout) {
        return tl::make_unexpected(layout.error());
    }
    const auto expander = RowExpander::create(*structure);
    if (!expander) {
        return tl::make_unexpected(expander.error());
    }
    auto rows = inflateRows(*structure);
    if (!rows) {
        return tl::make_unexpected(std::move(rows).error());
    }

    auto samples = std::make_shared<platform::Data>(layout->bytesPerRow * layout->height);
    platform::Data passRow(layout->bytesPerRow);
    std::span<std::uint8_t> rest(*rows);
    for (const PngPass& pass : passesOf(header)) {
        const auto [width, height] = sizeOf(pass, header);
        if (width == 0 || height == 0) {
            continue;
        }
        const auto bytesPerRow = static_cast<std::size_t>(rowBytes(header, width));
        const std::size_t passBytes = (bytesPerRow + 1) * height;
        const auto stored = rest.first(passBytes);
        rest = rest.subspan(passBytes);
        if (!removeFilters(stored, bytesPerRow,
                           std::max<std::size_t>(header.bitsPerPixel() / 8, 1))) {
            return refuse("a row of the PNG file names an unknown filter");
        }
        for (std::uint32_t y = 0; y < height; ++y) {
            const std::uint8_t* row = stored.data() + y * (bytesPerRow + 1) + 1;
            std::uint8_t* target =
                samples->data() + (pass.y0 + std::size_t{y} * pass.dy) * layout->bytesPerRow;
            if (pass.dx == 1) {
                expander->expand(row, width, target);
                continue;
            }
            expander->expand(row, width, passRow.data());
            for (std::size_t x = 0; x < width; ++x) {
                std::memcpy(target + (pass.x0 + x * pass.dx) * kPixelBytes,
                            passRow.data() + x * kPixelBytes, kPixelBytes);
            }
        }
    }
    return DecodedImage{.layout = *layout, .samples = std::move(samples), .palette = {}};
}

}  // namespace velmoranth::desktop::image_io
