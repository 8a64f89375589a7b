#include "desktop/views/animation.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace velmoranth::desktop {

namespace {

// The block that runs. Blocks nest; a null one shows its values at once.
thread_local std::shared_ptr<Animation> runningBlock;

class BlockScope {
  public:
    explicit BlockScope(std::shared_ptr<Animation> animation)
        : outer_(std::exchange(runningBlock, std::move(animation))) {}

    BlockScope(const BlockScope&) = delete;
    BlockScope& operator=(const BlockScope&) = delete;

    ~BlockScope() { runningBlock = std::move(outer_); }

  private:
    std::shared_ptr<Animation> outer_;
};

double secondsOf(double value) {
    return value > 0 ? std::min(value, kLongestAnimation) : 0;
}

// A coordinate of the curve from 0 to 1 whose control points have the coordinates a and b.
double bezier(double a, double b, double t) {
    const double rest = 1 - t;
    return 3 * rest * rest * t * a + 3 * rest * t * t * b + t * t * t;
}

}  // namespace

double TimingCurve::at(double time) const {
    if (!(time > 0)) {
        return 0;
    }
    if (time >= 1) {
        return 1;
    }
    // With first coordinates in 0..1 the time never runs back along the curve, so halving finds
    // its place, to the last bit of a double.
    const double x1 = std::clamp(first.x, 0.0, 1.0);
    const double x2 = std::clamp(second.x, 0.0, 1.0);
    double low = 0;
    double high = 1;
    constexpr int kHalvings = 60;
    for (int i = 0; i < kHalvings; ++i) {
        const double middle = (low + high) / 2;
        (bezier(x1, x2, middle) < time ? low : high) = middle;
    }
    return bezier(first.y, second.y, (low + high) / 2);
}

const std::shared_ptr<Animation>& Animation::current() {
    return runningBlock;
}

double Animation::progress() const {
    if (ended_) {
        return 1;
    }
    if (!(*now_ < end_)) {
        return 1;
    }
    const double time = (*now_ - start_) / (end_ - start_);
    return std::visit([time](const auto& timing) { return timing.at(time); }, timing_);
}

void Animation::addProperty() {
    ++properties_;
    end_ = plannedEnd_;
}

void Animation::loseProperty() {
    interrupted_ = true;
    if (--properties_ == 0) {
        end_ = *now_;
    }
}

AnimationClock::AnimationClock() : now_(std::make_shared<double>(0)) {}

AnimationClock::~AnimationClock() {
    for (const AnimationRef& animation : animations_) {
        animation->ended_ = true;
        animation->completion_ = nullptr;
    }
}

void AnimationClock::animate(double duration, const Timing& timing,
                             const std::function<void()>& changes, Completion completion,
                             double delay) {
    const auto animation = std::make_shared<Animation>();
    animation->now_ = now_;
    animation->made_ = now();
    animation->start_ = now() + secondsOf(delay);
    animation->plannedEnd_ = animation->start_ + secondsOf(duration);
    animation->end_ = animation->plannedEnd_;
    animation->timing_ = timing;
    animation->completion_ = std::move(completion);
    animation->step_ = step_;
    animations_.push_back(animation);
    if (changes != nullptr) {
        const BlockScope scope(duration > 0 ? animation : nullptr);
        changes();
    }
    if (animation->properties_ == 0 && !animation->interrupted_) {
        animation->end_ = animation->start_;
    }
}

AnimationClock::AnimationRef AnimationClock::takeDue(double until) {
    auto first = animations_.end();
    for (auto at = animations_.begin(); at != animations_.end(); ++at) {
        const Animation& animation = **at;
        // What a completion starts and what takes no time waits, or a completion that starts its
        // like again would never let the step end.
        const bool waits = animation.step_ == step_ && !(animation.end_ > animation.made_);
        if (!waits && animation.end_ <= until &&
            (first == animations_.end() || animation.end_ < (*first)->end_)) {
            first = at;
        }
    }
    if (first == animations_.end()) {
        return nullptr;
    }
    AnimationRef due = *first;
    animations_.erase(first);
    return due;
}

void AnimationClock::advance(double seconds) {
    if (advancing_) {
        return;
    }
    advancing_ = true;
    ++step_;
    const double until = now() + secondsOf(seconds);
    const BlockScope noBlock(nullptr);
    while (const AnimationRef due = takeDue(until)) {
        *now_ = std::max(now(), due->end_);
        due->ended_ = true;
        if (const Completion completion = std::exchange(due->completion_, nullptr)) {
            completion(!due->interrupted_);
        }
    }
    *now_ = until;
    advancing_ = false;
}

double AnimationClock::remaining() const {
    double last = now();
    for (const AnimationRef& animation : animations_) {
        last = std::max(last, animation->end_);
    }
    return last - now();
}

}  // namespace velmoranth::desktop
