// Any file through decodeImage, then through what a caller does with the picture.
#include "desktop/image_io/image_io.h"

#include "repair.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>

namespace {

using namespace velmoranth::desktop;

void require(bool holds) {
    if (!holds) {
        std::abort();
    }
}

void decode(std::span<const std::uint8_t> file) {
    const DecodeLimits limits{.maxWidth = 256, .maxHeight = 256, .maxBytes = std::size_t{1} << 18};
    const auto image = decodeImage(file, limits);
    if (!image) {
        require(!image.error().message.empty());
        return;
    }
    const auto& layout = image->layout;
    require(layout.width <= limits.maxWidth && layout.height <= limits.maxHeight);
    require(image->samples->size() == layout.height * layout.bytesPerRow);
    require(image->samples->size() <= limits.maxBytes && image->palette.size() <= 256);
    const auto pixels = toPremultipliedBgra(*image);
    require(pixels.size() == layout.width * layout.height * 4);
    // Written and read again, it is the same picture.
    const auto again =
        decodeImage(encodePng(pixels, layout.width, layout.height, layout.width * 4));
    require(again && toPremultipliedBgra(*again) == pixels);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::span<const std::uint8_t> file(data, size);
    decode(file);
    if (size > 1 && data[0] == 0x89 && data[1] == 'P') {
        decode(fuzz::withRightChecksums(file));
    }
    return 0;
}
