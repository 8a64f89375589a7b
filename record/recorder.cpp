#include "record/recorder.h"

namespace velmoranth::record {
namespace {

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
    if (count_ >= kMostEntries) {
        return kMostEntries;
    }
    entry.depth = depth;
    if (count_ + 1 == kMostEntries) {
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
    if (listener_ != nullptr && place < count_) {
        listener_->answered(place, answer);
    } else if (place < entries_.size()) {
        entries_[place].answer = std::move(answer);
    }
}

Record Recorder::take() {
    const std::scoped_lock lock(mutex_);
    count_ = 0;
    return std::exchange(entries_, {});
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

void noteTried(const std::string& path, const std::string& problem) {
    if (Recorder::current() != nullptr) [[unlikely]] {
        tried.push_back({path, problem});
    }
}

std::vector<TriedFile> takeTried() {
    return std::exchange(tried, {});
}

}  // namespace velmoranth::record
