// Which pictures of a catalog are extracted, and in which turn the work on them is taken up.
#pragma once

#include "desktop/catalog/catalog.h"
#include "desktop/result/result.h"

#include <condition_variable>
#include <cstddef>
#include <deque>
#include <memory>
#include <mutex>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace velmoranth::cli {

// A picture and the name it goes by. All are the catalog's.
struct PlannedPicture {
    const catalog::Facet* facet;  // null for an unreadable one that has no name
    const catalog::Rendition* rendition;
    // Further copies of the picture, to be taken in this order when that one cannot be decoded.
    std::vector<const catalog::Rendition*> otherCopies;
};

// Only a forged catalog, whose names share their renditions, has more.
inline constexpr std::size_t kMostPictures = 1'000'000;
[[nodiscard]] tl::unexpected<desktop::Problem> tooManyPictures();

// The pictures of all names that fit, in the order of the names and of the catalog, and every
// unreadable rendition, which may have been one. A problem when they are more than kMostPictures.
[[nodiscard]] desktop::Result<std::vector<PlannedPicture>> planExtraction(
    const catalog::Catalog& catalog, const std::string& pattern);

// Hands pictures out to several threads. Pictures from one atlas come one after another, and it is
// decoded once for them; there are never more decoded atlases than threads.
class ExtractionQueue {
  public:
    struct Turn {
        std::size_t picture;  // its place in the plan
        // The decoded atlas that it is a part of, or why that could not be decoded; null for a
        // picture that is no such part.
        std::shared_ptr<const desktop::Result<catalog::Picture>> atlas;
    };

    ExtractionQueue(const catalog::Catalog& catalog, std::span<const PlannedPicture> plan);

    // The next one to extract, nothing when all are given out or the queue was stopped.
    [[nodiscard]] std::optional<Turn> take();

    // Nothing more is given out.
    void stop();

  private:
    struct Group {
        const catalog::Rendition* atlas = nullptr;
        std::vector<std::size_t> pictures;
        std::uint64_t pixels = 0;
    };

    struct OpenGroup {
        const Group* group;
        std::size_t taken;
        std::shared_ptr<const desktop::Result<catalog::Picture>> atlas;
    };

    [[nodiscard]] Turn takeFromOpenGroup();

    const catalog::Catalog& catalog_;
    std::vector<Group> groups_;  // the most work first
    std::mutex mutex_;
    std::condition_variable changed_;
    std::size_t nextGroup_ = 0;
    std::size_t decoding_ = 0;  // atlases
    std::deque<OpenGroup> open_;
    bool stopped_ = false;
};

}  // namespace velmoranth::cli
