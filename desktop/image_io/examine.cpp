#include "desktop/image_io/deflate.h"
#include "desktop/image_io/image_io.h"
#include "desktop/image_io/png_rows.h"
#include "desktop/image_io/png_structure.h"

#include <algorithm>
#include <cstddef>
#include <new>
#include <optional>
#include <vector>

namespace velmoranth::desktop {

namespace image_io {
namespace {

// Where every pixel has its alpha in the same byte.
struct AlphaBytes {
    std::size_t step = 0;   // bytes a pixel
    std::size_t place = 0;  // in them
};

std::optional<AlphaBytes> alphaBytesOf(const platform::BitmapLayout& layout) {
    const bool isLast = layout.alphaInfo == platform::AlphaInfo::last ||
                        layout.alphaInfo == platform::AlphaInfo::premultipliedLast;
    if (layout.byteOrder != platform::ByteOrder::standard || !isLast ||
        layout.bitsPerComponent != 8) {
        return std::nullopt;
    }
    const std::size_t step = layout.bitsPerPixel / 8;
    return AlphaBytes{.step = step, .place = step - 1};
}

bool isRowClear(const std::uint8_t* row, std::size_t width, const AlphaBytes& alpha) {
    for (std::size_t x = 0; x < width; ++x) {
        if (row[x * alpha.step + alpha.place] != 0) {
            return false;
        }
    }
    return true;
}

bool isClear(const DecodedImage& image) {
    const platform::BitmapLayout& layout = image.layout;
    if (layout.alphaInfo == platform::AlphaInfo::none) {
        return false;
    }
    const auto stored = alphaBytesOf(layout);
    const std::vector<std::uint8_t> drawn =
        stored ? std::vector<std::uint8_t>() : toPremultipliedBgra(image);
    const AlphaBytes alpha = stored.value_or(AlphaBytes{.step = 4, .place = 3});
    const Bytes samples = stored ? Bytes(*image.samples) : Bytes(drawn);
    const std::size_t bytesPerRow = stored ? layout.bytesPerRow : layout.width * alpha.step;
    if (samples.size() < (layout.height - 1) * bytesPerRow + layout.width * alpha.step) {
        return false;
    }
    for (std::size_t y = 0; y < layout.height; ++y) {
        if (!isRowClear(samples.data() + y * bytesPerRow, layout.width, alpha)) {
            return false;
        }
    }
    return true;
}

// The widest window that a stream can ask for: no reader finds a distance too long in it.
bool hasWidestWindow(Bytes stream) {
    constexpr std::uint8_t kWindowMask = 0xF0;
    constexpr std::uint8_t kWidestWindow = 0x70;
    return !stream.empty() && (stream[0] & kWindowMask) == kWidestWindow;
}

// `rows` are inflated, each behind its filter. No filter has to be taken off: it adds what the same
// byte of pixels before is, which is nothing as long as all of them are clear.
bool areRowsClear(Bytes rows, std::size_t width) {
    constexpr AlphaBytes kAlpha{.step = 4, .place = 3};
    const std::size_t rowSize = width * kAlpha.step + 1;
    for (; !rows.empty(); rows = rows.subspan(rowSize)) {
        if (!isRowClear(rows.data() + 1, width, kAlpha)) {
            return false;
        }
    }
    return true;
}

bool hasKnownFilters(Bytes rows, std::size_t rowSize) {
    for (std::size_t at = 0; at < rows.size(); at += rowSize) {
        if (rows[at] >= kPngFilterCount) {
            return false;
        }
    }
    return true;
}

// Of the usual kinds of PNG in perfect order: RGB and RGBA of 8 bits, not interlaced. Nothing for
// every other file, about which a whole decoding has the word.
std::optional<ImageFacts> factsOfPlainPng(Bytes file, const DecodeLimits& limits) {
    if (!isPng(file) || isPhonePng(file)) {
        return std::nullopt;
    }
    const auto structure = readPngStructure(file, limits);
    if (!structure || !structure->isPlain || !hasWidestWindow(structure->imageData.front())) {
        return std::nullopt;
    }
    const PngHeader& header = structure->header;
    const bool hasAlpha = header.color == PngColor::rgba;
    if (header.interlaced || header.bitDepth != 8 || (!hasAlpha && header.color != PngColor::rgb)) {
        return std::nullopt;
    }
    platform::Data joined;
    if (structure->imageData.size() > 1) {
        joined.reserve(structure->imageDataSize);
        for (const Bytes piece : structure->imageData) {
            joined.insert(joined.end(), piece.begin(), piece.end());
        }
    }
    const Bytes stream = joined.empty() ? structure->imageData.front() : Bytes(joined);
    platform::Data rows(static_cast<std::size_t>(inflatedSize(header)));
    const auto rowSize = static_cast<std::size_t>(rowBytes(header, header.width)) + 1;
    if (inflate(Wrapper::zlib, stream, rows) != InflateResult::complete ||
        !hasKnownFilters(rows, rowSize)) {
        return std::nullopt;
    }
    return ImageFacts{.width = header.width,
                      .height = header.height,
                      .isClear = hasAlpha && areRowsClear(rows, header.width)};
}

}  // namespace
}  // namespace image_io

Result<ImageFacts> examineImage(std::span<const std::uint8_t> file, const DecodeLimits& limits) {
    try {
        if (const auto facts = image_io::factsOfPlainPng(file, limits)) {
            return *facts;
        }
    } catch (const std::bad_alloc&) {
        return image_io::refuse("there is not enough memory for the image");
    }
    const auto image = decodeImage(file, limits);
    if (!image) {
        return tl::unexpected(image.error());
    }
    return ImageFacts{.width = image->layout.width,
                      .height = image->layout.height,
                      .isClear = image_io::isClear(*image)};
}

}  // namespace velmoranth::desktop
