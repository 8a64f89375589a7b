#include "cli/picture_sizes.h"

#include "desktop/catalog_pictures/draw_picture.h"
#include "desktop/vector_images/backends.h"
#include "desktop/vector_images/vector_images.h"

#include <algorithm>
#include <atomic>
#include <cstdint>
#include <exception>
#include <system_error>
#include <thread>
#include <vector>

namespace velmoranth::cli {

using catalog::Catalog;
using catalog::Kind;
using catalog::Rendition;

namespace {

PixelSize sizeOf(const Catalog& catalog, const PlannedPicture& picture) {
    const Rendition& rendition = *picture.rendition;
    if (const auto recorded = recordedSize(rendition)) {
        return *recorded;
    }
    if (rendition.kind != Kind::vector) {
        const auto drawn = desktop::drawPicture(catalog, rendition, picture.scale);
        return drawn ? PixelSize{drawn->width, drawn->height} : PixelSize{};
    }
    const auto size = catalog.file(rendition).and_then(
        [](const std::vector<std::uint8_t>& file) { return desktop::vectorSize(file); });
    // What is larger is not drawn.
    const auto pixels = [&](double length) -> std::uint32_t {
        const double pixelCount = desktop::vector_images::pixelLength(length, picture.scale);
        return pixelCount <= desktop::DrawLimits().maxWidth ? static_cast<std::uint32_t>(pixelCount)
                                                            : 0;
    };
    return size ? PixelSize{pixels(size->width), pixels(size->height)} : PixelSize{};
}

}  // namespace

std::optional<PixelSize> recordedSize(const Rendition& rendition) {
    if (rendition.kind == Kind::link && rendition.link) {
        return PixelSize{rendition.link->part.width, rendition.link->part.height};
    }
    return rendition.kind == Kind::bitmap
               ? std::optional(PixelSize{rendition.width, rendition.height})
               : std::nullopt;
}

void findSizes(const Catalog& catalog, std::span<PlannedPicture* const> pictures, std::size_t jobs,
               const std::function<void(std::size_t done, std::size_t all)>& progress) {
    std::atomic<std::size_t> next{0};
    std::atomic<std::size_t> done{0};
    const auto findNext = [&] {
        const std::size_t place = next++;
        if (place >= pictures.size()) {
            return false;
        }
        PlannedPicture& picture = *pictures[place];
        try {
            picture.size = sizeOf(catalog, picture);
        } catch (const std::exception&) {  // extracting it fares no better, and says so
            picture.size = PixelSize{};
        }
        ++done;
        return true;
    };
    std::vector<std::jthread> threads;
    const std::size_t count = std::min(jobs, pictures.size());
    threads.reserve(count);
    try {
        while (threads.size() + 1 < count) {
            threads.emplace_back([&] {
                while (findNext()) {
                }
            });
        }
    } catch (const std::system_error&) {  // NOLINT(bugprone-empty-catch): fewer do it, then
    }
    while (findNext()) {
        if (progress) {
            progress(done, pictures.size());
        }
    }
}

}  // namespace velmoranth::cli
