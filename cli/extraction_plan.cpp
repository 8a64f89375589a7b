#include "cli/extraction_plan.h"

#include "cli/name_pattern.h"
#include "desktop/catalog/pictures.h"

#include <algorithm>
#include <new>
#include <unordered_map>
#include <utility>

namespace velmoranth::cli {

using catalog::Catalog;
using catalog::Facet;
using catalog::Kind;
using catalog::Picture;
using catalog::PictureCopies;
using catalog::Rendition;
using desktop::Result;

namespace {

// The atlas that the picture is a part of, null when it is none or the atlas cannot be found:
// decoding it on its own then says what is wrong.
const Rendition* atlasOf(const Catalog& catalog, const Rendition& rendition) {
    const Rendition* const source =
        rendition.kind == Kind::link && rendition.link ? catalog.source(rendition) : nullptr;
    return source != nullptr && source->kind == Kind::atlas ? source : nullptr;
}

std::uint64_t pixelsOf(const Rendition& rendition) {
    // A vector's size is not known before it is drawn.
    constexpr std::uint64_t kVector = 200 * 200;
    return rendition.kind == Kind::vector ? kVector
                                          : std::uint64_t{rendition.width} * rendition.height;
}

Result<Picture> decodeAtlas(const Catalog& catalog, const Rendition& atlas) {
    try {
        return catalog.decode(atlas);
    } catch (const std::bad_alloc&) {
        return tl::unexpected(desktop::Problem{"there is not enough memory"});
    }
}

}  // namespace

tl::unexpected<desktop::Problem> tooManyPictures() {
    return tl::unexpected(desktop::Problem{"the catalog lists more than " +
                                           std::to_string(kMostPictures) +
                                           " pictures: take some of them with --name"});
}

Result<std::vector<PlannedPicture>> planExtraction(const Catalog& catalog,
                                                   const std::string& pattern) {
    std::vector<PlannedPicture> plan;
    for (const Facet& facet : catalog.facets()) {
        if (!fitsPattern(facet.name, pattern)) {
            continue;
        }
        // Both are in the catalog's order.
        const std::vector<PictureCopies> pictures = catalog::copiesOf(catalog, facet);
        auto next = pictures.begin();
        for (const std::size_t index : catalog.renditionsOf(facet)) {
            const Rendition* const rendition = &catalog.renditions()[index];
            if (next != pictures.end() && next->front() == rendition) {
                plan.push_back({&facet, rendition, {next->begin() + 1, next->end()}});
                ++next;
            } else if (rendition->kind == Kind::unreadable) {
                plan.push_back({&facet, rendition, {}});
            }
        }
        if (plan.size() > kMostPictures) {
            return tooManyPictures();
        }
    }
    for (const Rendition& rendition : catalog.renditions()) {
        if (rendition.kind == Kind::unreadable && catalog.facetOf(rendition) == nullptr &&
            fitsPattern({}, pattern)) {
            plan.push_back({nullptr, &rendition, {}});
        }
    }
    return plan;
}

ExtractionQueue::ExtractionQueue(const Catalog& catalog, std::span<const PlannedPicture> plan)
    : catalog_(catalog) {
    std::unordered_map<const Rendition*, std::size_t> groupOfAtlas;
    for (std::size_t i = 0; i < plan.size(); ++i) {
        const Rendition* const atlas = atlasOf(catalog, *plan[i].rendition);
        std::size_t group = groups_.size();
        if (atlas != nullptr) {
            group = groupOfAtlas.emplace(atlas, group).first->second;
        }
        if (group == groups_.size()) {
            groups_.push_back({atlas, {}, atlas == nullptr ? 0 : pixelsOf(*atlas)});
        }
        groups_[group].pictures.push_back(i);
        groups_[group].pixels += pixelsOf(*plan[i].rendition);
    }
    // The longest work first, so that all threads end at about the same time.
    std::sort(groups_.begin(), groups_.end(), [](const Group& a, const Group& b) {
        return a.pixels != b.pixels ? a.pixels > b.pixels : a.pictures.front() < b.pictures.front();
    });
}

ExtractionQueue::Turn ExtractionQueue::takeFromOpenGroup() {
    OpenGroup& open = open_.front();
    Turn turn{open.group->pictures[open.taken], open.atlas};
    ++open.taken;
    if (open.taken == open.group->pictures.size()) {
        open_.pop_front();
    }
    return turn;
}

std::optional<ExtractionQueue::Turn> ExtractionQueue::take() {
    std::unique_lock lock(mutex_);
    // While an atlas is being decoded its pictures may still come.
    changed_.wait(lock, [this] {
        return stopped_ || !open_.empty() || nextGroup_ < groups_.size() || decoding_ == 0;
    });
    if (stopped_ || (open_.empty() && nextGroup_ == groups_.size())) {
        return std::nullopt;
    }
    if (!open_.empty()) {
        return takeFromOpenGroup();
    }
    const Group& group = groups_[nextGroup_];
    ++nextGroup_;
    if (group.atlas == nullptr) {
        return Turn{group.pictures.front(), nullptr};
    }
    const auto decoded = std::make_shared<Result<Picture>>();
    ++decoding_;
    lock.unlock();
    *decoded = decodeAtlas(catalog_, *group.atlas);
    lock.lock();
    --decoding_;
    Turn turn{group.pictures.front(), decoded};
    if (group.pictures.size() > 1 && !stopped_) {
        open_.push_back({&group, 1, decoded});
    }
    changed_.notify_all();
    return turn;
}

void ExtractionQueue::stop() {
    const std::lock_guard lock(mutex_);
    stopped_ = true;
    open_.clear();
    changed_.notify_all();
}

}  // namespace velmoranth::cli
