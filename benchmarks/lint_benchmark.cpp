// What it costs to check a theme of 1,500 icons beside decoding its pictures once, on all
// processors: the goal is at most 1.5 times.
#include "desktop/image_io/image_io.h"
#include "tests/support/places.h"
#include "tests/support/temporary_folder.h"

#include "makers/conversion/found_themes.h"
#include "makers/lint/judged_pictures.h"
#include "timing.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <iostream>
#include <string>
#include <vector>

namespace velmoranth::benchmarks {
namespace {

constexpr int kIcons = 1500;
constexpr std::size_t kSide = 180;

// Shades that no filter makes small, as art has them.
std::string icon() {
    std::vector<std::uint8_t> pixels;
    std::uint32_t number = 1;
    for (std::size_t i = 0; i < kSide * kSide; ++i) {
        number = number * 1664525 + 1013904223;
        const auto noise = static_cast<std::uint8_t>(number >> 29U);
        const auto shade = static_cast<std::uint8_t>(i / kSide);
        pixels.insert(pixels.end(), {static_cast<std::uint8_t>(shade + noise), shade,
                                     static_cast<std::uint8_t>(i % kSide), 255});
    }
    const auto png = desktop::encodePng(pixels, kSide, kSide, kSide * 4);
    return {png.begin(), png.end()};
}

makers::FoundTheme themeIn(const tests::TemporaryFolder& folder) {
    const std::string picture = icon();
    for (int i = 0; i < kIcons; ++i) {
        folder.file("T.theme/IconBundles/com.example.app" + std::to_string(i) + "-large.png",
                    picture);
    }
    auto theme = makers::themeAsGiven(folder / "T.theme");
    if (!theme) {
        std::cerr << "no theme\n";
        std::exit(1);
    }
    return std::move(*theme);
}

void lintOfIcons(benchmark::State& state) {
    const tests::TemporaryFolder folder;
    const makers::FoundTheme theme = themeIn(folder);
    const std::string command =
        std::string("'") + tests::kCommand + "' lint '" + (folder / "T.theme") + "' > /dev/null";
    compare(
        state,
        [&] {
            // NOLINTNEXTLINE(cert-env33-c,concurrency-mt-unsafe): the command as it is run.
            if (std::system(command.c_str()) != 0) {
                std::cerr << "the theme cannot be checked\n";
                std::exit(1);
            }
        },
        [&] {
            benchmark::DoNotOptimize(makers::judgePictures(theme, [](std::size_t, std::size_t) {}));
        });
}

}  // namespace

BENCHMARK(lintOfIcons)
    ->Name("lint of 1,500 icons")
    ->Iterations(10)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);

}  // namespace velmoranth::benchmarks
