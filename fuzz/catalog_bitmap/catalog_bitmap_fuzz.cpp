// A whole bitmap: what its record says of it in seven bytes, then the payload.
#include "desktop/catalog/bitmap.h"
#include "desktop/catalog/byte_reader.h"

#include <array>
#include <cstdlib>

namespace {

using namespace velmoranth::catalog;

constexpr Limits kLimits{
    .maxFileBytes = 0, .maxPixels = std::size_t{1} << 16U, .maxBytes = std::size_t{1} << 18U};

constexpr std::array kFormats{
    fourCharacterCode("ARGB"), fourCharacterCode("GA8 "), fourCharacterCode("GRAY"),
    fourCharacterCode("RGB5"), fourCharacterCode("RGBW"), fourCharacterCode("GA16"),
    fourCharacterCode("JPEG"),
};

void require(bool holds) {
    if (!holds) {
        std::abort();
    }
}

bool isOpaque(const Picture& picture) {
    const std::size_t size = Picture::bytesPerPixel(picture.format);
    for (std::size_t i = size - 1; i < picture.pixels.size(); i += size) {
        if (picture.pixels[i] != 255) {
            return false;
        }
    }
    return true;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    ByteReader reader(Bytes(bytes, size));
    BitmapShape shape;
    const std::uint32_t format = reader.u8();
    shape.pixelFormat = kFormats[format % kFormats.size()];
    shape.colorSpace = format / 32U;
    shape.width = reader.u16();
    shape.height = reader.u16();
    shape.rowBytes = reader.u16();
    if (!reader.ok()) {
        return 0;
    }
    const Bytes payload = reader.take(reader.remaining());
    const auto picture = decodeBitmap(payload, shape, kLimits);
    if (!picture) {
        require(!picture.error().message.empty());
        return 0;
    }
    require(picture->width == shape.width && picture->height == shape.height);
    require(picture->pixels.size() ==
            std::size_t{shape.width} * shape.height * Picture::bytesPerPixel(picture->format));
    require(picture->pixels.size() <= kLimits.maxBytes);
    require(!readBitmapHeader(payload)->opaque || isOpaque(*picture));
    require(toRgba(*picture).size() == std::size_t{shape.width} * shape.height * 4);
    require(toBgra(*picture).size() == toRgba(*picture).size());
    return 0;
}
