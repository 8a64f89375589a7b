#include "cli/extraction.h"

#include "cli/extracted_names.h"
#include "cli/told_apart.h"
#include "desktop/catalog/pictures.h"
#include "desktop/catalog_pictures/draw_picture.h"
#include "desktop/image_io/image_io.h"
#include "tools/catalog_extraction.h"

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <exception>
#include <map>
#include <mutex>
#include <new>
#include <optional>
#include <string_view>
#include <system_error>
#include <thread>
#include <unordered_map>
#include <utility>

namespace velmoranth::cli {

using catalog::Catalog;
using catalog::Picture;
using catalog::Rendition;
using desktop::DrawnImage;
using desktop::Problem;
using desktop::Result;

namespace {

constexpr std::chrono::milliseconds kBetweenProgress{100};

Result<DrawnImage> pixelsOfPart(const Result<Picture>& atlas, const Rendition& rendition) {
    if (!atlas) {
        return tl::unexpected(Problem{"its atlas: " + atlas.error().message});
    }
    return Catalog::part(*atlas, *rendition.link).map(desktop::drawnImage);
}

// One extraction, from its start to its end. It goes in rounds: what could not be decoded in one
// is taken up in the next from its next copy, so that atlases are decoded once in each round.
class Run {
  public:
    Run(const Catalog& catalog, std::span<const PlannedPicture> plan, ExtractionFolder& folder,
        const ExtractionWay& way)
        : catalog_(catalog), plan_(plan), folder_(folder), way_(way) {}

    void extractAll() {
        tell(0);
        turns_ = plan_;
        std::vector<PlannedPicture> retries;
        for (round_ = 0; !turns_.empty() && !problem_; ++round_) {
            extractRound();
            retries = takeRetries();
            turns_ = retries;
        }
    }

    // Once all rounds have ended.
    Extraction result() {
        Extraction extraction{extracted_, std::move(owners_), {}, std::move(problem_)};
        extraction.lost.reserve(reasons_.size());
        for (auto& [picture, why] : reasons_) {
            extraction.lost.push_back({picture, plan_[picture], std::move(why)});
        }
        return extraction;
    }

  private:
    void extractRound() {
        waiting_ = turns_.size();
        queue_.emplace(catalog_, turns_);
        std::vector<std::jthread> threads;
        const std::size_t count = std::min(way_.jobs, turns_.size());
        threads.reserve(count);
        while (threads.size() < count && startThread(threads)) {
        }
        if (threads.empty()) {
            work();
        }
        watch();
    }

    void tell(std::size_t done) {
        try {
            way_.progress(done);
        } catch (const std::bad_alloc&) {  // NOLINT(bugprone-empty-catch): the next time, then
        }
    }

    // False when none can be started; those that have been do it all then.
    bool startThread(std::vector<std::jthread>& threads) {
        try {
            threads.emplace_back([this] { work(); });
            return true;
        } catch (const std::system_error&) {
            return false;
        } catch (const std::bad_alloc&) {
            return false;
        }
    }

    // The pictures of the next round.
    std::vector<PlannedPicture> takeRetries() {
        places_ = std::exchange(failed_, {});
        std::ranges::sort(places_);
        std::vector<PlannedPicture> retries;
        retries.reserve(places_.size());
        for (const std::size_t picture : places_) {
            const PlannedPicture& planned = plan_[picture];
            if (problem_) {  // it may be lost, and may not
                reasons_.erase(picture);
            }
            retries.push_back(planned);
            retries.back().rendition = planned.otherCopies[round_];
        }
        return retries;
    }

    // Returns when all pictures of the round are done, or the threads have stopped.
    void watch() {
        std::unique_lock lock(mutex_);
        while (waiting_ > 0 && !problem_) {
            const std::size_t done = extracted_ + reasons_.size() - failed_.size();
            lock.unlock();
            tell(done);
            lock.lock();
            changed_.wait_for(lock, kBetweenProgress, [this] { return waiting_ == 0 || problem_; });
        }
    }

    void work() {
        try {
            while (const std::optional<ExtractionQueue::Turn> turn = queue_->take()) {
                extractOrFail(*turn);
                const std::lock_guard lock(mutex_);
                --waiting_;
                changed_.notify_all();
            }
        } catch (const std::bad_alloc&) {  // nor is there any for a longer message
            stop({.message = "out of memory"});
        }
    }

    void extractOrFail(const ExtractionQueue::Turn& turn) {
        const std::size_t picture = round_ == 0 ? turn.picture : places_[turn.picture];
        try {
            extract(turn, picture);
        } catch (const std::bad_alloc&) {
            fail(picture, "there is not enough memory");
        } catch (const std::exception& error) {
            fail(picture, error.what());
        }
    }

