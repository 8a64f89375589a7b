#include "record/recorder.h"

#include <limits>

namespace velmoranth::record {
namespace {

// The place of an entry that is not kept.
constexpr std::size_t kNowhere = std::numeric_limits<std::size_t>::max();

thread_local int depth = 0;
// Outside of every frame the platform is at work.
thread_local EntryKind innermost = EntryKind::original;
thread_local std::vector<TriedFile> tried;

}  // namespace

Recorder::~Recorder() {
    if (current_ == this) {
        current_ = nullptr;
    }
}

std::size_t Recorder::add(Entry entry) {
    const std::scoped_lock lock(mutex_);
    const std::size_t kept = count_ - taken_;
    if (kept >= kMostEntries) {
        return kNowhere;
    }
    entry.depth = depth;
    if (kept + 1 == kMostEntries) {
        entry = {.kind = EntryKind::log, .subject = "more is not recorded"};
    }
    if (listener_ != nullptr) {
        listener_->added(entry);
    } else {
        entries_.push_back(std::move(entry));
    }
    return count_++;
}

void Recorder::answer(std::size_t place, std::string answer) {
    const std::scoped_lock lock(mutex_);
    if (place < taken_ || place >= count_) {
        return;
    }
    if (listener_ != nullptr) {
        listener_->answered(place, answer);
    } else {
        entries_[place - taken_].answer = std::move(answer);
    }
}

Record Recorder::take() {
    const std::scoped_lock lock(mutex_);
    taken_ += entries_.size();
    return std::exchange(entries_, {});
}

Record Recorder::entries() const {
    const std::scoped_lock lock(mutex_);
    return entries_;
}

Frame::Frame(Entry entry) : recorder_(Recorder::current()), outer_(innermost) {
    innermost = entry.kind;
    if (recorder_ != nullptr) {
        place_ = recorder_->add(std::move(entry));
    }
    ++depth;
}

Frame::~Frame() {
    --depth;
    innermost = outer_;
}

void Frame::answer(std::string words) {
    if (recorder_ != nullptr) {
        recorder_->answer(place_, std::move(words));
    }
}

bool Frame::isInEngine() {
    return innermost != EntryKind::original;
}

InPlatform::InPlatform() : outer_(std::exchange(innermost, EntryKind::original)) {}

InPlatform::~InPlatform() {
    innermost = outer_;
}

InEngine::InEngine() : outer_(std::exchange(innermost, EntryKind::entered)) {}

InEngine::~InEngine() {
    innermost = outer_;
}

void noteTried(const std::string& path, const std::string& problem) {
    if (Recorder::current() != nullptr) [[unlikely]] {
        tried.push_back({path, problem});
    }
}

std::vector<TriedFile> takeTried() {
    return std::exchange(tried, {});
}

}  // namespace velmoranth::record
