// The main queue on a clock that tests move.
#import "device/standins/system.h"
#include <Block.h>
#import <Foundation/Foundation.h>
#include <dispatch/dispatch.h>

#include <algorithm>
#include <cstdint>
#include <mutex>
#include <optional>

struct dispatch_queue_s {
    int unused;
};

struct dispatch_queue_s _dispatch_main_q = {0};

namespace velmoranth::standins {
namespace {

struct Waiting {
    dispatch_time_t due;
    dispatch_block_t block;
};

struct MainQueue {
    std::mutex mutex;
    std::vector<Waiting> waiting;               // in the order in which they came
    dispatch_time_t now = 1000 * NSEC_PER_SEC;  // 0 would say "now" to whoever passes it on
};

MainQueue& mainQueue() {
    static auto* const instance = new MainQueue;
    return *instance;
}

// The block that is due first of those due by then, and the clock set to its time.
std::optional<Waiting> takeNext(dispatch_time_t latest) {
    MainQueue& queue = mainQueue();
    const std::scoped_lock lock(queue.mutex);
    const auto next = std::min_element(queue.waiting.begin(), queue.waiting.end(),
                                       [](const auto& a, const auto& b) { return a.due < b.due; });
    if (next == queue.waiting.end() || next->due > latest) {
        return std::nullopt;
    }
    const Waiting taken = *next;
    queue.waiting.erase(next);
    queue.now = std::max(queue.now, taken.due);
    return taken;
}

void runUntil(dispatch_time_t latest) {
    while (const std::optional<Waiting> next = takeNext(latest)) {
        @autoreleasepool {
            next->block();
            Block_release(next->block);
        }
    }
    const std::scoped_lock lock(mainQueue().mutex);
    mainQueue().now = std::max(mainQueue().now, latest);
}

dispatch_time_t now() {
    const std::scoped_lock lock(mainQueue().mutex);
    return mainQueue().now;
}

}  // namespace

void runMainQueue() {
    runUntil(now());
}

void advanceClock(double seconds) {
    runUntil(now() + static_cast<dispatch_time_t>(seconds * NSEC_PER_SEC));
}

double clockSeconds() {
    return static_cast<double>(now()) / NSEC_PER_SEC;
}

std::size_t pendingOnMainQueue() {
    const std::scoped_lock lock(mainQueue().mutex);
    return mainQueue().waiting.size();
}

}  // namespace velmoranth::standins

extern "C" {

dispatch_time_t dispatch_time(dispatch_time_t when, int64_t delta) {
    const dispatch_time_t base = when == DISPATCH_TIME_NOW ? velmoranth::standins::now() : when;
    return base + static_cast<dispatch_time_t>(delta);
}

void dispatch_after(dispatch_time_t when, dispatch_queue_t /*queue*/, dispatch_block_t block) {
    auto& queue = velmoranth::standins::mainQueue();
    const dispatch_block_t copy = Block_copy(block);
    const std::scoped_lock lock(queue.mutex);
    // What was due before is due now.
    queue.waiting.push_back({std::max(when, queue.now), copy});
}

void dispatch_async(dispatch_queue_t queue, dispatch_block_t block) {
    dispatch_after(velmoranth::standins::now(), queue, block);
}

}  // extern "C"