    void extract(const ExtractionQueue::Turn& turn, std::size_t picture) {
        const PlannedPicture& planned = turns_[turn.picture];
        const Rendition& copy = *planned.rendition;
        const Result<DrawnImage> image =
            turn.atlas != nullptr
                ? pixelsOfPart(*turn.atlas, copy)
                : desktop::drawPicture(catalog_, copy, catalog::pictureScale(catalog_, copy));
        if (!image) {
            fail(picture, image.error().message);
            return;
        }
        const std::string file =
            extractedFile(catalog_, planned, image->width, image->height, way_.layout);
        if (isTaken(file, picture)) {
            return;
        }
        const platform::Data png =
            desktop::encodePng(image->bgra, image->width, image->height,
                               std::size_t{image->width} * 4, desktop::PngEffort::fast);
        if (png.empty()) {
            fail(picture, "it has no pixels");
            return;
        }
        Written<void> written = folder_.write(file, png).and_then(
            [&](UnplacedFile&& unplaced) { return place(file, picture, unplaced); });
        if (!written) {
            setAside(picture, std::move(written.error()));
        }
    }

    // Whether a later picture has the file already. This one is done then.
    bool isTaken(const std::string& file, std::size_t picture) {
        const std::lock_guard lock(mutex_);
        const auto owner = owners_.find(file);
        const bool taken = owner != owners_.end() && owner->second > picture;
        if (taken) {
            succeedLocked(picture);
        }
        return taken;
    }

    Written<void> place(const std::string& file, std::size_t picture, UnplacedFile& unplaced) {
        const std::lock_guard lock(mutex_);
        const auto [owner, isFirst] = owners_.emplace(file, picture);
        if (isFirst || owner->second <= picture) {
            if (Written<void> placed = unplaced.place(); !placed) {
                if (isFirst) {
                    owners_.erase(owner);
                }
                return placed;
            }
            owner->second = picture;
        }
        succeedLocked(picture);
        return {};
    }

    void succeedLocked(std::size_t picture) {
        ++extracted_;
        reasons_.erase(picture);
    }

    // Its copy of this round is no good.
    void fail(std::size_t picture, const std::string& why) {
        const std::lock_guard lock(mutex_);
        reasons_.try_emplace(picture, why);
        if (round_ < plan_[picture].otherCopies.size()) {
            failed_.push_back(picture);
        }
    }

    // Another copy would fare no better.
    void setAside(std::size_t picture, Unwritten unwritten) {
        if (unwritten.concernsAll) {
            stop(std::move(unwritten.problem));
            return;
        }
        const std::lock_guard lock(mutex_);
        reasons_.insert_or_assign(picture, toLine(unwritten.problem));
    }

    void stop(Problem problem) {
        const std::lock_guard lock(mutex_);
        if (!problem_) {
            problem_ = std::move(problem);
        }
        queue_->stop();
        changed_.notify_all();
    }

    const Catalog& catalog_;
    const std::span<const PlannedPicture> plan_;
    ExtractionFolder& folder_;
    const ExtractionWay& way_;

    // Of a round.
    std::size_t round_ = 0;
    std::span<const PlannedPicture> turns_;
    std::vector<std::size_t>
        places_;  // of the turns in the plan; in the first round all stand there
    std::optional<ExtractionQueue> queue_;

    std::mutex mutex_;
    std::condition_variable changed_;
    std::size_t waiting_ = 0;                              // pictures of this round
    std::size_t extracted_ = 0;                            // or given way to a later one
    std::vector<std::size_t> failed_;                      // in this round, with another copy
    std::unordered_map<std::string, std::size_t> owners_;  // the picture that a file shows
    std::map<std::size_t, std::string> reasons_;  // first ones, of lost pictures and failed ones
    std::optional<Problem> problem_;
};

}  // namespace

std::string extractedFile(const Catalog& catalog, const PlannedPicture& picture,
                          std::uint32_t width, std::uint32_t height, FileLayout layout) {
    const std::string_view name = picture.facet->name;
    if (layout == FileLayout::system) {
        return tools::extractedFileName(std::string(name), picture.scale, width, height);
    }
    constexpr std::string_view kPng = ".png";
    std::string ending = tools::extractedFileName({}, picture.scale, width, height);
    ending.resize(ending.size() - kPng.size());
    ending += picture.mark;
    if (picture.size && *picture.size != PixelSize{width, height}) {
        ending += placeMark(catalog, picture);
    }
    ending += kPng;
    const auto number = static_cast<std::size_t>(picture.facet - catalog.facets().data());
    return extractedPath(name, ending, number,
                         layout == FileLayout::flat ? Slashes::areSpelled : Slashes::makeFolders);
}

Extraction extractPictures(const Catalog& catalog, std::span<const PlannedPicture> plan,
                           ExtractionFolder& folder, const ExtractionWay& way) {
    Run run(catalog, plan, folder, way);
    run.extractAll();
    return run.result();
}

}  // namespace velmoranth::cli
