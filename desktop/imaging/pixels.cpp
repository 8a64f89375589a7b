#include "desktop/imaging/pixels.h"

namespace velmoranth::desktop {

std::optional<std::size_t> bitmapBytes(PixelSize size, std::size_t bytesPerPixel,
                                       std::size_t bytesPerRow) {
    if (size.width == 0 || size.height == 0 || size.width > kMaxBitmapSide ||
        size.height > kMaxBitmapSide) {
        return std::nullopt;
    }
    const std::size_t tight = size.width * bytesPerPixel;
    const std::size_t row = bytesPerRow == 0 ? tight : bytesPerRow;
    if (row < tight || row > kMaxBitmapBytes / size.height) {
        return std::nullopt;
    }
    return row * size.height;
}

}  // namespace velmoranth::desktop
