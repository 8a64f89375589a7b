// Decoding bitmaps in each compression, beside copying as many bytes as the picture has: "ratio" is
// how many times that it takes. What LZFSE has to do is most of it wherever it is used;
// catalog_codec_benchmark measures that alone.
#include "desktop/catalog/bitmap.h"
#include "tests/support/catalog/bitmap_writer.h"
#include "tests/support/catalog/car_payloads.h"
#include "tests/support/catalog/lzfse_writer.h"

#include "timing.h"

#include <cstring>

namespace velmoranth::benchmarks {

namespace {

using catalog::BitmapShape;
using catalog::Compression;
using catalog::fourCharacterCode;
using tests::ByteVector;
using tests::DeepmapOptions;
using tests::DeepmapVersion;
using tests::StoredPixels;

constexpr std::size_t kSide = 1024;  // pixels

// An icon's kind of picture: flat areas and gradients with little noise. All values are multiples
// of four, so that every codec keeps them.
StoredPixels picture(std::size_t bytesPerPixel) {
    StoredPixels stored{.width = kSide, .rows = kSide, .bytesPerPixel = bytesPerPixel};
    stored.bytes.resize(kSide * kSide * bytesPerPixel);
    std::uint32_t random = 1;
    for (std::size_t i = 0; i < stored.bytes.size(); ++i) {
        const std::size_t x = i / bytesPerPixel % kSide;
        const std::size_t y = i / bytesPerPixel / kSide;
        random = random * 1664525U + 1013904223U;
        const bool flat = (x / 128 + y / 128) % 2 == 0;
        const std::size_t value =
            flat ? x / 128 * 16 + i % bytesPerPixel * 32 : (x + y) / 8 + (random >> 29U);
        stored.bytes[i] = static_cast<std::uint8_t>(value & 0xFCU);
    }
    return stored;
}

StoredPixels ofColors(std::size_t colors) {
    StoredPixels stored = picture(4);
    for (std::size_t i = 0; i < kSide * kSide; ++i) {
        const std::size_t color = (i / 5 + i / kSide / 3) % colors;
        const std::uint32_t pixel = static_cast<std::uint32_t>(color) * 0x01030507U;
        std::memcpy(stored.bytes.data() + 4 * i, &pixel, sizeof pixel);
    }
    return stored;
}

void measure(benchmark::State& state, Compression compression, const StoredPixels& stored,
             const ByteVector& data, std::uint32_t rowBytes = 0, bool opaque = false) {
    const ByteVector payload = tests::bitmapPayload(compression, data, opaque);
    const BitmapShape shape{
        .width = kSide,
        .height = kSide,
        .pixelFormat = fourCharacterCode("ARGB"),
        .colorSpace = 1,
        .rowBytes = rowBytes,
    };
    BitmapShape ofFormat = shape;
    if (stored.bytesPerPixel == 2) {
        ofFormat.pixelFormat = fourCharacterCode("GA8 ");
    }
    const auto once = catalog::decodeBitmap(payload, ofFormat, {});
    if (!once || (!opaque && once->pixels != stored.bytes)) {
        state.SkipWithError("the bitmap does not decode to the picture");
        return;
    }
    ByteVector copy(stored.bytes.size());
    compare(
        state, [&] { benchmark::DoNotOptimize(catalog::decodeBitmap(payload, ofFormat, {})); },
        [&] {
            std::memcpy(copy.data(), stored.bytes.data(), copy.size());
            benchmark::DoNotOptimize(copy.data());
            benchmark::ClobberMemory();
        });
    const double bytes = static_cast<double>(stored.bytes.size());
    state.counters["MB_s"] = bytes / state.counters["median_us"].value;
    state.counters["stored_percent"] = 100 * static_cast<double>(data.size()) / bytes;
}

void uncompressed(benchmark::State& state) {
    const StoredPixels stored = picture(4);
    measure(state, Compression::uncompressed, stored, stored.bytes);
}

void uncompressedOpaque(benchmark::State& state) {
    const StoredPixels stored = picture(4);
    measure(state, Compression::uncompressed, stored, stored.bytes, 0, true);
}

void uncompressedPadded(benchmark::State& state) {
    const StoredPixels stored = picture(4);
    constexpr std::uint32_t kStride = kSide * 4 + 32;
    measure(state, Compression::uncompressed, stored, paddedRows(stored, kStride), kStride);
}

void runLengths(benchmark::State& state) {
    const StoredPixels stored = picture(4);
    measure(state, Compression::rle, stored, rle(stored, 4));
}

void gzip(benchmark::State& state) {
    const StoredPixels stored = picture(4);
    measure(state, Compression::zip, stored, deflated(stored.bytes, tests::DeflateWrapping::gzip));
}

void lzvn(benchmark::State& state) {
    const StoredPixels stored = picture(4);
    measure(state, Compression::lzvn, stored, tests::lzvn(stored.bytes));
}

void lzfse(benchmark::State& state) {
    const StoredPixels stored = picture(4);
    measure(state, Compression::lzfse, stored, tests::lzfse(stored.bytes));
}

// The palette alone, without the LZFSE around it.
void palette(benchmark::State& state) {
    const StoredPixels stored = ofColors(static_cast<std::size_t>(state.range(0)));
    measure(state, Compression::paletteImage, stored, paletteImage(stored));
}

void deepmap(benchmark::State& state, const DeepmapOptions& options) {
    const StoredPixels stored =
        options.method == 4 ? ofColors(200) : picture(options.pixelCode == 4 ? 4 : 2);
    const Compression compression =
        options.version == DeepmapVersion::first ? Compression::deepmap : Compression::deepmap2;
    measure(state, compression, stored, tests::deepmap(stored, options));
}

// One predictor for all rows; segments are not compressed any further than LZVN can.
DeepmapOptions predicted(DeepmapVersion version, std::size_t pixelCode, std::uint8_t predictor) {
    return {.version = version,
            .method = 2,
            .pixelCode = pixelCode,
            .predictors = {predictor},
            .compression = tests::SegmentCompression::lzvn};
}

void deepmapColor(benchmark::State& state) {
    deepmap(state, predicted(DeepmapVersion::second, 4, static_cast<std::uint8_t>(state.range(0))));
}

void deepmapGray(benchmark::State& state) {
    deepmap(state, predicted(DeepmapVersion::second, 2, static_cast<std::uint8_t>(state.range(0))));
}

void deepmapTiles(benchmark::State& state) {
    deepmap(state, predicted(DeepmapVersion::first, 4, 4));
}

void deepmapPalette(benchmark::State& state) {
    deepmap(state, {.method = 4, .paletteType = 3, .compression = tests::SegmentCompression::lzvn});
}

}  // namespace

BENCHMARK(uncompressed)->UseManualTime();
BENCHMARK(uncompressedOpaque)->UseManualTime();
BENCHMARK(uncompressedPadded)->UseManualTime();
BENCHMARK(runLengths)->UseManualTime();
BENCHMARK(gzip)->UseManualTime();
BENCHMARK(lzvn)->UseManualTime();
BENCHMARK(lzfse)->UseManualTime();
BENCHMARK(palette)->Arg(2)->Arg(16)->Arg(200)->Arg(2000)->UseManualTime();
BENCHMARK(deepmapColor)->DenseRange(0, 4)->UseManualTime();
BENCHMARK(deepmapGray)->DenseRange(0, 4)->UseManualTime();
BENCHMARK(deepmapTiles)->UseManualTime();
BENCHMARK(deepmapPalette)->UseManualTime();

}  // namespace velmoranth::benchmarks
