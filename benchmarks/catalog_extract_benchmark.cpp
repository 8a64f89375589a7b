// Extraction of whole catalogs. On one job, against decoding and encoding the same pictures by
// hand: the goal is at most 1.3 times, so what is left for names, folders and files is small. Two
// jobs against one: the goal is 1.7 times as fast, on a machine with two free processors. And what
// a smaller PNG file would cost. "peak_mb" is the most memory that the process has had so far.
#include "cli/extraction.h"
#include "cli/extraction_folder.h"
#include "cli/extraction_plan.h"
#include "desktop/catalog/catalog.h"
#include "desktop/image_io/image_io.h"
#include "tests/support/catalog/bitmap_writer.h"
#include "tests/support/catalog/car_writer.h"
#include "tests/support/catalog/lzfse_writer.h"
#include "tests/support/temporary_folder.h"

#include "samples.h"
#include "timing.h"

#include <cstdlib>
#include <fstream>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace velmoranth::benchmarks {
namespace {

using catalog::Catalog;
using catalog::Kind;
using catalog::Picture;
using catalog::Rendition;
using cli::PlannedPicture;
using tests::CarPixels;
using tests::CarWriter;

constexpr std::uint32_t kIcons = 120;

// Something between a drawing and a photograph: soft slopes, a hard edge, transparent corners.
CarPixels artwork(std::uint32_t width, std::uint32_t height, std::uint32_t seed) {
    CarPixels pixels{width, height, {}};
    pixels.rgba.reserve(std::size_t{width} * height * 4);
    for (std::uint32_t y = 0; y < height; ++y) {
        for (std::uint32_t x = 0; x < width; ++x) {
            const bool outside = x + y < width / 8 || (width - x) + (height - y) < width / 8;
            const auto level = static_cast<std::uint8_t>((x * 3 + y * seed) / 8);
            const auto noise = static_cast<std::uint8_t>((x * 2654435761U ^ y * 40503U) >> 28U);
            const std::uint8_t red = x > width / 2 ? level : noise;
            if (outside) {
                pixels.rgba.insert(pixels.rgba.end(), {0, 0, 0, 0});
            } else {
                pixels.rgba.insert(pixels.rgba.end(),
                                   {red, static_cast<std::uint8_t>(255U - level), noise, 255});
            }
        }
    }
    return pixels;
}

// An app's: icons in atlases of two scales, larger pictures on their own.
tests::ByteVector madeCatalog() {
    CarWriter car;
    const std::uint32_t argb = catalog::fourCharacterCode("ARGB");
    for (std::uint16_t scale = 2; scale <= 3; ++scale) {
        const std::uint32_t side = 32U * scale;
        car.atlas(1, artwork(side * 12, side * 10, scale), {.scale = scale});
        for (std::uint32_t i = 0; i < kIcons; ++i) {
            car.link({.identifier = static_cast<std::uint16_t>(i + 1), .scale = scale},
                     {i % 12 * side, i / 12 * side, side, side});
        }
    }
    for (std::uint32_t i = 0; i < kIcons; ++i) {
        car.facet("Icon " + std::to_string(i), static_cast<std::uint16_t>(i + 1));
    }
    for (std::uint32_t i = 0; i < 12; ++i) {
        const auto identifier = static_cast<std::uint16_t>(1000 + i);
        const std::uint32_t side = 200 + 40 * i;
        car.facet("Picture " + std::to_string(i), identifier);
        car.bitmap({.identifier = identifier, .scale = 2, .width = side, .height = side},
                   catalog::Compression::lzfse,
                   tests::lzfse(tests::storedRows(artwork(side, side, i), argb)));
    }
    return car.build();
}

struct Source {
    tests::ByteVector bytes;
    std::optional<Catalog> catalog;
    std::vector<PlannedPicture> plan;

