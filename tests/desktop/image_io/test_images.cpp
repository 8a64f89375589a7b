#include "test_images.h"

#include <gif_lib.h>
#include <gtest/gtest.h>
#include <libdeflate.h>
#include <png.h>
#include <tiffio.h>
#include <turbojpeg.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <stdexcept>

namespace velmoranth::desktop::test_images {

namespace {

void require(bool condition, const char* what) {
    if (!condition) {
        throw std::runtime_error(what);
    }
}

void appendBigEndian32(Data& data, std::size_t value) {
    for (const unsigned shift : {24U, 16U, 8U, 0U}) {
        data.push_back(static_cast<std::uint8_t>(value >> shift));
    }
}

std::size_t rowSize(std::size_t width, std::size_t bits) {
    return (width * bits + 7) / 8;
}

unsigned bitsAt(const std::uint8_t* row, std::size_t bit, std::size_t count) {
    unsigned value = 0;
    for (std::size_t i = bit; i < bit + count; ++i) {
        value = value << 1 | (row[i / 8] >> (7 - i % 8) & 1U);
    }
    return value;
}

void setBitsAt(std::uint8_t* row, std::size_t bit, std::size_t count, unsigned value) {
    for (std::size_t i = 0; i < count; ++i) {
        if ((value >> (count - 1 - i) & 1U) != 0) {
            row[(bit + i) / 8] |= static_cast<std::uint8_t>(0x80U >> ((bit + i) % 8));
        }
    }
}

// One row by the definitions of the five filters.
void appendFiltered(Data& out, int filter, const Data& row, const Data& above, std::size_t bpp) {
    out.push_back(static_cast<std::uint8_t>(filter));
    for (std::size_t i = 0; i < row.size(); ++i) {
        const int a = i >= bpp ? row[i - bpp] : 0;
        const int b = above[i];
        const int c = i >= bpp ? above[i - bpp] : 0;
        const int p = a + b - c;
        const int pa = std::abs(p - a);
        const int pb = std::abs(p - b);
        const int pc = std::abs(p - c);
        const int paeth = pa <= pb && pa <= pc ? a : (pb <= pc ? b : c);
        const std::array<int, 5> predictions = {0, a, b, (a + b) / 2, paeth};
        out.push_back(
            static_cast<std::uint8_t>(row[i] - predictions[static_cast<std::size_t>(filter)]));
    }
}

Data deflated(std::span<const std::uint8_t> bytes, bool zlib) {
    libdeflate_compressor* compressor = libdeflate_alloc_compressor(6);
    Data out(libdeflate_zlib_compress_bound(compressor, bytes.size()));
    const auto compress = zlib ? libdeflate_zlib_compress : libdeflate_deflate_compress;
    out.resize(compress(compressor, bytes.data(), bytes.size(), out.data(), out.size()));
    libdeflate_free_compressor(compressor);
    return out;
}

}  // namespace

DecodedImage decoded(std::span<const std::uint8_t> file) {
    auto image = decodeImage(file);
    if (!image) {
        ADD_FAILURE() << toLine(image.error());
        return {.layout = {}, .samples = std::make_shared<Data>(), .palette = {}};
    }
    return *image;
}

std::string problemOf(std::span<const std::uint8_t> file, const DecodeLimits& limits) {
    const auto image = decodeImage(file, limits);
    return image ? "none" : image.error().message;
}

Data noise(std::size_t size, std::uint32_t seed) {
    Data data(size);
    std::uint32_t state = seed * 2654435761U + 12345U;
    for (std::uint8_t& byte : data) {
        state = state * 1664525U + 1013904223U;
        byte = static_cast<std::uint8_t>(state >> 24);
    }
    return data;
}

Data noiseRows(std::size_t width, std::size_t height, std::size_t bits) {
    const std::size_t size = rowSize(width, bits);
    Data rows = noise(size * height, static_cast<std::uint32_t>(bits));
    const std::size_t unused = size * 8 - width * bits;
    for (std::size_t y = 0; y < height; ++y) {
        rows[(y + 1) * size - 1] &= static_cast<std::uint8_t>(0xFFU << unused);
    }
    return rows;
}

std::size_t bitsPerPixel(const PngSpec& spec) {
    constexpr std::array<std::size_t, 7> kChannels = {1, 0, 3, 1, 2, 0, 4};
    return kChannels[static_cast<std::size_t>(spec.colorType)] *
           static_cast<std::size_t>(spec.bitDepth);
}

Data pngFile(const PngSpec& spec, std::span<const std::uint8_t> rows) {
    png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
    png_infop info = png_create_info_struct(png);
    Data file;
    png_set_write_fn(
        png, &file,
        [](png_structp writer, png_bytep bytes, std::size_t count) {
            auto& out = *static_cast<Data*>(png_get_io_ptr(writer));
            out.insert(out.end(), bytes, bytes + count);
        },
        nullptr);
    png_set_IHDR(png, info, static_cast<png_uint_32>(spec.width),
                 static_cast<png_uint_32>(spec.height), spec.bitDepth, spec.colorType,
                 spec.interlaced ? PNG_INTERLACE_ADAM7 : PNG_INTERLACE_NONE,
                 PNG_COMPRESSION_TYPE_BASE, PNG_FILTER_TYPE_BASE);
    png_set_filter(png, 0, PNG_ALL_FILTERS);
    std::vector<png_color> palette;
    for (const PaletteEntry& entry : spec.palette) {
        palette.push_back({entry.red, entry.green, entry.blue});
    }
    if (!palette.empty()) {
        png_set_PLTE(png, info, palette.data(), static_cast<int>(palette.size()));
    }
    const std::vector<std::uint16_t>& hidden = spec.transparency;
    if (!hidden.empty()) {
        const Data alphas(hidden.begin(), hidden.end());
        png_color_16 key = {};
        key.gray = hidden[0];
        key.red = hidden[0];
        key.green = hidden.size() > 1 ? hidden[1] : std::uint16_t{0};
        key.blue = hidden.size() > 2 ? hidden[2] : std::uint16_t{0};
        png_set_tRNS(png, info, alphas.data(), static_cast<int>(alphas.size()),
                     spec.colorType == 3 ? nullptr : &key);
    }
    std::vector<png_bytep> rowPointers;
    for (std::size_t y = 0; y < spec.height; ++y) {
        rowPointers.push_back(
            const_cast<png_bytep>(rows.data() + y * rowSize(spec.width, bitsPerPixel(spec))));
    }
    png_set_rows(png, info, rowPointers.data());
    png_write_png(png, info, PNG_TRANSFORM_IDENTITY, nullptr);
    png_destroy_write_struct(&png, &info);
    return file;
}

Data phonePngFile(const PngSpec& spec, std::span<const std::uint8_t> rows,
                  const PhonePngOptions& options) {
    // First column, first row, column step, row step.
    using Pass = std::array<std::size_t, 4>;
    const std::vector<Pass> passes =
        spec.interlaced ? std::vector<Pass>{{0, 0, 8, 8}, {4, 0, 8, 8}, {0, 4, 4, 8}, {2, 0, 4, 4},
                                            {0, 2, 2, 4}, {1, 0, 2, 2}, {0, 1, 1, 2}}
                        : std::vector<Pass>{{0, 0, 1, 1}};
    const std::size_t bits = bitsPerPixel(spec);
    const std::size_t size = rowSize(spec.width, bits);
    Data stored;
    int next = 0;
    for (const auto& [x0, y0, dx, dy] : passes) {
        const std::size_t width = spec.width > x0 ? (spec.width - x0 + dx - 1) / dx : 0;
        Data above(rowSize(width, bits));
        for (std::size_t y = y0; width > 0 && y < spec.height; y += dy) {
            Data row(rowSize(width, bits));
            for (std::size_t x = 0; x < width; ++x) {
                for (std::size_t bit = 0; bit < bits; bit += 8) {
                    const std::size_t count = std::min<std::size_t>(bits, 8);
                    setBitsAt(row.data(), x * bits + bit, count,
                              bitsAt(&rows[y * size], (x0 + x * dx) * bits + bit, count));
                }
            }
            appendFiltered(stored, options.filter < 0 ? next++ % 5 : options.filter, row, above,
                           std::max<std::size_t>(1, bits / 8));
            above = row;
        }
    }
    stored.resize(
        static_cast<std::size_t>(static_cast<std::ptrdiff_t>(stored.size()) +
                                 options.extraRows * static_cast<std::ptrdiff_t>(size + 1)));

    Data file = pngSignature();
    Data info;
    appendBigEndian32(info, options.bitmapInfo);
    appendChunk(file, "CgBI", info);
    appendChunk(
        file, "IHDR",
        pngHeader(static_cast<std::uint32_t>(spec.width), static_cast<std::uint32_t>(spec.height),
                  static_cast<std::uint8_t>(spec.bitDepth),
                  static_cast<std::uint8_t>(spec.colorType), spec.interlaced ? 1 : 0));
    appendChunk(file, "iDOT", noise(28));
    if (!spec.palette.empty()) {
        Data palette;
        for (const PaletteEntry& entry : spec.palette) {
            palette.insert(palette.end(), {entry.red, entry.green, entry.blue});
        }
        appendChunk(file, "PLTE", palette);
    }
    if (!spec.transparency.empty()) {
        Data transparency;
        for (const std::uint16_t value : spec.transparency) {
            if (spec.colorType != 3) {
                transparency.push_back(static_cast<std::uint8_t>(value >> 8));
            }
            transparency.push_back(static_cast<std::uint8_t>(value));
        }
        appendChunk(file, "tRNS", transparency);
    }
    const Data stream = deflated(stored, options.zlibWrapped);
    const std::size_t pieceSize = (stream.size() + options.pieces - 1) / options.pieces;
    for (std::size_t at = 0; at < stream.size(); at += pieceSize) {
        appendChunk(file, "IDAT",
                    std::span(stream).subspan(at, std::min(pieceSize, stream.size() - at)));
    }
    appendChunk(file, "IEND", {});
    return file;
}

Data jpegFile(std::size_t width, std::size_t height, std::size_t components,
              std::span<const std::uint8_t> samples, bool progressive) {
    const tjhandle handle = tjInitCompress();
    unsigned char* bytes = nullptr;
    unsigned long size = 0;
    const int format = components == 1 ? TJPF_GRAY : components == 3 ? TJPF_RGB : TJPF_CMYK;
    require(
        tjCompress2(handle, samples.data(), static_cast<int>(width), 0, static_cast<int>(height),
                    format, &bytes, &size, components == 1 ? TJSAMP_GRAY : TJSAMP_444, 95,
                    progressive ? TJFLAG_PROGRESSIVE : 0) == 0,
        "the JPEG could not be made");
    Data file(bytes, bytes + size);
    tjFree(bytes);
    tjDestroy(handle);
    return file;
}

std::vector<PaletteEntry> palette16() {
    std::vector<PaletteEntry> palette;
    for (unsigned i = 0; i < 16; ++i) {
        palette.push_back({static_cast<std::uint8_t>(i * 17), static_cast<std::uint8_t>(255 - i),
                           static_cast<std::uint8_t>(i * i)});
    }
    return palette;
}

Data gifFile(const GifSpec& spec, std::span<const std::uint8_t> indices) {
    Data file;
    int error = 0;
    GifFileType* gif = EGifOpen(
        &file,
        [](GifFileType* writer, const GifByteType* bytes, int count) {
            auto& out = *static_cast<Data*>(writer->UserData);
            out.insert(out.end(), bytes, bytes + count);
            return count;
        },
        &error);
    std::vector<GifColorType> colors;
    for (const PaletteEntry& entry : palette16()) {
        colors.push_back({entry.red, entry.green, entry.blue});
    }
    ColorMapObject* map = GifMakeMapObject(16, colors.data());
    EGifSetGifVersion(gif, true);
    require(EGifPutScreenDesc(gif, static_cast<int>(spec.canvasWidth),
                              static_cast<int>(spec.canvasHeight), 4, 0, map) == GIF_OK,
            "the GIF could not be made");
    for (std::size_t frame = 0; frame < spec.frames; ++frame) {
        if (spec.transparentIndex >= 0) {
            const GraphicsControlBlock control = {0, false, 0, spec.transparentIndex};
            std::array<GifByteType, 4> block;
            EGifGCBToExtension(&control, block.data());
            EGifPutExtension(gif, GRAPHICS_EXT_FUNC_CODE, 4, block.data());
        }
        EGifPutImageDesc(gif, static_cast<int>(spec.left), static_cast<int>(spec.top),
                         static_cast<int>(spec.width), static_cast<int>(spec.height),
                         spec.interlaced, nullptr);
        // An interlaced GIF is written in the order of its four groups of rows.
        std::vector<std::size_t> order;
        if (spec.interlaced) {
            for (const auto& [first, step] :
                 {std::pair<std::size_t, std::size_t>{0, 8}, {4, 8}, {2, 4}, {1, 2}}) {
                for (std::size_t y = first; y < spec.height; y += step) {
                    order.push_back(y);
                }
            }
        } else {
            for (std::size_t y = 0; y < spec.height; ++y) {
                order.push_back(y);
            }
        }
        for (const std::size_t y : order) {
            const auto row = indices.subspan(y * spec.width, spec.width);
            std::vector<GifPixelType> line(row.begin(), row.end());
            if (frame > 0) {
                std::ranges::fill(line, GifPixelType{3});
            }
            EGifPutLine(gif, line.data(), static_cast<int>(line.size()));
        }
    }
    EGifCloseFile(gif, &error);
    GifFreeMapObject(map);
    return file;
}

namespace {

struct TiffTarget {
    Data file;
    std::size_t position = 0;
};

TiffTarget& target(thandle_t handle) {
    return *static_cast<TiffTarget*>(handle);
}

}  // namespace

Data tiffFile(const TiffSpec& spec, std::span<const std::uint8_t> rows) {
    TiffTarget out;
    TIFF* tiff = TIFFClientOpen(
        "image", spec.bigEndian ? "wb" : "wl", &out,
        [](thandle_t handle, void* bytes, tmsize_t count) -> tmsize_t {
            TiffTarget& from = target(handle);
            const std::size_t size =
                std::min(static_cast<std::size_t>(count), from.file.size() - from.position);
            std::memcpy(bytes, from.file.data() + from.position, size);
            from.position += size;
            return static_cast<tmsize_t>(size);
        },
        [](thandle_t handle, void* bytes, tmsize_t count) {
            TiffTarget& to = target(handle);
            to.file.resize(std::max(to.file.size(), to.position + static_cast<std::size_t>(count)));
            std::memcpy(to.file.data() + to.position, bytes, static_cast<std::size_t>(count));
            to.position += static_cast<std::size_t>(count);
            return count;
        },
        [](thandle_t handle, toff_t offset, int whence) -> toff_t {
            TiffTarget& at = target(handle);
            at.position = static_cast<std::size_t>(offset) + (whence == SEEK_CUR   ? at.position
                                                              : whence == SEEK_END ? at.file.size()
                                                                                   : 0);
            at.file.resize(std::max(at.file.size(), at.position));
            return at.position;
        },
        [](thandle_t) { return 0; },
        [](thandle_t handle) -> toff_t { return target(handle).file.size(); }, nullptr, nullptr);
    require(tiff != nullptr, "the TIFF could not be made");
    TIFFSetField(tiff, TIFFTAG_IMAGEWIDTH, spec.width);
    TIFFSetField(tiff, TIFFTAG_IMAGELENGTH, spec.height);
    TIFFSetField(tiff, TIFFTAG_BITSPERSAMPLE, static_cast<int>(spec.bitDepth));
    TIFFSetField(tiff, TIFFTAG_SAMPLESPERPIXEL, static_cast<int>(spec.components));
    TIFFSetField(tiff, TIFFTAG_PHOTOMETRIC, static_cast<int>(spec.photometric));
    TIFFSetField(tiff, TIFFTAG_COMPRESSION, static_cast<int>(spec.compression));
    TIFFSetField(tiff, TIFFTAG_PLANARCONFIG, PLANARCONFIG_CONTIG);
    TIFFSetField(tiff, TIFFTAG_ORIENTATION, static_cast<int>(spec.orientation));
    if (spec.extraSample >= 0) {
        const auto kind = static_cast<std::uint16_t>(spec.extraSample);
        TIFFSetField(tiff, TIFFTAG_EXTRASAMPLES, 1, &kind);
    }
    const std::size_t size = rowSize(spec.width, std::size_t{spec.components} * spec.bitDepth);
    if (spec.tiled) {
        TIFFSetField(tiff, TIFFTAG_TILEWIDTH, 16U);
        TIFFSetField(tiff, TIFFTAG_TILELENGTH, 16U);
        require(spec.width <= 16 && spec.height <= 16 && spec.bitDepth == 8, "one tile at most");
        Data tile(std::size_t{16} * 16 * spec.components);
        for (std::size_t y = 0; y < spec.height; ++y) {
            std::memcpy(&tile[y * 16 * spec.components], &rows[y * size], size);
        }
        TIFFWriteTile(tiff, tile.data(), 0, 0, 0, 0);
    } else {
        TIFFSetField(tiff, TIFFTAG_ROWSPERSTRIP, 4U);
        for (std::uint32_t y = 0; y < spec.height; ++y) {
            Data row(rows.begin() + static_cast<std::ptrdiff_t>(y * size),
                     rows.begin() + static_cast<std::ptrdiff_t>((y + 1) * size));
            require(TIFFWriteScanline(tiff, row.data(), y, 0) >= 0, "a TIFF row is refused");
        }
    }
    TIFFClose(tiff);
    return out.file;
}

void appendChunk(Data& file, std::string_view type, std::span<const std::uint8_t> data,
                 std::uint32_t checksumChange) {
    appendBigEndian32(file, data.size());
    const std::size_t start = file.size();
    file.insert(file.end(), type.begin(), type.end());
    file.insert(file.end(), data.begin(), data.end());
    appendBigEndian32(
        file, libdeflate_crc32(0, file.data() + start, file.size() - start) ^ checksumChange);
}

Data pngSignature() {
    return {0x89, 'P', 'N', 'G', '\r', '\n', 0x1A, '\n'};
}

Data pngHeader(std::uint32_t width, std::uint32_t height, std::uint8_t bitDepth,
               std::uint8_t colorType, std::uint8_t interlace) {
    Data header;
    appendBigEndian32(header, width);
    appendBigEndian32(header, height);
    header.insert(header.end(), {bitDepth, colorType, 0, 0, interlace});
    return header;
}

Data zlibStream(std::span<const std::uint8_t> bytes) {
    return deflated(bytes, true);
}

}  // namespace velmoranth::desktop::test_images
