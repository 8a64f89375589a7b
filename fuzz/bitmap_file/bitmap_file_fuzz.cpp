// The reader of stored wallpapers.
#include "desktop/image_io/bitmap_file.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>

namespace {

void require(bool holds) {
    if (!holds) {
        std::abort();
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace velmoranth::desktop;
    const DecodeLimits limits{.maxWidth = 256, .maxHeight = 256, .maxBytes = std::size_t{1} << 18};
    const auto image = decodeBitmapFile({data, size}, limits);
    if (!image) {
        require(!image.error().message.empty());
        return 0;
    }
    const auto& layout = image->layout;
    require(layout.width <= limits.maxWidth && layout.height <= limits.maxHeight);
    require(layout.bytesPerRow == layout.width * 4);
    require(image->samples->size() == layout.height * layout.bytesPerRow);
    require(toPremultipliedBgra(*image).size() == image->samples->size());
    return 0;
}
