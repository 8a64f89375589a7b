#include "device/standins/journal.h"

#include "record/recorder.h"

#include <atomic>
#include <limits>
#include <map>
#include <mutex>
#include <utility>

namespace velmoranth::standins {
namespace {

constexpr std::size_t kNowhere = std::numeric_limits<std::size_t>::max();

struct Journal {
    record::Recorder recorder;
    std::recursive_mutex mutex;
    std::map<std::string, std::function<void()>> actions;  // by the beginnings of lines
};

thread_local int depth = 0;
std::atomic<bool> recordsFiles{false};

// Never destroyed: the library may still be told something after main.
Journal& taken() {
    static auto* const instance = new Journal;
    return *instance;
}

void actOn(const std::string& line) {
    std::vector<std::function<void()>> actions;
    {
        const std::scoped_lock lock(taken().mutex);
        for (const auto& [beginning, action] : taken().actions) {
            if (action && line.starts_with(beginning)) {
                actions.push_back(action);
            }
        }
    }
    for (const std::function<void()>& action : actions) {
        action();
    }
}

}  // namespace

std::vector<std::string> journal() {
    std::vector<std::string> lines;
    for (const record::Entry& entry : taken().recorder.entries()) {
        if (entry.kind != record::EntryKind::log) {
            lines.push_back(record::requestOf(entry));
        }
    }
    return lines;
}

std::vector<std::string> journalOf(const std::string& beginning) {
    std::vector<std::string> lines;
    for (const std::string& line : journal()) {
        if (line.starts_with(beginning)) {
            lines.push_back(line);
        }
    }
    return lines;
}

void clearJournal() {
    static_cast<void>(takeRecord());
}

void whenNoted(const std::string& beginning, const std::function<void()>& action) {
    const std::scoped_lock lock(taken().mutex);
    taken().actions[beginning] = action;
}

record::Record takeRecord() {
    return taken().recorder.take();
}

void recordFiles() {
    recordsFiles = true;
}

bool filesAreRecorded() {
    return recordsFiles;
}

Unrecorded::Unrecorded() {
    ++depth;
}

Unrecorded::~Unrecorded() {
    --depth;
}

std::size_t note(record::Entry entry) {
    if (depth > 0 && entry.kind != record::EntryKind::log) {
        return kNowhere;
    }
    const std::string line = record::requestOf(entry);
    const std::size_t place = taken().recorder.add(std::move(entry));
    actOn(line);
    return place;
}

void noteAnswer(std::size_t place, std::string words) {
    taken().recorder.answer(place, std::move(words));
}

}  // namespace velmoranth::standins
