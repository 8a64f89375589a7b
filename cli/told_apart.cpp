#include "cli/told_apart.h"

#include "cli/extraction.h"
#include "cli/folded_name.h"
#include "cli/picture_sizes.h"
#include "cli/rendition_attributes.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <utility>

namespace velmoranth::cli {

using catalog::Catalog;
using catalog::Facet;

namespace {

constexpr std::size_t kLongestMark = 100;  // bytes

// FNV-1a.
constexpr std::uint64_t kHashStart = 0xCBF29CE484222325U;
constexpr std::uint64_t kHashFactor = 0x100000001B3U;

std::uint64_t hashOf(std::string_view bytes) {
    std::uint64_t hash = kHashStart;
    for (const char byte : bytes) {
        hash = (hash ^ static_cast<unsigned char>(byte)) * kHashFactor;
    }
    return hash;
}

std::uint64_t mixed(std::uint64_t hash, std::uint64_t value) {
    hash = (hash ^ value) * kHashFactor;
    return hash ^ hash >> 29U;
}

using Group = std::vector<PlannedPicture*>;

// Calls `take` with the pictures of each name and whole scale, when they are several: those that
// may have a file in common.
template <class Take>
void forEachLikelyGroup(std::span<PlannedPicture> pictures, Take take) {
    std::vector<std::pair<std::uint64_t, PlannedPicture*>> hashes;
    hashes.reserve(pictures.size());
    const Facet* facet = nullptr;
    std::uint64_t hashOfName = 0;
    for (PlannedPicture& picture : pictures) {
        if (picture.facet != facet) {
            facet = picture.facet;
            hashOfName = hashOf(folded(facet->name));
        }
        hashes.emplace_back(
            mixed(hashOfName, static_cast<std::uint64_t>(std::trunc(picture.scale))), &picture);
    }
    std::ranges::sort(hashes);  // the pictures of one in their order
    for (auto first = hashes.begin(); first != hashes.end();) {
        const auto end = std::find_if(first, hashes.end(),
                                      [&](const auto& one) { return one.first != first->first; });
        if (end - first > 1) {
            Group group;
            std::transform(first, end, std::back_inserter(group),
                           [](const auto& one) { return one.second; });
            take(group);
        }
        first = end;
    }
}

// The traits of the pictures of one file, of those in which they differ.
class Traits {
  public:
    Traits(const Catalog& catalog, const Group& group) : catalog_(catalog), group_(group) {
        for (std::size_t trait = 0; trait < kTraits; ++trait) {
            std::vector<std::uint32_t> values;
            values.reserve(group.size());
            for (const PlannedPicture* const picture : group) {
                values.push_back(traitValue(catalog, *picture->rendition, trait));
            }
            if (std::ranges::any_of(values, [&](auto value) { return value != values.front(); })) {
                needed_.push_back(trait);
                values_.push_back(std::move(values));
            }
        }
        leaveOutNeedless();
    }

    // "~pad-dark"; empty for a picture that has none of the traits.
    [[nodiscard]] std::string words(std::size_t picture) const {
        std::string words;
        for (std::size_t i = 0; i < needed_.size(); ++i) {
            words += values_[i][picture] == 0 ? "" : word(picture, needed_[i]);
        }
        return words;
    }

    [[nodiscard]] std::string firstWord(std::size_t picture) const {
        return needed_.empty() ? "" : word(picture, needed_.front());
    }

  private:
    void leaveOutNeedless() {
        const std::size_t apart = countApart();
        for (std::size_t i = needed_.size(); i-- > 0;) {
            const auto place = static_cast<std::ptrdiff_t>(i);
            std::vector<std::uint32_t> values = std::move(values_[i]);
            values_.erase(values_.begin() + place);
            if (countApart() < apart) {
                values_.insert(values_.begin() + place, std::move(values));
            } else {
                needed_.erase(needed_.begin() + place);
            }
        }
    }

    // Into how many the values tell the pictures apart.
    [[nodiscard]] std::size_t countApart() const {
        std::vector<std::uint64_t> hashes(group_.size(), kHashStart);
        for (const std::vector<std::uint32_t>& values : values_) {
            std::ranges::transform(hashes, values, hashes.begin(), mixed);
        }
        std::ranges::sort(hashes);
        return static_cast<std::size_t>(std::ranges::unique(hashes).begin() - hashes.begin());
    }

    [[nodiscard]] std::string word(std::size_t picture, std::size_t trait) const {
        return (trait == kIdiomTrait ? "~" : "-") +
               traitWord(catalog_, *group_[picture]->rendition, trait);
    }

    const Catalog& catalog_;
    const Group& group_;
    std::vector<std::size_t> needed_;
    std::vector<std::vector<std::uint32_t>> values_;  // of each of these, of all pictures
};

void markAll(const Catalog& catalog, const Group& group) {
    const Traits traits(catalog, group);
    std::map<std::string, std::size_t> uses;
    for (std::size_t i = 0; i + 1 < group.size(); ++i) {
        std::string mark = traits.words(i);
        group[i]->mark = mark.empty() ? traits.firstWord(i) : std::move(mark);
        ++uses[group[i]->mark];
    }
    for (std::size_t i = 0; i + 1 < group.size(); ++i) {
        std::string& mark = group[i]->mark;
        const bool isAlone = !mark.empty() && uses[mark] == 1;
        if (mark.size() > kLongestMark) {
            mark.clear();
        }
        if (!isAlone || mark.empty()) {
            mark += placeMark(catalog, *group[i]);
        }
    }
}

}  // namespace

std::string placeMark(const Catalog& catalog, const PlannedPicture& picture) {
    const auto name = static_cast<std::size_t>(picture.facet - catalog.facets().data());
    const auto place = static_cast<std::size_t>(picture.rendition - catalog.renditions().data());
    return "%~" + std::to_string(name * catalog.renditions().size() + place);
}

void tellApart(const Catalog& catalog, std::span<PlannedPicture> pictures, Sizes sizes,
               std::size_t jobs,
               const std::function<void(std::size_t done, std::size_t all)>& progress) {
    std::vector<Group> groups;
    forEachLikelyGroup(pictures, [&](Group& group) { groups.push_back(std::move(group)); });
    std::vector<PlannedPicture*> unknown;
    const auto noteSize = [&](PlannedPicture& picture) {
        picture.size = recordedSize(*picture.rendition);
        if (!picture.size) {
            unknown.push_back(&picture);
        }
    };
    if (sizes == Sizes::all) {
        for (PlannedPicture& picture : pictures) {
            noteSize(picture);
        }
    } else {
        for (const Group& group : groups) {
            for (PlannedPicture* const picture : group) {
                noteSize(*picture);
            }
        }
    }
    findSizes(catalog, unknown, jobs, progress);
    for (const Group& group : groups) {
        std::map<std::string, Group> files;
        for (PlannedPicture* const picture : group) {
            if (*picture->size != PixelSize{}) {
                files[folded(extractedFile(catalog, *picture, picture->size->width,
                                           picture->size->height, FileLayout::apart))]
                    .push_back(picture);
            }
        }
        for (const auto& [file, sharing] : files) {
            if (sharing.size() > 1) {
                markAll(catalog, sharing);
            }
        }
    }
}

}  // namespace velmoranth::cli
