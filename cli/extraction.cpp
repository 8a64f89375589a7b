#include "cli/extraction.h"

#include "cli/extracted_names.h"
#include "desktop/catalog/pictures.h"
#include "desktop/image_io/image_io.h"
#include "desktop/vector_images/vector_images.h"
#include "tools/catalog_extraction.h"

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <mutex>
#include <new>
#include <optional>
#include <thread>
#include <unordered_map>
#include <utility>

namespace velmoranth::cli {

using catalog::Catalog;
using catalog::Kind;
using catalog::Picture;
using catalog::Rendition;
using desktop::DrawnImage;
using desktop::Problem;
using desktop::Result;

namespace {

constexpr std::chrono::milliseconds kBetweenProgress{100};

DrawnImage drawn(Picture picture) {
    const bool isBgra = picture.format == Picture::Format::bgra;
    return {picture.width, picture.height, isBgra ? std::move(picture.pixels) : toBgra(picture)};
}

// Of what is no part of an atlas.
Result<DrawnImage> pixelsOf(const Catalog& catalog, const Rendition& rendition) {
    if (rendition.kind == Kind::unreadable) {
        return tl::unexpected(Problem{rendition.problem});
    }
    if (rendition.kind == Kind::vector || rendition.kind == Kind::imageFile) {
        return catalog.file(rendition).and_then([&](const std::vector<std::uint8_t>& file) {
            return rendition.kind == Kind::vector
                       ? desktop::drawVector(file, catalog::pictureScale(catalog, rendition))
                       : desktop::decodeImageFile(file, rendition.orientation);
        });
    }
    return catalog.decode(rendition).map(drawn);
}

Result<DrawnImage> pixelsOfPart(const Result<Picture>& atlas, const Rendition& rendition) {
    if (!atlas) {
        return tl::unexpected(Problem{"its atlas: " + atlas.error().message});
    }
    return Catalog::part(*atlas, *rendition.link).map(drawn);
}

// One extraction, from its start to its end.
class Run {
  public:
    Run(const Catalog& catalog, std::span<const PlannedPicture> plan, ExtractionFolder& folder)
        : catalog_(catalog), plan_(plan), folder_(folder), queue_(catalog, plan) {}

    void work() {
        while (const std::optional<ExtractionQueue::Turn> turn = queue_.take()) {
            try {
                extract(*turn);
            } catch (const std::bad_alloc&) {
                lose(turn->picture, "there is not enough memory");
            }
            const std::lock_guard lock(mutex_);
            ++done_;
            changed_.notify_all();
        }
    }

    // Returns when all pictures are done, or the threads have stopped.
    void watch(const std::function<void(std::size_t done)>& progress) {
        std::unique_lock lock(mutex_);
        while (done_ < plan_.size() && !problem_) {
            const std::size_t done = done_;
            lock.unlock();
            progress(done);
            lock.lock();
            changed_.wait_for(lock, kBetweenProgress,
                              [this] { return done_ == plan_.size() || problem_; });
        }
    }

    // Once the threads have ended.
    Result<Extraction> result() {
        if (problem_) {
            return tl::unexpected(std::move(*problem_));
        }
        std::sort(lost_.begin(), lost_.end(),
                  [](const auto& a, const auto& b) { return a.first < b.first; });
        Extraction extraction{plan_.size() - lost_.size(), owners_.size(), {}};
        extraction.lost.reserve(lost_.size());
        for (auto& [picture, why] : lost_) {
            extraction.lost.push_back({plan_[picture], std::move(why)});
        }
        return extraction;
    }

  private:
    void extract(const ExtractionQueue::Turn& turn) {
        const PlannedPicture& planned = plan_[turn.picture];
        const Result<DrawnImage> image = turn.atlas != nullptr
                                             ? pixelsOfPart(*turn.atlas, *planned.rendition)
                                             : pixelsOf(catalog_, *planned.rendition);
        if (!image) {
            lose(turn.picture, image.error().message);
            return;
        }
        const std::string file = extractedFile(catalog_, planned, image->width, image->height);
        if (isTaken(file, turn.picture)) {
            return;
        }
        const platform::Data png =
            desktop::encodePng(image->bgra, image->width, image->height,
                               std::size_t{image->width} * 4, desktop::PngEffort::fast);
        if (png.empty()) {
            lose(turn.picture, "it has no pixels");
            return;
        }
        Result<UnplacedFile> unplaced = folder_.write(file, png);
        if (!unplaced) {
            stop(std::move(unplaced.error()));
            return;
        }
        place(file, turn.picture, *unplaced);
    }

    // Whether a later picture has the file already.
    bool isTaken(const std::string& file, std::size_t picture) {
        const std::lock_guard lock(mutex_);
        const auto owner = owners_.find(file);
        return owner != owners_.end() && owner->second > picture;
    }

    void place(const std::string& file, std::size_t picture, UnplacedFile& unplaced) {
        const std::lock_guard lock(mutex_);
        const auto [owner, isFirst] = owners_.emplace(file, picture);
        if (!isFirst && owner->second > picture) {
            return;
        }
        owner->second = picture;
        if (auto placed = unplaced.place(); !placed) {
            stopLocked(std::move(placed.error()));
        }
    }

    void lose(std::size_t picture, std::string why) {
        const std::lock_guard lock(mutex_);
        lost_.emplace_back(picture, std::move(why));
    }

    void stop(Problem problem) {
        const std::lock_guard lock(mutex_);
        stopLocked(std::move(problem));
    }

    void stopLocked(Problem problem) {
        if (!problem_) {
            problem_ = std::move(problem);
        }
        queue_.stop();
        changed_.notify_all();
    }

    const Catalog& catalog_;
    const std::span<const PlannedPicture> plan_;
    ExtractionFolder& folder_;
    ExtractionQueue queue_;

    std::mutex mutex_;
    std::condition_variable changed_;
    std::size_t done_ = 0;
    std::unordered_map<std::string, std::size_t> owners_;  // the picture that a file shows
    std::vector<std::pair<std::size_t, std::string>> lost_;
    std::optional<Problem> problem_;
};

}  // namespace

std::string extractedFile(const Catalog& catalog, const PlannedPicture& picture, std::size_t width,
                          std::size_t height) {
    const std::string ending = tools::extractedFileName(
        {}, catalog::pictureScale(catalog, *picture.rendition), width, height);
    const auto number = static_cast<std::size_t>(picture.facet - catalog.facets().data());
    return extractedPath(picture.facet->name, ending, number);
}

Result<Extraction> extractPictures(const Catalog& catalog, std::span<const PlannedPicture> plan,
                                   ExtractionFolder& folder, std::size_t jobs,
                                   const std::function<void(std::size_t done)>& progress) {
    Run run(catalog, plan, folder);
    {
        std::vector<std::jthread> threads;
        const std::size_t count = std::min(jobs, plan.size());
        threads.reserve(count);
        for (std::size_t i = 0; i < count; ++i) {
            threads.emplace_back([&run] { run.work(); });
        }
        run.watch(progress);
    }
    return run.result();
}

}  // namespace velmoranth::cli
