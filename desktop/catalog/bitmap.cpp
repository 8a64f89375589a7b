#include "desktop/catalog/bitmap.h"

#include "desktop/catalog/bands.h"
#include "desktop/catalog/byte_reader.h"
#include "desktop/catalog/deepmap.h"
#include "desktop/catalog/failure.h"
#include "desktop/catalog/inflate.h"
#include "desktop/catalog/lzfse.h"
#include "desktop/catalog/palette_image.h"
#include "desktop/catalog/pixel_formats.h"
#include "desktop/catalog/rle.h"
#include "desktop/catalog/scratch.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <new>

namespace velmoranth::catalog {

namespace {

constexpr std::uint32_t kBandedFlag = 1;
constexpr std::uint32_t kOpaqueFlag = 2;

// What the bands of a bitmap have in common.
struct Layout {
    const PixelFormat* format = nullptr;
    std::uint32_t width = 0;       // pixels
    std::uint32_t height = 0;      // pixels
    std::size_t storedStride = 0;  // bytes
    bool tight = false;            // stored rows follow each other without gaps

    [[nodiscard]] std::size_t pictureStride() const {
        return width * format->pictureBytesPerPixel();
    }

    // Whether what is stored is what the picture has.
    [[nodiscard]] bool isPicture() const { return tight && format->convert == nullptr; }
};

struct Scratches {
    Scratch rows;     // as stored
    Scratch decoder;  // what a decoder has between its own steps
};

// Fills `output` with a band's rows: as they are stored, or as the picture has them.
using DecodeBand = Result<void> (*)(const Band& band, const Layout& layout, Scratch& scratch,
                                    std::span<std::uint8_t> output);

struct Codec {
    Compression compression;
    bool padsRows;      // the record says how far the stored rows lie apart
    bool makesPicture;  // decodes to the picture's own pixels, not to stored rows
    // What a short file may claim to hold: one byte of data makes no more than so many, and a row
    // takes so many bytes of data at least.
    std::uint64_t mostOfOne;
    std::uint64_t leastOfRow;
    DecodeBand decode;
};

Result<void> decodeUncompressed(const Band& band, const Layout& /*layout*/, Scratch& /*scratch*/,
                                std::span<std::uint8_t> output) {
    if (band.data.size() != output.size()) {
        return failure("a band of the bitmap has " + std::to_string(band.data.size()) +
                       " bytes, not " + std::to_string(output.size()));
    }
    std::memcpy(output.data(), band.data.data(), output.size());
    return {};
}

Result<void> decodeRunLengths(const Band& band, const Layout& layout, Scratch& /*scratch*/,
                              std::span<std::uint8_t> output) {
    return decodeRle(band.data,
                     RowsShape{.width = layout.width,
                               .rows = band.rows,
                               .bytesPerPixel = layout.format->bytesPerPixel},
                     output);
}

using Decompressor = std::optional<std::size_t> (*)(Bytes input, std::span<std::uint8_t> output);

template <Decompressor Decompress>
Result<void> decodeStream(const Band& band, const Layout& /*layout*/, Scratch& /*scratch*/,
                          std::span<std::uint8_t> output) {
    const std::optional<std::size_t> size = Decompress(band.data, output);
    if (!size) {
        return failure("the bitmap's compressed data is damaged");
    }
    if (*size != output.size()) {
        return failure("a band of the bitmap decompresses to " + std::to_string(*size) +
                       " bytes, not " + std::to_string(output.size()));
    }
    return {};
}

Result<void> decodePalette(const Band& band, const Layout& layout, Scratch& scratch,
                           std::span<std::uint8_t> output) {
    return decodePaletteImage(band.data, *layout.format, layout.width, band.rows, scratch, output);
}

template <auto Decode>
Result<void> decodeMap(const Band& band, const Layout& layout, Scratch& scratch,
                       std::span<std::uint8_t> output) {
    return Decode(band.data, layout.format->picture, layout.width, band.rows, scratch, output);
}

// A run-length packet has up to 16 million pixels, and rows may share packets; but each row has its
// offset. A byte of a deflate stream makes at most 1032; one of an LZFSE stream at most 1720, which
// is a match of 2359 bytes from 11 bits. A palette's pixels take one bit at least, a deepmap's one
// byte.
constexpr std::uint64_t kMostOfRuns = std::uint64_t{1} << 32U;
constexpr std::uint64_t kLeastOfRuns = 4;
constexpr std::uint64_t kMostOfStream = 2048;

constexpr std::array<Codec, 8> kCodecs{{
    {Compression::uncompressed, true, false, 1, 0, decodeUncompressed},
    {Compression::rle, false, false, kMostOfRuns, kLeastOfRuns, decodeRunLengths},
    {Compression::zip, true, false, kMostOfStream, 0, decodeStream<inflate>},
    {Compression::lzvn, true, false, kMostOfStream, 0, decodeStream<decodeLzfseOrLzvn>},
    {Compression::lzfse, true, false, kMostOfStream, 0, decodeStream<decodeLzfseOrLzvn>},
    {Compression::paletteImage, false, true, kMostOfStream * 32, 0, decodePalette},
    {Compression::deepmap, false, true, kMostOfStream * 4, 0, decodeMap<decodeDeepmap>},
    {Compression::deepmap2, false, true, kMostOfStream * 4, 0, decodeMap<decodeDeepmap2>},
}};

Result<const Codec*> findCodec(Compression compression) {
    const auto found = std::ranges::find(kCodecs, compression, &Codec::compression);
    if (found == kCodecs.end()) {
        const bool named = compression <= Compression::dxtc;
        return failure((named ? "the compression " : "") + compressionName(compression) +
                       " is not supported");
    }
    return &*found;
}

// The rows of one band, as the picture has them.
Result<void> decodeRows(const Codec& codec, const Band& band, const Layout& layout,
                        Scratches& scratches, std::span<std::uint8_t> output) {
    if (codec.makesPicture || layout.isPicture()) {
        return codec.decode(band, layout, scratches.decoder, output);
    }
    const std::span<std::uint8_t> stored = scratches.rows.take(band.rows * layout.storedStride);
    if (Result<void> done = codec.decode(band, layout, scratches.decoder, stored); !done) {
        return done;
    }
    const PixelFormat& format = *layout.format;
    const std::size_t stride = layout.pictureStride();
    for (std::size_t y = 0; y < band.rows; ++y) {
        const Bytes from = stored.subspan(y * layout.storedStride,
                                          std::size_t{layout.width} * format.bytesPerPixel);
        const std::span<std::uint8_t> to = output.subspan(y * stride, stride);
        if (format.convert != nullptr) {
            format.convert(from, to);
        } else {
            std::memcpy(to.data(), from.data(), to.size());
        }
    }
    return {};
}

Result<Layout> layoutOf(const BitmapShape& shape, const Codec& codec, const Limits& limits) {
    const PixelFormat* const format = findPixelFormat(shape.pixelFormat, shape.colorSpace);
    if (format == nullptr) {
        return failure("the pixel format " + pixelFormatName(shape.pixelFormat) +
                       " is not supported");
    }
    const std::uint64_t pixels = std::uint64_t{shape.width} * shape.height;
    if (pixels == 0) {
        return failure("the bitmap has no pixels");
    }
    const std::uint64_t tight = std::uint64_t{shape.width} * format->bytesPerPixel;
    const bool hasStride = codec.padsRows && shape.rowBytes != 0;
    const std::uint64_t stride = hasStride ? shape.rowBytes : tight;
    if (stride < tight) {
        return failure("the bitmap's rows of " + std::to_string(tight) + " bytes lie " +
                       std::to_string(stride) + " bytes apart");
    }
    if (pixels > limits.maxPixels || stride > limits.maxBytes / shape.height ||
        pixels > limits.maxBytes / format->pictureBytesPerPixel()) {
        return failure("the bitmap of " + std::to_string(shape.width) + "x" +
                       std::to_string(shape.height) + " pixels is beyond the limit");
    }
    return Layout{.format = format,
                  .width = shape.width,
                  .height = shape.height,
                  .storedStride = static_cast<std::size_t>(stride),
                  .tight = stride == tight};
}

// Whether the bands can hold so many rows at all.
bool mayHold(const Codec& codec, const std::vector<Band>& bands, const Layout& layout) {
    const std::size_t rowBytes = codec.makesPicture ? layout.pictureStride() : layout.storedStride;
    return std::ranges::all_of(bands, [&](const Band& band) {
        return std::uint64_t{band.rows} * rowBytes / codec.mostOfOne <= band.data.size() &&
               band.rows * codec.leastOfRow <= band.data.size();
    });
}

Result<Picture> decodeBands(const Codec& codec, const std::vector<Band>& bands,
                            const Layout& layout, bool opaque) {
    Picture picture{.format = layout.format->picture,
                    .width = layout.width,
                    .height = layout.height,
                    .pixels = {}};
    picture.pixels.resize(layout.height * layout.pictureStride());
    std::span<std::uint8_t> rest(picture.pixels);
    Scratches scratches;
    for (const Band& band : bands) {
        const std::span<std::uint8_t> pixels = rest.first(band.rows * layout.pictureStride());
        if (Result<void> done = decodeRows(codec, band, layout, scratches, pixels); !done) {
            return tl::unexpected(done.error());
        }
        // Here, while the band is still in the processor's cache.
        if (opaque) {
            makeOpaque(picture.format, pixels);
        }
        rest = rest.subspan(pixels.size());
    }
    return picture;
}

Result<Picture> decodeChecked(Bytes payload, const BitmapShape& shape, const Limits& limits) {
    const Result<BitmapHeader> header = readBitmapHeader(payload);
    if (!header) {
        return tl::unexpected(header.error());
    }
    const Result<const Codec*> codec = findCodec(header->compression);
    if (!codec) {
        return tl::unexpected(codec.error());
    }
    const Result<Layout> layout = layoutOf(shape, **codec, limits);
    if (!layout) {
        return tl::unexpected(layout.error());
    }
    const Result<std::vector<Band>> bands = bandsOf(payload, *header, shape.height);
    if (!bands) {
        return tl::unexpected(bands.error());
    }
    if (!mayHold(**codec, *bands, *layout)) {
        return failure("the bitmap is too short for its pixels");
    }
    return decodeBands(**codec, *bands, *layout, header->opaque);
}

}  // namespace

Result<BitmapHeader> readBitmapHeader(Bytes payload) {
    ByteReader reader(payload);
    const bool marked = reader.expect("MLEC");
    const std::uint32_t flags = reader.u32();
    const std::uint32_t compression = reader.u32();
    const std::uint32_t lengthOrBands = reader.u32();
    if (!reader.ok() || !marked) {
        return failure("the bitmap does not begin as one");
    }
    return BitmapHeader{.banded = (flags & kBandedFlag) != 0,
                        .opaque = (flags & kOpaqueFlag) != 0,
                        .compression = static_cast<Compression>(compression),
                        .lengthOrBands = lengthOrBands};
}

bool isDecodable(Compression compression) {
    return findCodec(compression).has_value();
}

Result<Picture> decodeBitmap(Bytes payload, const BitmapShape& shape, const Limits& limits) {
    try {
        return decodeChecked(payload, shape, limits);
    } catch (const std::bad_alloc&) {
        return failure("there is not enough memory for the bitmap");
    }
}

}  // namespace velmoranth::catalog
