#import "device/standins/standin.h"

#include <functional>
#include <map>
#include <mutex>

namespace velmoranth::standins {
namespace {

struct State {
    std::recursive_mutex mutex;
    std::vector<std::string> journal;
    std::map<std::string, long> living;
    std::map<std::string, std::function<void()>> actions;  // by the beginnings of lines
};

// Never destroyed: objects may end after main.
State& state() {
    static auto* const instance = new State;
    return *instance;
}

void count(Class cls, long change) {
    const std::scoped_lock lock(state().mutex);
    state().living[class_getName(cls)] += change;
}

}  // namespace

std::vector<std::string> journal() {
    const std::scoped_lock lock(state().mutex);
    return state().journal;
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
    const std::scoped_lock lock(state().mutex);
    state().journal.clear();
}

void whenNoted(const std::string& beginning, const std::function<void()>& action) {
    const std::scoped_lock lock(state().mutex);
    state().actions[beginning] = action;
}

void note(const std::string& message) {
    std::vector<std::function<void()>> actions;
    {
        const std::scoped_lock lock(state().mutex);
        state().journal.push_back(message);
        for (const auto& [beginning, action] : state().actions) {
            if (action && message.starts_with(beginning)) {
                actions.push_back(action);
            }
        }
    }
    for (const std::function<void()>& action : actions) {
        action();
    }
}

void noteFormat(NSString* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    NSString* const text = [[NSString alloc] initWithFormat:format arguments:arguments];
    va_end(arguments);
    note([text UTF8String]);
    [text release];
}

long living(const std::string& className) {
    const std::scoped_lock lock(state().mutex);
    const auto entry = state().living.find(className);
    return entry == state().living.end() ? 0 : entry->second;
}

std::vector<std::string> allLiving() {
    const std::scoped_lock lock(state().mutex);
    std::vector<std::string> lines;
    for (const auto& [name, number] : state().living) {
        if (number != 0) {
            lines.push_back(name + " " + std::to_string(number));
        }
    }
    return lines;
}

}  // namespace velmoranth::standins

@implementation StandIn

+ (id)allocWithZone:(NSZone*)zone {
    const id object = [super allocWithZone:zone];
    velmoranth::standins::count(self, 1);
    return object;
}

- (void)dealloc {
    velmoranth::standins::count([self class], -1);
    [super dealloc];
}

@end
