// The memory that a picture of 4,096 × 4,096 pixels takes as the icon of every app of a home
// screen, beside what it takes as that of one: its bytes are the same, so it is decoded once.
// "ratio" is of the memory of the largest process; the times are of processors.
#include "desktop/image_io/image_io.h"
#include "tests/support/places.h"
#include "tests/support/temporary_folder.h"

#include "started_command.h"
#include "timing.h"

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace velmoranth::benchmarks {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t kSide = 4096;  // pixels
const std::string kOneApp = "com.apple.Maps-large.png";

std::string pictureFile() {
    std::vector<std::uint8_t> pixels;
    pixels.reserve(kSide * kSide * 4);
    for (std::size_t i = 0; i < kSide * kSide; ++i) {
        const auto x = static_cast<std::uint8_t>(i);
        pixels.insert(pixels.end(), {x, static_cast<std::uint8_t>(x / 2), 99, 255});
    }
    const platform::Data png =
        desktop::encodePng(pixels, kSide, kSide, kSide * 4, desktop::PngEffort::fast);
    return {png.begin(), png.end()};
}

// Two themes with one picture: as the icon of every app that the example theme has one for, and of
// one app.
class Themes {
  public:
    Themes() {
        folder_.file("One.theme/IconBundles/" + kOneApp, pictureFile());
        folder_.folder("Many.theme/IconBundles");
        for (const auto& icon :
             fs::directory_iterator(fs::path(tests::kExampleTheme) / "IconBundles")) {
            fs::create_hard_link(
                folder_ / ("One.theme/IconBundles/" + kOneApp),
                folder_ / ("Many.theme/IconBundles/" + icon.path().filename().string()));
        }
    }

    [[nodiscard]] FinishedCommand preview(const std::string& theme) const {
        return runCommand({"preview", folder_ / theme, "-q", "-o", folder_ / "preview.png"});
    }

  private:
    tests::TemporaryFolder folder_;
};

void largePart(benchmark::State& state) {
    const Themes themes;
    std::vector<double> times;
    std::vector<double> bareTimes;
    double megabytes = 0;
    double bareMegabytes = 0;
    for (auto _ : state) {
        const FinishedCommand one = themes.preview("One.theme");
        const FinishedCommand many = themes.preview("Many.theme");
        times.push_back(many.seconds);
        bareTimes.push_back(one.seconds);
        megabytes = std::max(megabytes, many.megabytes);
        bareMegabytes = std::max(bareMegabytes, one.megabytes);
        state.SetIterationTime(many.seconds);
    }
    state.counters["median_us"] = median(times) * 1e6;
    state.counters["bare_us"] = median(bareTimes) * 1e6;
    state.counters["peak_mb"] = megabytes;
    state.counters["ratio"] = megabytes / bareMegabytes;
}

}  // namespace

BENCHMARK(largePart)
    ->Name("memory of a 4,096 x 4,096 icon of all apps, beside one app")
    ->Iterations(3)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);

}  // namespace velmoranth::benchmarks
