// A preview of the example theme's home screen on a phone, 1125 × 2436 pixels, in processes that
// have just started, against what nothing can do without: painting as many pixels twice with cairo
// and encoding them once as PNG at libdeflate's level 1. The goal is at most 3 times.
//
// Processor time of all the command's processes, not wall time: what else the machine does falls on
// neither.
#include "desktop/image_io/image_io.h"
#include "tests/support/places.h"
#include "tests/support/temporary_folder.h"

#include "timing.h"
#include <benchmark/benchmark.h>
#include <cairo.h>
#include <fcntl.h>
#include <libdeflate.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <iterator>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace velmoranth::benchmarks {
namespace {

[[noreturn]] void fail(const std::string& message) {
    std::cerr << message << "\n";
    std::exit(1);
}

double secondsOf(const timeval& time) {
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
}

double processorSeconds(const rusage& usage) {
    return secondsOf(usage.ru_utime) + secondsOf(usage.ru_stime);
}

double ownProcessorSeconds() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return processorSeconds(usage);
}

struct Cost {
    double seconds = 0;    // of processors
    double megabytes = 0;  // the largest resident set of any of its processes
};

// Runs the command, whose output nobody sees.
Cost run(const std::vector<std::string>& arguments) {
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    for (const int descriptor : {STDOUT_FILENO, STDERR_FILENO}) {
        posix_spawn_file_actions_addopen(&actions, descriptor, "/dev/null", O_WRONLY, 0);
    }
    std::vector<std::string> words{tests::kCommand};
    words.insert(words.end(), arguments.begin(), arguments.end());
    std::vector<char*> pointers;
    for (std::string& word : words) {
        pointers.push_back(word.data());
    }
    pointers.push_back(nullptr);
    pid_t process = 0;
    if (posix_spawn(&process, tests::kCommand, &actions, nullptr, pointers.data(), environ) != 0) {
        fail("the command cannot be started");
    }
    posix_spawn_file_actions_destroy(&actions);
    int status = 0;
    rusage usage{};
    if (wait4(process, &status, 0, &usage) != process || !WIFEXITED(status) ||
        WEXITSTATUS(status) != 0) {
        fail("the command failed: " + words[1]);
    }
    return {processorSeconds(usage), static_cast<double>(usage.ru_maxrss) / 1024};
}

// These pixels painted twice, and encoded once.
class BareWork {
  public:
    explicit BareWork(desktop::DecodedImage image)
        : width_(image.layout.width),
          height_(image.layout.height),
          pixels_(desktop::toPremultipliedBgra(image)),
          filtered_((width_ * 3 + 1) * height_),
          compressor_(libdeflate_alloc_compressor(1), libdeflate_free_compressor) {
        stream_.resize(libdeflate_zlib_compress_bound(compressor_.get(), filtered_.size()));
        source_ = cairo_image_surface_create_for_data(
            pixels_.data(), CAIRO_FORMAT_ARGB32, static_cast<int>(width_),
            static_cast<int>(height_), static_cast<int>(width_ * 4));
        target_ = cairo_image_surface_create(CAIRO_FORMAT_ARGB32, static_cast<int>(width_),
                                             static_cast<int>(height_));
        context_ = cairo_create(target_);
        cairo_set_source_surface(context_, source_, 0, 0);
    }

    BareWork(const BareWork&) = delete;
    BareWork& operator=(const BareWork&) = delete;

    ~BareWork() {
        cairo_destroy(context_);
        cairo_surface_destroy(target_);
        cairo_surface_destroy(source_);
    }

    void operator()() {
        cairo_paint(context_);
        cairo_paint(context_);
        cairo_surface_flush(target_);
        filterUp(cairo_image_surface_get_data(target_));
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
    std::vector<std::uint8_t> pixels_;
    std::vector<std::uint8_t> filtered_;
    std::vector<std::uint8_t> stream_;
    std::unique_ptr<libdeflate_compressor, void (*)(libdeflate_compressor*)> compressor_;
    cairo_surface_t* source_ = nullptr;
    cairo_surface_t* target_ = nullptr;
    cairo_t* context_ = nullptr;
};

void preview(benchmark::State& state) {
    const tests::TemporaryFolder folder;
    const std::string file = folder / "preview.png";
    const std::vector<std::string> arguments{"preview", tests::kExampleTheme, "-q", "-o", file};
    run(arguments);
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
        const Cost cost = run(arguments);
        previews.push_back(cost.seconds);
        megabytes = std::max(megabytes, cost.megabytes);
        state.SetIterationTime(cost.seconds);
    }
    const double bareTime = median(bares);
    state.counters["bare_us"] = bareTime * 1e6;
    state.counters["median_us"] = median(previews) * 1e6;
    state.counters["ratio"] = median(previews) / bareTime;
    state.counters["peak_mb"] = megabytes;
}

}  // namespace

BENCHMARK(preview)
    ->Name("preview of the example theme on a phone")
    ->Iterations(15)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);

}  // namespace velmoranth::benchmarks
