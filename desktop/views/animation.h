// Animations on a clock that only moves when it is told to. A property that is set inside a block
// of animate() has its new value at once; the screen shows it on its way there, at the clock's
// time. Setting it outside of a block shows the new value at once and ends what animated it.
//     clock.animate(0.25, kEaseInOut, [&] { view->setAlpha(0); }, [&](bool) { … });
//     clock.advance(0.1);
// Times are seconds. One thread.
#pragma once

#include "desktop/views/spring_timing.h"
#include "platform/core_graphics.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <variant>
#include <vector>

namespace velmoranth::desktop {

// Longer durations, delays and steps count as this long: 11 days.
inline constexpr double kLongestAnimation = 1e6;

// A cubic Bezier curve from (0, 0) to (1, 1): share of the time to share of the way. The first
// coordinates lie in 0..1 (what lies outside is brought to the nearer end), the second ones are
// free.
struct TimingCurve {
    platform::Point first{0.42, 0};
    platform::Point second{0.58, 1};

    // 0 up to time 0, 1 from time 1 on.
    [[nodiscard]] double at(double time) const;
};

// UIViewAnimationCurveEaseInOut: that of +[UIView animateWithDuration:animations:completion:].
inline constexpr TimingCurve kEaseInOut{};
inline constexpr TimingCurve kLinear{{0, 0}, {1, 1}};

// Share of the time to share of the way.
using Timing = std::variant<TimingCurve, SpringTiming>;

class AnimationClock;

// What one block set in motion.
class Animation {
  public:
    // That of the innermost block that runs on this thread; null outside of blocks and in one whose
    // duration is not positive.
    [[nodiscard]] static const std::shared_ptr<Animation>& current();

    // The share of the way that is done, by its timing: 0 during the delay, 1 when it has ended.
    // Between them a spring, or a curve, may be beyond the end.
    [[nodiscard]] double progress() const;

    [[nodiscard]] bool hasEnded() const { return ended_; }

    // A property moves with this animation, or has been given to another one.
    void addProperty();

    void loseProperty();

  private:
    friend class AnimationClock;

    std::shared_ptr<const double> now_;  // the clock's; the clock may go first
    double made_ = 0;
    double start_ = 0;
    double plannedEnd_ = 0;
    double end_ = 0;  // earlier when it moves nothing (any more)
    Timing timing_;
    std::function<void(bool finished)> completion_;
    std::size_t properties_ = 0;
    std::uint64_t step_ = 0;  // of the clock, in which it was made
    bool interrupted_ = false;
    bool ended_ = false;
};

class AnimationClock {
  public:
    using Completion = std::function<void(bool finished)>;

    AnimationClock();
    AnimationClock(const AnimationClock&) = delete;
    AnimationClock& operator=(const AnimationClock&) = delete;
    // What still runs is shown at its end; its completions are not called.
    ~AnimationClock();

    [[nodiscard]] double now() const { return *now_; }

    // Runs `changes` at once. `completion` is called by a later advance(), never from inside this
    // call, when `delay` and `duration` have passed, or, when `changes` moved no property, when
    // `delay` has passed; both with true. When another block, or a setter outside of blocks, takes
    // over a property, the completion is called with false, as soon as no property is left to move.
    // Views that are removed or gone change nothing of this. A duration that is not positive moves
    // nothing: values are shown at once. Either function may be empty; NaN counts as 0, a negative
    // delay too.
    void animate(double duration, const Timing& timing, const std::function<void()>& changes,
                 Completion completion, double delay = 0);

    // Moves on and calls the completions that are due in the order of their ends, those of the same
    // end in the order in which they were made. Each is called at the exact time of its end, so
    // what it starts begins there and may end in the same step; only what takes no time waits for
    // the next step. Negative and NaN count as 0. Called by a completion it does nothing.
    void advance(double seconds);

    // Whether a completion or a movement is still to come.
    [[nodiscard]] bool isRunning() const { return !animations_.empty(); }

    // How long until all that is known of has ended; a completion may start more.
    [[nodiscard]] double remaining() const;

  private:
    using AnimationRef = std::shared_ptr<Animation>;

    [[nodiscard]] AnimationRef takeDue(double until);

    std::shared_ptr<double> now_;
    std::vector<AnimationRef> animations_;  // in the order in which they were made
    std::uint64_t step_ = 0;
    bool advancing_ = false;
};

[[nodiscard]] inline double mixed(double from, double to, double share) {
    return from + (to - from) * share;
}

[[nodiscard]] inline platform::Rect mixed(const platform::Rect& from, const platform::Rect& to,
                                          double share) {
    return {{mixed(from.origin.x, to.origin.x, share), mixed(from.origin.y, to.origin.y, share)},
            {mixed(from.size.width, to.size.width, share),
             mixed(from.size.height, to.size.height, share)}};
}

// How a property that may be animated is shown; its value itself is kept by its owner. mixed() says
// what lies between two values.
template <class Value>
class Transition {
  public:
    // What the screen shows of a property whose value is `model`.
    [[nodiscard]] Value shown(const Value& model) const {
        return isRunning() ? mixed(from_, model, animation_->progress()) : model;
    }

    [[nodiscard]] bool isRunning() const {
        return animation_ != nullptr && !animation_->hasEnded();
    }

    // Gives the property its value, animated when a block runs. A value that it has already changes
    // nothing.
    void set(Value& model, const Value& value) {
        if (model == value) {
            return;
        }
        const std::shared_ptr<Animation>& next = Animation::current();
        from_ = shown(model);
        model = value;
        if (next == animation_ && isRunning()) {
            return;
        }
        if (isRunning()) {
            animation_->loseProperty();
        }
        animation_ = next;
        if (next != nullptr) {
            next->addProperty();
        }
    }

  private:
    Value from_{};
    std::shared_ptr<Animation> animation_;
};

}  // namespace velmoranth::desktop
