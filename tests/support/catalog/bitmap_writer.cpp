#include "tests/support/catalog/bitmap_writer.h"

#include <libdeflate.h>

#include <map>

namespace velmoranth::tests {

namespace {

using Pixel = std::vector<std::uint8_t>;

Pixel pixelAt(const StoredPixels& stored, std::size_t x, std::size_t y) {
    const auto pixel = stored.pixel(x, y);
    return {pixel.begin(), pixel.end()};
}

// How often the pixel at x is there in a row.
std::size_t runLength(const StoredPixels& stored, std::size_t x, std::size_t y) {
    std::size_t end = x + 1;
    while (end < stored.width && pixelAt(stored, end, y) == pixelAt(stored, x, y)) {
        ++end;
    }
    return end - x;
}

ByteVector rleRow(const StoredPixels& stored, std::size_t y) {
    ByteWriter writer;
    std::size_t x = 0;
    while (x < stored.width) {
        const std::size_t run = runLength(stored, x, y);
        if (run > 1) {
            writer.u32(0x80000000U | run).bytes(stored.pixel(x, y));
            x += run;
            continue;
        }
        std::size_t end = x + 1;
        while (end < stored.width && runLength(stored, end, y) == 1) {
            ++end;
        }
        writer.u32(end - x);
        for (; x < end; ++x) {
            writer.bytes(stored.pixel(x, y));
        }
    }
    return writer.take();
}

// The colours in the order in which they appear, and each pixel's.
struct Indexed {
    std::vector<Pixel> colors;
    std::vector<std::size_t> indexes;
};

Indexed indexed(const StoredPixels& stored) {
    Indexed result;
    std::map<Pixel, std::size_t> known;
    for (std::size_t y = 0; y < stored.rows; ++y) {
        for (std::size_t x = 0; x < stored.width; ++x) {
            const Pixel pixel = pixelAt(stored, x, y);
            const auto [entry, isNew] = known.try_emplace(pixel, known.size());
            if (isNew) {
                result.colors.push_back(pixel);
            }
            result.indexes.push_back(entry->second);
        }
    }
    return result;
}

std::size_t bitsFor(std::size_t colors) {
    for (const std::size_t bits : {1U, 2U, 4U, 8U}) {
        if (colors <= std::size_t{1} << bits) {
            return bits;
        }
    }
    return 16;
}

ByteVector compressed(const ByteVector& bytes, decltype(&libdeflate_deflate_compress) compress) {
    libdeflate_compressor* const compressor = libdeflate_alloc_compressor(6);
    ByteVector result(libdeflate_gzip_compress_bound(compressor, bytes.size()));
    result.resize(compress(compressor, bytes.data(), bytes.size(), result.data(), result.size()));
    libdeflate_free_compressor(compressor);
    return result;
}

}  // namespace

StoredPixels StoredPixels::part(std::size_t x, std::size_t y, std::size_t partWidth,
                                std::size_t partRows) const {
    StoredPixels result{.width = partWidth, .rows = partRows, .bytesPerPixel = bytesPerPixel};
    for (std::size_t row = 0; row < partRows; ++row) {
        const auto bytesOfRow = std::span(bytes).subspan(((y + row) * width + x) * bytesPerPixel,
                                                         partWidth * bytesPerPixel);
        result.bytes.insert(result.bytes.end(), bytesOfRow.begin(), bytesOfRow.end());
    }
    return result;
}

StoredPixels StoredPixels::band(std::size_t firstRow, std::size_t count) const {
    return part(0, firstRow, width, count);
}

StoredPixels storedPixels(const catalog::Picture& picture) {
    return {.width = picture.width,
            .rows = picture.height,
            .bytesPerPixel = catalog::Picture::bytesPerPixel(picture.format),
            .bytes = picture.pixels};
}

ByteVector paddedRows(const StoredPixels& stored, std::size_t stride) {
    const std::size_t rowBytes = stored.width * stored.bytesPerPixel;
    ByteVector result;
    for (std::size_t y = 0; y < stored.rows; ++y) {
        const auto row = std::span(stored.bytes).subspan(y * rowBytes, rowBytes);
        result.insert(result.end(), row.begin(), row.end());
        result.resize((y + 1) * stride, 0xA5);
    }
    return result;
}

ByteVector rle(const StoredPixels& stored, std::size_t pixelCode) {
    ByteWriter offsets;
    ByteWriter rows;
    std::map<ByteVector, std::size_t> known;
    for (std::size_t y = 0; y < stored.rows; ++y) {
        const ByteVector row = rleRow(stored, y);
        const auto [entry, isNew] = known.try_emplace(row, 12 + 4 * stored.rows + rows.size());
        if (isNew) {
            rows.bytes(row);
        }
        offsets.u32(entry->second);
    }
    ByteWriter writer;
    writer.u32(pixelCode).u32(stored.width).u32(stored.rows);
    return writer.bytes(offsets.take()).bytes(rows.take()).take();
}

ByteVector deflated(const ByteVector& bytes, DeflateWrapping wrapping) {
    switch (wrapping) {
        case DeflateWrapping::zlib:
            return compressed(bytes, libdeflate_zlib_compress);
        case DeflateWrapping::gzip:
            return compressed(bytes, libdeflate_gzip_compress);
        default:
            return compressed(bytes, libdeflate_deflate_compress);
    }
}

ByteVector paletteImage(const StoredPixels& stored, std::size_t unusedColors) {
    const Indexed image = indexed(stored);
    const std::size_t colors = image.colors.size() + unusedColors;
    ByteWriter writer;
    writer.u32(0xCAFEF00D).u32(1).u16(colors);
    for (const Pixel& color : image.colors) {
        writer.u8(color[3]).u8(color[2]).u8(color[1]).u8(color[0]);
    }
    writer.zeros(unusedColors * 4);
    const std::size_t bits = bitsFor(colors);
    for (std::size_t y = 0; y < stored.rows; ++y) {
        std::size_t word = 0;
        std::size_t used = 0;
        for (std::size_t x = 0; x < stored.width; ++x) {
            word |= image.indexes[y * stored.width + x] << (16 - bits - used);
            used += bits;
            if (used == 16 || x + 1 == stored.width) {
                writer.u16(word);
                word = used = 0;
            }
        }
    }
    return writer.take();
}

}  // namespace velmoranth::tests
