// What to decode, the width and the rows, a byte each, then a band in either version of the deepmap
// codec, or the planes of a segment, which no change to compressed data would often reach.
#include "desktop/catalog/deepmap.h"
#include "desktop/catalog/deepmap_prediction.h"

#include <algorithm>
#include <cstdlib>

namespace {

using namespace velmoranth::catalog;

constexpr std::uint32_t kPlanes = 1;
constexpr std::uint32_t kFirst = 2;
constexpr std::uint32_t kGray = 4;
constexpr std::uint32_t kOpaque = 8;
constexpr std::uint32_t kHalved = 16;
constexpr std::uint32_t kWide = 32;

void decodeSegment(Bytes bytes, std::uint32_t what, std::size_t width, std::size_t rows) {
    const PlanesShape shape{.width = width,
                            .rows = rows,
                            .components = (what & kGray) != 0 ? 1U : 3U,
                            .hasAlpha = (what & kOpaque) == 0,
                            .halvedChroma = (what & kHalved) != 0};
    std::vector<std::uint8_t> planes(shape.size());
    std::copy_n(bytes.begin(), std::min(bytes.size(), planes.size()), planes.begin());
    const std::size_t stride = width * ((what & kGray) != 0 ? 2 : 4);
    std::vector<std::uint8_t> pixels(stride * rows);
    static_cast<void>(decodePlanes(planes, shape, pixels, stride));
}

void decodeBand(Bytes bytes, std::uint32_t what, std::uint32_t width, std::uint32_t rows) {
    const auto format = (what & kGray) != 0 ? Picture::Format::grayAlpha : Picture::Format::bgra;
    std::vector<std::uint8_t> pixels(std::size_t{width} * rows * Picture::bytesPerPixel(format));
    Scratch scratch;
    const auto decode = (what & kFirst) != 0 ? decodeDeepmap : decodeDeepmap2;
    const auto done = decode(bytes, format, width, rows, scratch, pixels);
    if (!done && done.error().message.empty()) {
        std::abort();
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    constexpr std::size_t kShapeSize = 3;
    if (size < kShapeSize || bytes[1] == 0 || bytes[2] == 0) {
        return 0;
    }
    const std::uint32_t what = bytes[0];
    // Wider than a tile.
    const std::uint32_t width = (what & kWide) != 0 ? bytes[1] + 256U : bytes[1];
    const Bytes band = Bytes(bytes, size).subspan(kShapeSize);
    if ((what & kPlanes) != 0) {
        decodeSegment(band, what, width, bytes[2]);
    } else {
        decodeBand(band, what, width, bytes[2]);
    }
    return 0;
}
