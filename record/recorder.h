// Takes down what a process does, while somebody wants to know. The process-wide recorder is set
// before the first request and asked for by the decorators of the services (recorded_services.h),
// by the wrapped methods (recorded_methods.h), and by what draws views and plays sounds; where none
// is set each of them is one comparison.
//
// Entries may come from any thread and stand in the order in which they come; depth is a thread's
// own.
#pragma once

#include "record/entry.h"
#include "record/words.h"

#include <cstddef>
#include <mutex>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace velmoranth::record {

// Hears of entries as they come, under the recorder's lock: it must not record anything itself.
class RecordListener {
  public:
    RecordListener() = default;
    RecordListener(const RecordListener&) = delete;
    RecordListener& operator=(const RecordListener&) = delete;
    virtual ~RecordListener() = default;

    virtual void added(const Entry& entry) = 0;
    // Of the entry at that place, counted from the first that was added.
    virtual void answered(std::size_t place, const std::string& answer) = 0;
};

class Recorder {
  public:
    // More entries than that are not kept; the last one says so.
    static constexpr std::size_t kMostEntries = 200000;

    // A listener hears of each entry, and nothing is kept here then; null keeps them.
    explicit Recorder(RecordListener* listener = nullptr) : listener_(listener) {}

    Recorder(const Recorder&) = delete;
    Recorder& operator=(const Recorder&) = delete;
    ~Recorder();

    // That of the process; null while nothing is recorded. `recorder` outlives its use.
    [[nodiscard]] static Recorder* current() { return current_; }

    static void setCurrent(Recorder* recorder) { current_ = recorder; }

    // The entry's place in the record, for what it answers later. Its depth is set here.
    std::size_t add(Entry entry);
    void answer(std::size_t place, std::string answer);

    // What there is, which is not kept here any longer; what is answered from then on goes to
    // nobody. Empty with a listener.
    [[nodiscard]] Record take();
    // The same, which stays here.
    [[nodiscard]] Record entries() const;

  private:
    static inline Recorder* current_ = nullptr;

    RecordListener* const listener_;
    mutable std::mutex mutex_;
    std::size_t count_ = 0;  // of all that were added
    std::size_t taken_ = 0;  // of those, without a listener
    Record entries_;
};

// While a replaced method, an implementation of the platform or a callback runs: what happens
// meanwhile lies deeper. On one thread the last one begun is the first to end.
class Frame {
  public:
    // The entry is that of its beginning.
    explicit Frame(Entry entry);
    ~Frame();
    Frame(const Frame&) = delete;
    Frame& operator=(const Frame&) = delete;

    void answer(std::string words);

    // Whether the innermost frame of this thread belongs to the engine: a replacement or a callback
    // of its own, not the platform's implementation under one.
    [[nodiscard]] static bool isInEngine();

  private:
    Recorder* recorder_;
    std::size_t place_ = 0;
    EntryKind outer_;
};

// While an operation of the platform runs: what it sends itself is nothing of the engine's.
class InPlatform {
  public:
    InPlatform();
    ~InPlatform();
    InPlatform(const InPlatform&) = delete;
    InPlatform& operator=(const InPlatform&) = delete;

  private:
    EntryKind outer_;
};

// While the engine is called by somebody whom no record shows, a test.
class InEngine {
  public:
    InEngine();
    ~InEngine();
    InEngine(const InEngine&) = delete;
    InEngine& operator=(const InEngine&) = delete;

  private:
    EntryKind outer_;
};

// A message, for what it answers: nothing of one that was not taken down.
class Told {
  public:
    Told() = default;

    Told(Recorder& recorder, std::size_t place) : recorder_(&recorder), place_(place) {}

    template <class Value>
    Value answered(Value value) const {
        if (recorder_ != nullptr) {
            recorder_->answer(place_, words(value));
        }
        return value;
    }

  private:
    Recorder* recorder_ = nullptr;
    std::size_t place_ = 0;
};

// A message to a view, a layer or the like, when the engine sends it.
template <class... Arguments>
Told tell(const platform::Object& receiver, std::string_view message,
          const Arguments&... arguments) {
    if (Recorder* const recorder = Recorder::current(); recorder != nullptr && Frame::isInEngine())
        [[unlikely]] {
        return {*recorder, recorder->add({.kind = EntryKind::message,
                                          .message = std::string(message),
                                          .subject = words(receiver),
                                          .arguments = {words(arguments)...}})};
    }
    return {};
}

// A file that a reader of files tried for what it was asked, on this thread; `problem` is what was
// wrong with it, "" for the one that it read. One that asks for a path may be given what lies
// beside it, and only the reader knows.
struct TriedFile {
    std::string path;
    std::string problem;
};

void noteTried(const std::string& path, const std::string& problem);
// Those of this thread since the last time.
[[nodiscard]] std::vector<TriedFile> takeTried();

}  // namespace velmoranth::record
