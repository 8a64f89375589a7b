// A theme of as many icons as a benchmark wants.
#pragma once

#include "desktop/image_io/image_io.h"
#include "tests/support/temporary_folder.h"

#include "makers/conversion/found_themes.h"
#include "makers/conversion/pictures.h"
#include <benchmark/benchmark.h>

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <iostream>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace velmoranth::benchmarks {

// Shades that no filter makes small, as art has them.
inline std::string iconFile() {
    constexpr std::size_t kSide = 180;
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

// "T.theme" in the folder.
inline makers::FoundTheme themeOfIcons(const tests::TemporaryFolder& folder, int icons) {
    const std::string picture = iconFile();
    for (int i = 0; i < icons; ++i) {
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

// Every picture of the theme as a screen would need it, on all processors.
inline void decodeAll(const makers::FoundTheme& theme) {
    std::atomic<std::size_t> next = 0;
    const auto work = [&] {
        for (std::size_t i = next++; i < theme.files.size(); i = next++) {
            const auto bytes = makers::readWhole(theme.folder + "/" + theme.files[i].name);
            const auto image = bytes ? desktop::decodeImage(*bytes) : tl::unexpected(bytes.error());
            if (!image) {
                std::cerr << "no picture\n";
                std::exit(1);
            }
            benchmark::DoNotOptimize(image->samples->data());
        }
    };
    std::vector<std::jthread> others;
    for (unsigned i = 1; i < std::thread::hardware_concurrency(); ++i) {
        others.emplace_back(work);
    }
    work();
}

}  // namespace velmoranth::benchmarks
