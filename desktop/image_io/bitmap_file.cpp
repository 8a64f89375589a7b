#include "desktop/image_io/bitmap_file.h"

#include "desktop/image_io/formats.h"

#include <memory>
#include <new>
#include <string>
#include <utility>

namespace velmoranth::desktop {
namespace {

using image_io::Bytes;
using image_io::refuse;

constexpr std::size_t kPixelBytes = 4;
constexpr std::size_t kNumberBytes = 4;
constexpr std::size_t kNumbers = 6;
constexpr std::size_t kTrailerBytes = kNumbers * kNumberBytes;
// Places in the trailer.
constexpr std::size_t kWidth = 1;
constexpr std::size_t kHeight = 2;

std::size_t numberAt(Bytes trailer, std::size_t place) {
    const Bytes bytes = trailer.subspan(place * kNumberBytes, kNumberBytes);
    return std::size_t{bytes[0]} | std::size_t{bytes[1]} << 8 | std::size_t{bytes[2]} << 16 |
           std::size_t{bytes[3]} << 24;
}

Result<DecodedImage> decode(Bytes file, const DecodeLimits& limits) {
    if (file.size() < kTrailerBytes) {
        return refuse("the bitmap file is shorter than its trailer");
    }
    const Bytes pixels = file.first(file.size() - kTrailerBytes);
    const Bytes trailer = file.last(kTrailerBytes);
    const auto layout = image_io::fitted({.width = numberAt(trailer, kWidth),
                                          .height = numberAt(trailer, kHeight),
                                          .bitsPerComponent = 8,
                                          .bitsPerPixel = 8 * kPixelBytes,
                                          .colorSpace = platform::ColorSpace::deviceRGB,
                                          .alphaInfo = platform::AlphaInfo::premultipliedFirst,
                                          .byteOrder = platform::ByteOrder::little32},
                                         limits);
    if (!layout) {
        return tl::make_unexpected(layout.error());
    }
    const std::size_t storedRow = pixels.size() / layout->height;
    if (pixels.size() % layout->height != 0 || storedRow % kPixelBytes != 0 ||
        storedRow < layout->bytesPerRow ||
        storedRow - layout->bytesPerRow > kLongestBitmapFilePadding * kPixelBytes) {
        return refuse("the bitmap file's " + std::to_string(pixels.size()) +
                          " bytes of pixels do not fit " + std::to_string(layout->width) + " x " +
                          std::to_string(layout->height) + " pixels",
                      pixels.size());
    }
    auto samples = std::make_shared<platform::Data>();
    samples->reserve(layout->bytesPerRow * layout->height);
    for (std::size_t y = 0; y < layout->height; ++y) {
        const Bytes row = pixels.subspan(y * storedRow, layout->bytesPerRow);
        samples->insert(samples->end(), row.begin(), row.end());
    }
    return DecodedImage{.layout = *layout, .samples = std::move(samples), .palette = {}};
}

}  // namespace

Result<DecodedImage> decodeBitmapFile(std::span<const std::uint8_t> file,
                                      const DecodeLimits& limits) {
    try {
        return decode(file, limits);
    } catch (const std::bad_alloc&) {
        return refuse("there is not enough memory for the image");
    }
}

}  // namespace velmoranth::desktop
