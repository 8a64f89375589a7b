// Which pictures of a catalog are extracted, and in which turn the work on them is taken up.
#pragma once

#include "cli/catalog_selection.h"
#include "desktop/catalog/catalog.h"
#include "desktop/result/result.h"

#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace velmoranth::cli {

struct PixelSize {
    std::uint32_t width = 0;
    std::uint32_t height = 0;

    friend bool operator==(const PixelSize&, const PixelSize&) = default;
};

// A picture and the name it goes by. All are the catalog's.
struct PlannedPicture {
    const catalog::Facet* facet = nullptr;  // null for an unreadable one that has no name
    const catalog::Rendition* rendition = nullptr;
    // Further copies of the picture, to be taken in this order when that one cannot be decoded.
    std::vector<const catalog::Rendition*> otherCopies = {};
    double scale = 1;       // pixels a point, of all copies
    std::string mark = {};  // ends the name of its file and tells it apart from others
    // That the mark was chosen for, 0 by 0 when it could not be found out. Nothing for a picture
    // that no other can be mistaken for, whatever its size.
    std::optional<PixelSize> size = {};
};

// Which files there are, and in which folders.
enum class FileLayout {
    apart,   // a file for each picture
    flat,    // the same without folders for slashes in names
    system,  // as the phone's own extraction leaves them
};

// Only a forged catalog, whose names share their renditions, has more.
inline constexpr std::size_t kMostPictures = 1'000'000;
[[nodiscard]] tl::unexpected<desktop::Problem> tooManyPictures();

struct PlanRequest {
    Selection selection = {};
    FileLayout layout = FileLayout::apart;
    bool needsAllSizes = false;  // those too that no name needs
    std::size_t jobs = 1;
    // Told in the calling thread, while sizes are found out, how many of how many are.
    std::function<void(std::size_t done, std::size_t all)> progress = {};
};

// The pictures that are selected, in the order of the names and of the catalog, and every
// unreadable rendition, which may have been one. Marks do not depend on what is selected. A problem
// when they are more than kMostPictures.
//
// For the system's layout they are what a phone extracts, in its order and without copies: every
// one that it writes, of which later ones replace earlier ones; not the names with a slash, for
// which it makes no folders and writes nothing.
[[nodiscard]] desktop::Result<std::vector<PlannedPicture>> planExtraction(
    const catalog::Catalog& catalog, const PlanRequest& request);

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
