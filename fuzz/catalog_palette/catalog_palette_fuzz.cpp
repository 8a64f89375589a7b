// A palette image: whether its colours are wide, the width and the rows, a byte each, then the
// band.
#include "desktop/catalog/palette_image.h"

#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    using namespace velmoranth::catalog;
    constexpr std::size_t kShapeSize = 3;
    if (size < kShapeSize || bytes[1] == 0 || bytes[2] == 0) {
        return 0;
    }
    const std::uint32_t width = bytes[1];
    const std::uint32_t rows = bytes[2];
    const std::uint32_t code =
        bytes[0] % 2U == 0 ? fourCharacterCode("ARGB") : fourCharacterCode("RGBW");
    std::vector<std::uint8_t> pixels(std::size_t{width} * rows * 4);
    Scratch scratch;
    const auto done = decodePaletteImage(Bytes(bytes, size).subspan(kShapeSize),
                                         *findPixelFormat(code, 1), width, rows, scratch, pixels);
    if (!done && done.error().message.empty()) {
        std::abort();
    }
    return 0;
}
