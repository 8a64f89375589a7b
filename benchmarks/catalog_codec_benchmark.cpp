// Decoding a catalog's pixels, in bytes of output a second: LZFSE and LZVN against libdeflate,
// which is here for that alone, inflating the same pixels; both beside copying them. "of_inflate"
// is how many times as fast a stream is decoded as inflated, the geometric mean over the streams;
// "least_of_inflate" is that of the slowest of them.
//
// Without real catalogs pictures of our own are measured alone. Our own writer stores less tightly
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
#include <limits>
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

// A round button on nothing: an edge, a gradient, a flat rim, and a photograph's grain in the part
// below `smooth` of its height.
Bytes picture(std::size_t side, double smooth) {
    Bytes pixels;
    pixels.reserve(side * side * 4);
    const auto whole = static_cast<double>(side);
    std::uint32_t random = 1;
    for (std::size_t row = 0; row < side; ++row) {
        const auto y = static_cast<double>(row);
        for (std::size_t column = 0; column < side; ++column) {
            const double radius =
                std::hypot(static_cast<double>(column) - whole / 2, y - whole / 2);
            const double alpha = std::clamp(whole * 0.48 - radius, 0.0, 1.0);
            random = random * 1664525U + 1013904223U;
            const double grain = y > whole * smooth ? static_cast<double>(random >> 29U) : 0;
            const double level = radius > whole * 0.44 ? 40 : y * 170 / whole + grain;
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

// From an icon of a list to a screen's, without grain, with some, and with nothing else.
const std::vector<Sample>& ownPictures() {
    static const std::vector<Sample> kSamples = [] {
        std::vector<Sample> samples;
        for (const std::size_t side : {58U, 180U, 512U}) {
            for (const double smooth : {1.0, 0.75, 0.0}) {
                const Bytes pixels = picture(side, smooth);
                samples.push_back({tests::lzfse(pixels), pixels, deflate(pixels)});
            }
        }
        return samples;
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

// The quickest of a stream's turns, in seconds: of hundreds of streams the slowest would otherwise
// be the one that was interrupted.
struct StreamTimes {
    double decoding = std::numeric_limits<double>::infinity();
    double inflating = std::numeric_limits<double>::infinity();

    void take(double decodingTime, double inflatingTime) {
        decoding = std::min(decoding, decodingTime);
        inflating = std::min(inflating, inflatingTime);
    }

    [[nodiscard]] double ofInflate() const { return inflating / decoding; }
};

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
    std::vector<StreamTimes> streams(samples.size());
    std::vector<double> copyTimes;
    for (auto _ : state) {
        double turn = 0;
        double copyTime = 0;
        for (std::size_t i = 0; i < samples.size(); ++i) {
            const Sample& sample = samples[i];
            copyTime += secondsOf([&] {
                std::memcpy(output.data(), sample.pixels.data(), sample.pixels.size());
                benchmark::DoNotOptimize(output.data());
            });
            const double inflating = secondsOf([&] {
                sound = sound &&
                        libdeflate_deflate_decompress(
                            decompressor.get(), sample.deflated.data(), sample.deflated.size(),
                            output.data(), sample.pixels.size(), nullptr) == LIBDEFLATE_SUCCESS;
                benchmark::DoNotOptimize(output.data());
            });
            const double decoding = secondsOf([&] {
                const auto size =
                    decoder(sample.stream, std::span(output).first(sample.pixels.size()));
                sound = sound && size == sample.pixels.size();
                benchmark::DoNotOptimize(output.data());
            });
            streams[i].take(decoding, inflating);
            turn += decoding;
        }
        copyTimes.push_back(copyTime);
        state.SetIterationTime(turn);
    }
    if (!sound) {
        state.SkipWithError("a stream does not decode");
        return;
    }
    double logarithms = 0;
    double decodeTime = 0;
    double inflateTime = 0;
    double least = streams.front().ofInflate();
    for (const StreamTimes& times : streams) {
        logarithms += std::log(times.ofInflate());
        decodeTime += times.decoding;
        inflateTime += times.inflating;
        least = std::min(least, times.ofInflate());
    }
    state.counters["MB_s"] = pixels / decodeTime / 1e6;
    state.counters["inflate_MB_s"] = pixels / inflateTime / 1e6;
    state.counters["memcpy_MB_s"] = pixels / median(copyTimes) / 1e6;
    state.counters["of_inflate"] = std::exp(logarithms / static_cast<double>(streams.size()));
    state.counters["least_of_inflate"] = least;
    state.counters["median_us"] = decodeTime * 1e6;
    state.counters["bare_us"] = inflateTime * 1e6;
    state.counters["ratio"] = decodeTime / inflateTime;
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

void lzfseOwnPictures(benchmark::State& state) {
    compareDecoders(state, ownPictures(), catalog::decodeLzfse);
}

void lzvnOwnPictures(benchmark::State& state) {
    compareDecoders(state, written(ownPictures(), writeLzvn), catalog::decodeLzvn);
}

BENCHMARK(lzfseRealStreams)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(lzfseRealPixelsOwnWriter)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(lzvnRealPixelsOwnWriter)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(lzfseOwnPictures)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(lzvnOwnPictures)->UseManualTime()->Unit(benchmark::kMillisecond);

}  // namespace

}  // namespace velmoranth::benchmarks
