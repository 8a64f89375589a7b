#include "cli/extraction_plan.h"

#include "cli/folded_name.h"
#include "cli/picture_sizes.h"
#include "cli/told_apart.h"
#include "desktop/catalog/pictures.h"
#include "desktop/core_ui/catalogs.h"
#include "tools/catalog_extraction.h"

#include <algorithm>
#include <iterator>
#include <new>
#include <unordered_map>
#include <unordered_set>
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

using Plan = std::vector<PlannedPicture>;

PlannedPicture planned(const Catalog& catalog, const Facet* facet, const Rendition& rendition) {
    return {.facet = facet,
            .rendition = &rendition,
            .scale = catalog::pictureScale(catalog, rendition)};
}

void addPictures(const Catalog& catalog, const Facet& facet, Plan& plan) {
    // Both are in the catalog's order.
    const std::vector<PictureCopies> pictures = catalog::copiesOf(catalog, facet);
    auto next = pictures.begin();
    for (const std::size_t index : catalog.renditionsOf(facet)) {
        const Rendition& rendition = catalog.renditions()[index];
        if (next != pictures.end() && next->front() == &rendition) {
            plan.push_back(planned(catalog, &facet, rendition));
            plan.back().otherCopies.assign(next->begin() + 1, next->end());
            ++next;
        } else if (rendition.kind == Kind::unreadable) {
            plan.push_back(planned(catalog, &facet, rendition));
        }
    }
}

// Whether a phone, which makes no folders for names, writes a file for it.
bool canBeAFile(std::string_view name) {
    return name.find('/') == std::string_view::npos && name.find('\0') == std::string_view::npos;
}

// The names that are wanted, and those that a file system may take for one of them.
std::vector<const Facet*> facetsToPlan(const Catalog& catalog, const Selection& selection) {
    std::vector<const Facet*> facets;
    std::unordered_set<std::string> wanted;
    if (!selection.names.empty()) {
        for (const Facet& facet : catalog.facets()) {
            if (selection.takesName(facet.name)) {
                wanted.insert(folded(facet.name));
            }
        }
    }
    for (const Facet& facet : catalog.facets()) {
        if (selection.names.empty() || wanted.contains(folded(facet.name))) {
            facets.push_back(&facet);
        }
    }
    return facets;
}

Result<Plan> planApart(const Catalog& catalog, const PlanRequest& request) {
    Plan plan;
    const Selection& selection = request.selection;
    for (const Facet* const facet : facetsToPlan(catalog, selection)) {
        addPictures(catalog, *facet, plan);
        if (plan.size() > kMostPictures) {
            return tooManyPictures();
        }
    }
    tellApart(catalog, plan, request.needsAllSizes ? Sizes::all : Sizes::whereNeeded, request.jobs,
              request.progress);
    std::erase_if(plan, [&](const PlannedPicture& picture) {
        return !selection.takesName(picture.facet->name) ||
               !selection.takes(catalog, *picture.rendition);
    });
    for (const Rendition& rendition : catalog.renditions()) {
        if (rendition.kind == Kind::unreadable && catalog.facetOf(rendition) == nullptr &&
            selection.takesName({}) && selection.takes(catalog, rendition)) {
            plan.push_back(planned(catalog, nullptr, rendition));
        }
    }
    return plan;
}

Result<Plan> planAsTheSystem(const Catalog& catalog, const PlanRequest& request) {
    // The caller's catalog outlives this one.
    desktop::DesktopCatalog asked(
        std::shared_ptr<const Catalog>(std::shared_ptr<void>(), &catalog));
    Plan plan;
    const Selection& selection = request.selection;
    for (const Facet& facet : catalog.facets()) {
        const std::string name(facet.name);
        if (!selection.takesName(name) || !canBeAFile(name) || catalog.facet(name) != &facet) {
            continue;
        }
        for (const platform::ObjectRef& object : tools::extractedRenditions(asked, name)) {
            const auto image = std::dynamic_pointer_cast<desktop::DesktopNamedImage>(object);
            if (selection.takes(catalog, image->rendition())) {
                plan.push_back(planned(catalog, &facet, image->rendition()));
            }
        }
        if (plan.size() > kMostPictures) {
            return tooManyPictures();
        }
    }
    if (request.needsAllSizes) {
        std::vector<PlannedPicture*> pictures;
        std::ranges::transform(plan, std::back_inserter(pictures),
                               [](PlannedPicture& picture) { return &picture; });
        findSizes(catalog, pictures, request.jobs, request.progress);
    }
    return plan;
}

}  // namespace

tl::unexpected<desktop::Problem> tooManyPictures() {
    return tl::unexpected(desktop::Problem{"the catalog lists more than " +
                                           std::to_string(kMostPictures) +
                                           " pictures, the limit: take some of them with --name"});
}

Result<Plan> planExtraction(const Catalog& catalog, const PlanRequest& request) {
    return request.layout == FileLayout::system ? planAsTheSystem(catalog, request)
                                                : planApart(catalog, request);
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
