#include "makers/skeleton/skeleton.h"

#include "desktop/image_io/image_io.h"
#include "desktop/plist/property_lists.h"

#include "makers/conversion/names.h"
#include "makers/skeleton/fitted_pictures.h"
#include "makers/skeleton/unlike_pictures.h"

#include <algorithm>
#include <cmath>
#include <string_view>
#include <utility>

namespace velmoranth::makers {

using desktop::Problem;
using desktop::Result;
using simulator::Picture;
using simulator::Question;

namespace {

constexpr const char* kInfo = "Info.plist";

// The limits of all themes.
constexpr std::size_t kMostFiles = 100'000;
constexpr std::uint64_t kMostBytes = std::uint64_t{2} * 1024 * 1024 * 1024;

std::size_t areaOf(const std::optional<Picture>& picture) {
    return picture ? picture->width * picture->height : 0;
}

// Whether a file may have it: folders with names, and nothing that leads out of the theme.
bool isFileName(std::string_view name) {
    constexpr std::size_t kLongest = 255;
    for (std::size_t start = 0; start <= name.size();) {
        const std::size_t end = std::min(name.find('/', start), name.size());
        const std::string_view part = name.substr(start, end - start);
        if (part.empty() || part == "." || part == ".." || part.size() > kLongest) {
            return false;
        }
        start = end + 1;
    }
    return std::ranges::none_of(name, [](unsigned char c) { return c < 0x20 || c == 0x7F; });
}

// Whether the question has no name of its own behind its word: a part of the home screen.
bool isPart(const Question& question) {
    const simulator::QuestionRow* const row = simulator::questionRowNamed(question.word);
    return row != nullptr &&
           (row->argument.empty() || row->argument.find('|') != std::string_view::npos);
}

// A file for a name that is asked for with an ending, "a.png", may be called "a.png@3x.png"; what
// people call it is looked for as well.
std::string nameAsGiven(const std::string& name) {
    const std::string base = pictureName(name).base;
    return isPng(base) ? inFolder(folderOf(name), base) : name;
}

bool isFitted(const Question& question) {
    return question.word == "mask" || isCalendar(question);
}

}  // namespace

std::string nameAtScale(std::span<const std::string> names, double scale) {
    const auto found = std::ranges::find_if(names, [scale](const std::string& name) {
        return isPng(name) && pictureName(name).scale == std::lround(scale);
    });
    if (found != names.end()) {
        return *found;
    }
    const auto plain = std::ranges::find_if(
        names, [](const std::string& name) { return isPng(name) && pictureName(name).scale == 1; });
    return plain == names.end() ? "" : *plain;
}

Result<void> Skeleton::add(std::span<const Place> places, double scale) {
    std::map<std::string, Wanted> wanted;
    std::size_t iconSide = 0;
    for (const Place& place : places) {
        if ((place.question.word == "icon" || isCalendar(place.question)) && place.picture) {
            iconSide = std::max(iconSide, place.picture->width);
        }
        const std::string name = nameAtScale(place.names, scale);
        if (name.empty()) {
            continue;
        }
        if (isCalendar(place.question)) {
            addInfo(place, scale);
        }
        if (place.isServed) {
            continue;
        }
        Wanted& file = wanted[name];
        file.first = file.first == nullptr ? &place : file.first;
        file.unlike = file.unlike.empty() ? std::string_view(place.unlike) : file.unlike;
        // What is fitted to what is done with it stays, whatever else shows it.
        if (isFitted(place.question) ||
            (!(file.best != nullptr && isFitted(file.best->question)) &&
             areaOf(place.picture) > (file.best == nullptr ? 0 : areaOf(file.best->picture)))) {
            file.best = &place;
        }
    }
    for (const auto& [name, file] : wanted) {
        if (!files_.contains(name)) {
            addFile(name, file, iconSide);
        }
    }
    if (files_.size() > kMostFiles || bytes_ > kMostBytes) {
        return tl::unexpected(
            Problem{"the theme would have more than 100,000 files or 2 GiB, the limits"});
    }
    return {};
}

void Skeleton::addFile(const std::string& name, const Wanted& wanted, std::size_t iconSide) {
    if (!isFileName(name)) {
        leaveEmpty(name, *wanted.first, "no file can have its name");
        return;
    }
    if (!wanted.unlike.empty() && unlike_ == UnlikePictures::leftOut) {
        leaveEmpty(name, *wanted.first, std::string(wanted.unlike));
        return;
    }
    const Question& question =
        wanted.best == nullptr ? wanted.first->question : wanted.best->question;
    if (question.word == "mask" && iconSide > 0) {
        put(name, {widenedMask(iconSide), question, iconSide, iconSide, {}});
        return;
    }
    if (wanted.best == nullptr || !wanted.best->picture || areaOf(wanted.best->picture) == 0) {
        if (!wanted.first->why.empty()) {
            leaveEmpty(name, *wanted.first, wanted.first->why);
        } else if (isPart(question)) {
            leaveEmpty(name, *wanted.first, "the system has no picture there");
        }
        return;
    }
    const Picture& picture = *wanted.best->picture;
    platform::Data bytes =
        isCalendar(question) ? bareCalendar(picture.width)
                             : desktop::encodePng(picture.pixels, picture.width, picture.height,
                                                  picture.width * 4, desktop::PngEffort::balanced);
    put(name, {std::move(bytes), question, picture.width, picture.height, wanted.best->from});
}

void Skeleton::addInfo(const Place& calendar, double scale) {
    if (!calendar.picture || files_.contains(kInfo)) {
        return;
    }
    const double side = static_cast<double>(calendar.picture->width) / scale;
    put(kInfo, {desktop::writeXmlPropertyList(platform::PropertyList(skeletonInfo(side, scale))),
                {},
                0,
                0,
                {}});
}

void Skeleton::leaveEmpty(const std::string& name, const Place& place, std::string why) {
    std::string given = nameAsGiven(name);
    const bool isKnown =
        std::ranges::any_of(empty_, [&](const EmptyPlace& empty) { return empty.name == given; });
    if (!isKnown) {
        empty_.push_back({std::move(given), place.question, std::move(why)});
    }
}

void Skeleton::put(const std::string& name, SkeletonFile file) {
    bytes_ += file.bytes.size();
    // Of several devices, one has it and another has not.
    const std::string given = nameAsGiven(name);
    std::erase_if(empty_, [&](const EmptyPlace& empty) { return empty.name == given; });
    files_.emplace(name, std::move(file));
}

}  // namespace velmoranth::makers
