#include "tests/support/catalog/car_payloads.h"

#include <cstddef>

namespace velmoranth::tests {

namespace {

constexpr std::uint8_t kPadding = 0xEE;
constexpr std::size_t kBanded = 1;
constexpr std::size_t kOpaque = 2;

ByteWriter bitmapHeader(catalog::Compression compression, std::size_t flags, std::size_t length) {
    ByteWriter writer;
    writer.text("MLEC").u32(flags).u32(static_cast<std::uint32_t>(compression)).u32(length);
    return writer;
}

}  // namespace

CarPixels CarPixels::filled(std::uint32_t width, std::uint32_t height,
                            std::array<std::uint8_t, 4> rgba) {
    CarPixels pixels{.width = width, .height = height};
    for (std::size_t i = 0; i < std::size_t{width} * height; ++i) {
        pixels.rgba.insert(pixels.rgba.end(), rgba.begin(), rgba.end());
    }
    return pixels;
}

CarPixels CarPixels::pattern(std::uint32_t width, std::uint32_t height) {
    CarPixels pixels{.width = width, .height = height};
    for (std::uint32_t y = 0; y < height; ++y) {
        for (std::uint32_t x = 0; x < width; ++x) {
            const std::array<std::uint8_t, 4> pixel{static_cast<std::uint8_t>(2 * x),
                                                    static_cast<std::uint8_t>(2 * y),
                                                    static_cast<std::uint8_t>(x ^ y), 255};
            pixels.rgba.insert(pixels.rgba.end(), pixel.begin(), pixel.end());
        }
    }
    return pixels;
}

ByteVector storedRows(const CarPixels& pixels, std::uint32_t pixelFormat, std::uint32_t rowBytes) {
    const bool gray = pixelFormat == catalog::fourCharacterCode("GA8 ");
    ByteVector rows;
    for (std::size_t y = 0; y < pixels.height; ++y) {
        const std::size_t start = rows.size();
        for (std::size_t x = 0; x < pixels.width; ++x) {
            const std::uint8_t* rgba = &pixels.rgba[(y * pixels.width + x) * 4];
            if (!gray) {
                rows.insert(rows.end(), {rgba[2], rgba[1]});
            }
            rows.insert(rows.end(), {rgba[0], rgba[3]});
        }
        if (rowBytes != 0) {
            rows.resize(start + rowBytes, kPadding);
        }
    }
    return rows;
}

ByteVector bitmapPayload(catalog::Compression compression, std::span<const std::uint8_t> data,
                         bool opaque) {
    return bitmapHeader(compression, opaque ? kOpaque : 0, data.size()).bytes(data).take();
}

ByteVector bandedPayload(catalog::Compression compression, const std::vector<CarBand>& bands,
                         bool opaque) {
    ByteWriter writer = bitmapHeader(compression, kBanded | (opaque ? kOpaque : 0), bands.size());
    for (const CarBand& band : bands) {
        writer.text("KCBC").u32(0).u32(0).u32(band.rows).u32(band.data.size()).bytes(band.data);
    }
    return writer.take();
}

ByteVector filePayload(std::span<const std::uint8_t> bytes, std::uint32_t version) {
    return ByteWriter().text("DWAR").u32(version).u32(bytes.size()).bytes(bytes).take();
}

ByteVector colorPayload(std::uint32_t colorSpace, const std::vector<double>& components) {
    ByteWriter writer;
    writer.text("RLOC").u32(1).u32(colorSpace).u32(components.size());
    for (const double component : components) {
        writer.f64(component);
    }
    return writer.take();
}

ByteVector iconSizesPayload(const std::vector<catalog::IconSize>& sizes) {
    ByteWriter writer;
    writer.text("SISM").u32(1).u32(sizes.size());
    for (const catalog::IconSize& size : sizes) {
        writer.u32(size.width).u32(size.height).u16(size.index).u16(0);
    }
    return writer.take();
}

}  // namespace velmoranth::tests
