#import "device/standins/views.h"
#include <Block.h>

#include <mutex>
#include <utility>

namespace velmoranth::standins {
namespace {

struct PendingAnimation {
    void (^animations)(void);
    void (^completion)(BOOL finished);
};

struct Pending {
    std::recursive_mutex mutex;
    std::vector<PendingAnimation> animations;
};

Pending& pending() {
    static auto* const instance = new Pending;
    return *instance;
}

void begin(void (^animations)(void), void (^completion)(BOOL finished)) {
    PendingAnimation animation{Block_copy(animations), nil};
    if (completion != nil) {
        animation.completion = Block_copy(completion);
    }
    {
        const std::scoped_lock lock(pending().mutex);
        pending().animations.push_back(animation);
    }
    animation.animations();
}

}  // namespace

std::size_t pendingAnimations() {
    const std::scoped_lock lock(pending().mutex);
    return pending().animations.size();
}

void finishAnimations(bool finished) {
    std::vector<PendingAnimation> ended;
    {
        const std::scoped_lock lock(pending().mutex);
        ended = std::exchange(pending().animations, {});
    }
    for (const PendingAnimation& animation : ended) {
        if (animation.completion != nil) {
            animation.completion(finished);
            Block_release(animation.completion);
        }
        Block_release(animation.animations);
    }
}

void animate(id views, SEL selector, const std::vector<std::string>& numbers,
             void (^animations)(void), void (^completion)(BOOL finished)) {
    std::vector<std::string> arguments = numbers;
    arguments.push_back(wordsOfPointer(animations).text);
    arguments.push_back(wordsOfPointer(completion).text);
    receive(views, selector, Told::service, arguments);
    begin(animations, completion);
}

}  // namespace velmoranth::standins
