#include "makers/lint/judged_pictures.h"

#include "desktop/image_io/image_io.h"

#include "makers/conversion/names.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cstddef>
#include <thread>
#include <utility>
#include <vector>

namespace velmoranth::makers {
namespace {

using platform::Data;

struct Format {
    std::string_view start;
    std::string_view name;
};

constexpr std::array<Format, 5> kFormats{{{"\x89PNG", "PNG"},
                                          {"\xFF\xD8\xFF", "JPEG"},
                                          {"GIF8", "GIF"},
                                          {"II*", "TIFF"},
                                          {"MM", "TIFF"}}};

std::string_view formatOf(const Data& bytes) {
    const std::string_view text(reinterpret_cast<const char*>(bytes.data()), bytes.size());
    const auto* const found = std::ranges::find_if(
        kFormats, [&](const Format& format) { return text.starts_with(format.start); });
    return found == kFormats.end() ? std::string_view() : found->name;
}

JudgedPicture judge(const std::string& path) {
    JudgedPicture picture;
    const auto bytes = readWhole(path);
    if (!bytes) {
        picture.facts = {.problem = bytes.error().message, .isUnreadable = true};
        return picture;
    }
    if (bytes->empty()) {
        picture.isEmptyFile = true;
        picture.facts.problem = "the file is empty";
        return picture;
    }
    const auto facts = desktop::examineImage(*bytes);
    if (!facts) {
        picture.facts.problem = facts.error().message;
        return picture;
    }
    picture.facts = {.width = facts->width, .height = facts->height};
    picture.format = formatOf(*bytes);
    picture.isClear = facts->isClear;
    return picture;
}

}  // namespace

JudgedPictures judgePictures(
    const FoundTheme& theme,
    const std::function<void(std::size_t done, std::size_t all)>& progress) {
    JudgedPictures pictures;
    std::vector<std::pair<const std::string*, JudgedPicture*>> places;
    for (const ThemeFile& file : theme.files) {
        if (isPng(file.name) && !isClutter(file.name)) {
            const auto place = pictures.try_emplace(file.name).first;
            places.emplace_back(&place->first, &place->second);
        }
    }
    std::atomic<std::size_t> next = 0;
    std::atomic<std::size_t> done = 0;
    const auto work = [&](bool tells) {
        for (std::size_t i = next++; i < places.size(); i = next++) {
            *places[i].second = judge(theme.folder + "/" + *places[i].first);
            const std::size_t count = ++done;
            if (tells) {
                progress(count, places.size());
            }
        }
    };
    std::vector<std::jthread> others;
    const std::size_t count =
        std::min<std::size_t>(std::thread::hardware_concurrency(), places.size());
    for (std::size_t i = 1; i < count; ++i) {
        others.emplace_back(work, false);
    }
    work(true);
    others.clear();
    return pictures;
}

}  // namespace velmoranth::makers
