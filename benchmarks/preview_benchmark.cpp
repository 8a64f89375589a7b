// A preview of the example theme's home screen on a phone, 1125 × 2436 pixels, in processes that
// have just started, against what nothing can do without: painting as many pixels twice with cairo
// and encoding them once as PNG at libdeflate's level 1. The goal is at most 3 times.
//
// Processor time of all the command's processes, not wall time: what else the machine does falls on
// neither.
#include "desktop/image_io/image_io.h"
#include "tests/support/places.h"
#include "tests/support/temporary_folder.h"

#include "painting.h"
#include "started_command.h"
#include "timing.h"
#include <libdeflate.h>
#include <sys/resource.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <fstream>
#include <iterator>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace velmoranth::benchmarks {
namespace {

double ownProcessorSeconds() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return processorSeconds(usage);
}

// These pixels painted twice, and encoded once.
class BareWork {
  public:
    explicit BareWork(desktop::DecodedImage image)
        : width_(image.layout.width),
          height_(image.layout.height),
          painting_(desktop::toPremultipliedBgra(image), width_, height_),
          filtered_((width_ * 3 + 1) * height_),
          compressor_(libdeflate_alloc_compressor(1), libdeflate_free_compressor) {
        stream_.resize(libdeflate_zlib_compress_bound(compressor_.get(), filtered_.size()));
    }

    void operator()() {
        filterUp(painting_.twice());
        const std::size_t size = libdeflate_zlib_compress(
            compressor_.get(), filtered_.data(), filtered_.size(), stream_.data(), stream_.size());
        benchmark::DoNotOptimize(libdeflate_crc32(0, stream_.data(), size));
    }

  private:
    // Each row as R, G, B and as the difference to the one above.
    void filterUp(const std::uint8_t* bgra) {
        std::uint8_t* to = filtered_.data();
        for (std::size_t y = 0; y < height_; ++y) {
            const std::uint8_t* const row = bgra + y * width_ * 4;
            const std::uint8_t* const above = y == 0 ? row : row - width_ * 4;
            *to++ = 2;
            for (std::size_t x = 0; x < width_ * 4; x += 4) {
                for (const std::size_t component : {x + 2, x + 1, x}) {
                    *to++ = static_cast<std::uint8_t>(row[component] - above[component]);
                }
            }
        }
    }

    std::size_t width_;
    std::size_t height_;
    Painting painting_;
    std::vector<std::uint8_t> filtered_;
    std::vector<std::uint8_t> stream_;
    std::unique_ptr<libdeflate_compressor, void (*)(libdeflate_compressor*)> compressor_;
};

void preview(benchmark::State& state) {
    const tests::TemporaryFolder folder;
    const std::string file = folder / "preview.png";
    const std::vector<std::string> arguments{"preview", tests::kExampleTheme, "-q", "-o", file};
    runCommand(arguments);
    std::ifstream stream(file, std::ios::binary);
    const std::vector<std::uint8_t> bytes{std::istreambuf_iterator<char>(stream), {}};
    auto image = desktop::decodeImage(bytes);
    if (!image) {
        fail("the preview is no picture");
    }
    BareWork bare(std::move(*image));
    bare();
    std::vector<double> previews;
    std::vector<double> bares;
    double megabytes = 0;
    for (auto _ : state) {
        const double start = ownProcessorSeconds();
        bare();
        bares.push_back(ownProcessorSeconds() - start);
        const FinishedCommand done = runCommand(arguments);
        previews.push_back(done.seconds);
        megabytes = std::max(megabytes, done.megabytes);
        state.SetIterationTime(done.seconds);
    }
    report(state, previews, bares);
    state.counters["peak_mb"] = megabytes;
}

}  // namespace

BENCHMARK(preview)
    ->Name("preview of the example theme on a phone")
    ->Iterations(15)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);

}  // namespace velmoranth::benchmarks
