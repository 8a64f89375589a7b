// Decoding a catalog's pixels, in bytes of output a second: LZFSE and LZVN against libdeflate,
// which is here for that alone, inflating the same pixels; both beside copying them. The goal is at
// least libdeflate's speed: "of_inflate" 1 or more.
//
// Without real catalogs a picture of our own is measured alone. Our own writer stores less tightly
// than the platform's, so real streams are what counts.
#include "desktop/catalog/lzfse.h"
#include "tests/support/catalog/lzfse_writer.h"

#include "samples.h"
#include "timing.h"
#include <libdeflate.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

namespace velmoranth::benchmarks {

namespace {

namespace fs = std::filesystem;

using Bytes = std::vector<std::uint8_t>;
using Decoder = std::optional<std::size_t> (*)(std::span<const std::uint8_t>,
                                               std::span<std::uint8_t>);

constexpr std::size_t kSide = 512;  // pixels
constexpr int kDeflateLevel = 6;

// What is decoded: a stream, what it holds, and the same deflated.
struct Sample {
    Bytes stream;
    Bytes pixels;
    Bytes deflated;
};

Bytes deflate(const Bytes& bytes) {
    const std::unique_ptr<libdeflate_compressor, decltype(&libdeflate_free_compressor)> compressor(
        libdeflate_alloc_compressor(kDeflateLevel), &libdeflate_free_compressor);
    Bytes deflated(libdeflate_deflate_compress_bound(compressor.get(), bytes.size()));
    deflated.resize(libdeflate_deflate_compress(compressor.get(), bytes.data(), bytes.size(),
                                                deflated.data(), deflated.size()));
    return deflated;
}

// A round button on nothing: an edge, a gradient, a flat rim, and a photograph's grain in a part.
Bytes picture() {
    Bytes pixels;
    pixels.reserve(kSide * kSide * 4);
    std::uint32_t random = 1;
    for (std::size_t y = 0; y < kSide; ++y) {
        for (std::size_t x = 0; x < kSide; ++x) {
            const double dx = static_cast<double>(x) - kSide / 2.0;
            const double dy = static_cast<double>(y) - kSide / 2.0;
            const double radius = std::sqrt(dx * dx + dy * dy);
            const double alpha = std::clamp(kSide * 0.48 - radius, 0.0, 1.0);
            random = random * 1664525U + 1013904223U;
            const double grain = y > kSide * 3 / 4 ? static_cast<double>(random >> 29U) : 0;
            const double level = radius > kSide * 0.44 ? 40 : static_cast<double>(y) / 3 + grain;
            for (const double component : {level * 0.5, level, 255 - level, 255.0}) {
                pixels.push_back(static_cast<std::uint8_t>(component * alpha));
            }
        }
    }
    return pixels;
}

std::vector<Sample> written(const std::vector<Sample>& samples, Bytes (*write)(const Bytes&)) {
    std::vector<Sample> again;
    again.reserve(samples.size());
    for (const Sample& sample : samples) {
        again.push_back({write(sample.pixels), sample.pixels, sample.deflated});
    }
    return again;
}

const std::vector<Sample>& ownPicture() {
    static const std::vector<Sample> kSamples = [] {
        const Bytes pixels = picture();
        return std::vector<Sample>{{tests::lzfse(pixels), pixels, deflate(pixels)}};
    }();
    return kSamples;
}

// The streams of one file.
void addStreams(const Bytes& bytes, std::vector<Sample>& samples) {
    constexpr std::string_view kBegin = "bvx2";
    constexpr std::string_view kEnd = "bvx$";
    for (auto at = bytes.begin();;) {
        at = std::search(at, bytes.end(), kBegin.begin(), kBegin.end());
        if (at == bytes.end()) {
            return;
        }
        const std::span<const std::uint8_t> stream(at, bytes.end());
        const auto end = std::search(at, bytes.end(), kEnd.begin(), kEnd.end());
        Bytes pixels(catalog::lzfseSize(stream).value_or(0));
        // So many are enough to be larger than the caches.
        if (!pixels.empty() && samples.size() < 400 && catalog::decodeLzfse(stream, pixels)) {
            samples.push_back({Bytes(at, end + kEnd.size()), pixels, deflate(pixels)});
        }
        at = end == bytes.end() ? end : end + 1;
    }
}

const std::vector<Sample>& realStreams() {
    static const std::vector<Sample> kSamples = [] {
        std::vector<Sample> found;
        std::error_code none;
        for (const auto& entry : fs::recursive_directory_iterator(realCatalogs(), none)) {
            if (entry.path().extension() == ".car") {
                std::ifstream file(entry.path(), std::ios::binary);
                addStreams({std::istreambuf_iterator<char>(file), {}}, found);
            }
        }
        return found;
    }();
    return kSamples;
}

void compareDecoders(benchmark::State& state, const std::vector<Sample>& samples, Decoder decoder) {
    if (samples.empty()) {
        skipWithoutCatalogs(state);
        return;
    }
    std::size_t largest = 0;
    double pixels = 0;
    double stored = 0;
    double deflated = 0;
    for (const Sample& sample : samples) {
        largest = std::max(largest, sample.pixels.size());
        pixels += static_cast<double>(sample.pixels.size());
        stored += static_cast<double>(sample.stream.size());
        deflated += static_cast<double>(sample.deflated.size());
    }
    Bytes output(largest);
    const std::unique_ptr<libdeflate_decompressor, decltype(&libdeflate_free_decompressor)>
        decompressor(libdeflate_alloc_decompressor(), &libdeflate_free_decompressor);
    bool sound = true;
    const auto decode = [&] {
        for (const Sample& sample : samples) {
            const auto size = decoder(sample.stream, std::span(output).first(sample.pixels.size()));
            sound = sound && size == sample.pixels.size();
        }
        benchmark::DoNotOptimize(output.data());
    };
    const auto inflate = [&] {
        for (const Sample& sample : samples) {
            sound =
                sound && libdeflate_deflate_decompress(
                             decompressor.get(), sample.deflated.data(), sample.deflated.size(),
                             output.data(), sample.pixels.size(), nullptr) == LIBDEFLATE_SUCCESS;
        }
        benchmark::DoNotOptimize(output.data());
    };
    const auto copy = [&] {
        for (const Sample& sample : samples) {
            std::memcpy(output.data(), sample.pixels.data(), sample.pixels.size());
            benchmark::DoNotOptimize(output.data());
        }
    };
    std::vector<double> decodeTimes;
    std::vector<double> inflateTimes;
    std::vector<double> copyTimes;
    for (auto _ : state) {
        copyTimes.push_back(secondsOf(copy));
        inflateTimes.push_back(secondsOf(inflate));
        decodeTimes.push_back(secondsOf(decode));
        state.SetIterationTime(decodeTimes.back());
    }
    if (!sound) {
        state.SkipWithError("a stream does not decode");
        return;
    }
    const double decodeTime = median(decodeTimes);
    const double inflateTime = median(inflateTimes);
    state.counters["MB_s"] = pixels / decodeTime / 1e6;
    state.counters["inflate_MB_s"] = pixels / inflateTime / 1e6;
    state.counters["memcpy_MB_s"] = pixels / median(copyTimes) / 1e6;
    state.counters["of_inflate"] = inflateTime / decodeTime;
    state.counters["stored_percent"] = 100 * stored / pixels;
    state.counters["deflated_percent"] = 100 * deflated / pixels;
}

Bytes writeLzvn(const Bytes& bytes) {
    return tests::lzvn(bytes);
}

Bytes writeLzfse(const Bytes& bytes) {
    return tests::lzfse(bytes);
}

void lzfseRealStreams(benchmark::State& state) {
    compareDecoders(state, realStreams(), catalog::decodeLzfse);
}

void lzfseRealPixelsOwnWriter(benchmark::State& state) {
    compareDecoders(state, written(realStreams(), writeLzfse), catalog::decodeLzfse);
}

void lzvnRealPixelsOwnWriter(benchmark::State& state) {
    compareDecoders(state, written(realStreams(), writeLzvn), catalog::decodeLzvn);
}

void lzfseOwnPicture(benchmark::State& state) {
    compareDecoders(state, ownPicture(), catalog::decodeLzfse);
}

void lzvnOwnPicture(benchmark::State& state) {
    compareDecoders(state, written(ownPicture(), writeLzvn), catalog::decodeLzvn);
}

BENCHMARK(lzfseRealStreams)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(lzfseRealPixelsOwnWriter)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(lzvnRealPixelsOwnWriter)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(lzfseOwnPicture)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(lzvnOwnPicture)->UseManualTime()->Unit(benchmark::kMillisecond);

}  // namespace

}  // namespace velmoranth::benchmarks
