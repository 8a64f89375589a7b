// A band of run lengths: the size of a pixel, the width and the rows, a byte each, then the band.
#include "desktop/catalog/rle.h"

#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    using namespace velmoranth::catalog;
    constexpr std::size_t kShapeSize = 3;
    if (size < kShapeSize || bytes[1] == 0 || bytes[2] == 0) {
        return 0;
    }
    const RowsShape shape{
        .width = bytes[1], .rows = bytes[2], .bytesPerPixel = 1U << bytes[0] % 4U};
    // As large as the rows, so that a byte too many is found.
    std::vector<std::uint8_t> pixels(std::size_t{shape.width} * shape.rows * shape.bytesPerPixel);
    const auto done = decodeRle(Bytes(bytes, size).subspan(kShapeSize), shape, pixels);
    if (!done && done.error().message.empty()) {
        std::abort();
    }
    return 0;
}
