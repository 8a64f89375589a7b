// Any file through decodeImage and examineImage, which must agree, then through what a caller does
// with the picture.
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

bool isClear(std::span<const std::uint8_t> bgra) {
    for (std::size_t i = 3; i < bgra.size(); i += 4) {
        if (bgra[i] != 0) {
            return false;
        }
    }
    return true;
}

void decode(std::span<const std::uint8_t> file) {
    const DecodeLimits limits{.maxWidth = 256, .maxHeight = 256, .maxBytes = std::size_t{1} << 18};
    const auto image = decodeImage(file, limits);
    const auto facts = examineImage(file, limits);
    require(facts.has_value() == image.has_value());
    if (!image) {
        require(!image.error().message.empty() && facts.error().message == image.error().message);
        return;
    }
    const auto& layout = image->layout;
    require(layout.width <= limits.maxWidth && layout.height <= limits.maxHeight);
    require(image->samples->size() == layout.height * layout.bytesPerRow);
    require(image->samples->size() <= limits.maxBytes && image->palette.size() <= 256);
    const auto pixels = toPremultipliedBgra(*image);
    require(pixels.size() == layout.width * layout.height * 4);
    require(facts->width == layout.width && facts->height == layout.height);
    require(facts->isClear == isClear(pixels));
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
