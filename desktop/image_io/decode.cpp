#include "desktop/image_io/formats.h"
#include "desktop/image_io/image_io.h"
#include "desktop/image_io/png_structure.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <new>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>

namespace velmoranth::desktop {

namespace image_io {

tl::unexpected<Problem> refuse(std::string message, std::optional<std::uint64_t> offset) {
    return tl::make_unexpected(Problem{.message = std::move(message), .offset = offset});
}

Result<platform::BitmapLayout> fitted(platform::BitmapLayout layout, const DecodeLimits& limits) {
    if (layout.width == 0 || layout.height == 0) {
        return refuse("the image has no pixels");
    }
    if (layout.width > limits.maxWidth || layout.height > limits.maxHeight) {
        return refuse("the image is " + std::to_string(layout.width) + " x " +
                      std::to_string(layout.height) + " pixels, more than the " +
                      std::to_string(limits.maxWidth) + " x " + std::to_string(limits.maxHeight) +
                      " that are read");
    }
    // Formats say their size in 32 bits and a pixel has at most 64 bits here: no overflow in 64.
    const std::uint64_t bytesPerRow = (std::uint64_t{layout.width} * layout.bitsPerPixel + 7) / 8;
    if (bytesPerRow > limits.maxBytes / layout.height) {
        return refuse("the image takes more than the " + std::to_string(limits.maxBytes) +
                      " bytes that are allowed");
    }
    layout.bytesPerRow = static_cast<std::size_t>(bytesPerRow);
    return layout;
}

namespace {

bool startsWith(Bytes file, std::string_view head) {
    return file.size() >= head.size() &&
           std::equal(head.begin(), head.end(), file.begin(), [](char expected, std::uint8_t byte) {
               return static_cast<std::uint8_t>(expected) == byte;
           });
}

using namespace std::string_view_literals;

struct Format {
    bool (*sniff)(Bytes file);
    Result<DecodedImage> (*decode)(Bytes file, const DecodeLimits& limits);
};

// The first row that knows the file's first bytes reads it.
constexpr std::array kFormats = {
    Format{isPhonePng, decodePhonePng},
    Format{isPng, decodePng},
    Format{[](Bytes file) { return startsWith(file, "\xFF\xD8\xFF"sv); }, decodeJpeg},
    Format{[](Bytes file) { return startsWith(file, "GIF87a"sv) || startsWith(file, "GIF89a"sv); },
           decodeGif},
    // Little and big endian, and the same two with 64-bit offsets.
    Format{[](Bytes file) {
               return startsWith(file, "II*\0"sv) || startsWith(file, "MM\0*"sv) ||
                      startsWith(file, "II+\0"sv) || startsWith(file, "MM\0+"sv);
           },
           decodeTiff},
};

}  // namespace
}  // namespace image_io

Result<DecodedImage> decodeImage(std::span<const std::uint8_t> file, const DecodeLimits& limits) {
    if (file.empty()) {
        return image_io::refuse("the file is empty");
    }
    for (const image_io::Format& format : image_io::kFormats) {
        if (!format.sniff(file)) {
            continue;
        }
        try {
            return format.decode(file, limits);
        } catch (const std::bad_alloc&) {
            return image_io::refuse("there is not enough memory for the image");
        }
    }
    return image_io::refuse("the file is not an image (PNG, JPEG, GIF or TIFF)");
}

}  // namespace velmoranth::desktop