    void take(desktop::Result<Catalog> opened) {
        if (opened) {
            catalog = std::move(*opened);
            plan = *cli::planExtraction(*catalog, {});
        }
    }
};

// Number 0 is made here, 1 is a real app's. Null when there is none.
const Source* source(int number) {
    static std::map<int, Source> sources;
    const auto [place, isNew] = sources.try_emplace(number);
    Source& source = place->second;
    if (isNew && number == 0) {
        source.bytes = madeCatalog();
        source.take(Catalog::fromBytes(source.bytes));
    } else if (isNew) {
        source.take(Catalog::open(realCatalogs() / "figure-pay/Assets.car"));
    }
    return source.catalog ? &source : nullptr;
}

double peakMegabytes() {
    std::ifstream status("/proc/self/status");
    for (std::string word; status >> word;) {
        if (word == "VmHWM:") {
            double kilobytes = 0;
            status >> kilobytes;
            return kilobytes / 1024;
        }
    }
    return 0;
}

std::size_t encode(const Picture& picture, desktop::PngEffort effort) {
    const bool isBgra = picture.format == Picture::Format::bgra;
    const std::vector<std::uint8_t> converted =
        isBgra ? std::vector<std::uint8_t>() : catalog::toBgra(picture);
    return desktop::encodePng(isBgra ? picture.pixels : converted, picture.width, picture.height,
                              std::size_t{picture.width} * 4, effort)
        .size();
}

// Each picture decoded, those of an atlas from the decoded atlas.
void forEachPicture(const Source& source, const auto& use) {
    std::map<const Rendition*, Picture> atlases;
    for (const PlannedPicture& planned : source.plan) {
        const Rendition& rendition = *planned.rendition;
        if (rendition.kind != Kind::link) {
            use(*source.catalog->decode(rendition));
            continue;
        }
        const Rendition* const from = source.catalog->source(rendition);
        if (!atlases.contains(from)) {
            atlases.emplace(from, *source.catalog->decode(*from));
        }
        use(*Catalog::part(atlases.at(from), *rendition.link));
    }
}

// Into a folder of its own each time: what a file system does to replace files is not the question.
void extract(const Source& source, const tests::TemporaryFolder& place, std::size_t jobs) {
    static int count = 0;
    const auto folder =
        cli::ExtractionFolder::create(place / std::to_string(++count), "Assets.car");
    const auto done = cli::extractPictures(*source.catalog, source.plan, **folder, {.jobs = jobs});
    benchmark::DoNotOptimize(done.pictures);
}

void wholeCatalogOnOneJob(benchmark::State& state) {
    const Source* const made = source(static_cast<int>(state.range(0)));
    if (made == nullptr) {
        skipWithoutCatalogs(state);
        return;
    }
    const tests::TemporaryFolder folder;
    compare(
        state, [&] { extract(*made, folder, 1); },
        [&] {
            forEachPicture(*made, [](const Picture& picture) {
                benchmark::DoNotOptimize(encode(picture, desktop::PngEffort::fast));
            });
        });
    state.counters["peak_mb"] = peakMegabytes();
}

// "ratio" is the time of two jobs to that of one: at most 1 / 1.7 is 0.59.
void wholeCatalogOnTwoJobs(benchmark::State& state) {
    const Source* const made = source(static_cast<int>(state.range(0)));
    if (made == nullptr) {
        skipWithoutCatalogs(state);
        return;
    }
    const tests::TemporaryFolder folder;
    compare(state, [&] { extract(*made, folder, 2); }, [&] { extract(*made, folder, 1); });
    state.counters["peak_mb"] = peakMegabytes();
}

// "ratio" in time, "size" in bytes: the balanced effort to the fast one, which extraction takes.
void smallerPngFiles(benchmark::State& state) {
    const Source* const made = source(static_cast<int>(state.range(0)));
    if (made == nullptr) {
        skipWithoutCatalogs(state);
        return;
    }
    std::vector<Picture> pictures;
    forEachPicture(*made, [&](Picture picture) { pictures.push_back(std::move(picture)); });
    const auto sizeOf = [&](desktop::PngEffort effort) {
        std::size_t size = 0;
        for (const Picture& picture : pictures) {
            size += encode(picture, effort);
        }
        return size;
    };
    std::size_t fast = 0;
    std::size_t balanced = 0;
    compare(
        state, [&] { balanced = sizeOf(desktop::PngEffort::balanced); },
        [&] { fast = sizeOf(desktop::PngEffort::fast); });
    state.counters["size"] = static_cast<double>(balanced) / static_cast<double>(fast);
}

BENCHMARK(wholeCatalogOnOneJob)->Arg(0)->Arg(1)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(wholeCatalogOnTwoJobs)->Arg(0)->Arg(1)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(smallerPngFiles)->Arg(0)->Arg(1)->UseManualTime()->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace velmoranth::benchmarks
