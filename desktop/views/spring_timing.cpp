#include "desktop/views/spring_timing.h"

#include <algorithm>
#include <cmath>

namespace velmoranth::desktop {

namespace {

// Less would swing hundreds of times, and at 0 for ever.
constexpr double kLeastDamping = 0.01;
// Whole ways a duration.
constexpr double kFastest = 1000;
// Of the way: what is that near to rest is at rest.
constexpr double kRest = 0.001;
// sin(x) / x is 1 there, to the last bit of a double.
constexpr double kNoSwing = 1e-9;

}  // namespace

SpringTiming::SpringTiming(double damping, double velocity, double frequency)
    : damping_(damping),
      velocity_(velocity),
      frequency_(frequency),
      swing_(frequency * std::sqrt(1 - damping * damping)) {}

SpringTiming SpringTiming::create(double damping, double initialVelocity, double duration) {
    const double ratio = std::isnan(damping) ? 1 : std::clamp(damping, kLeastDamping, 1.0);
    const double way = initialVelocity * duration;
    const double velocity = std::isnan(way) ? 0 : std::clamp(way, -kFastest, kFastest);
    const auto rests = [ratio, velocity](double frequency) {
        return SpringTiming(ratio, velocity, frequency).envelope(1) <= kRest;
    };
    // At this the exponential alone is as small as that; the envelope is never less.
    double low = -std::log(kRest) / ratio;
    double high = 2 * low;
    while (!rests(high)) {
        low = high;
        high *= 2;
    }
    constexpr int kHalvings = 60;
    for (int i = 0; i < kHalvings; ++i) {
        const double middle = (low + high) / 2;
        (rests(middle) ? high : low) = middle;
    }
    return {ratio, velocity, high};
}

double SpringTiming::at(double time) const {
    if (!(time > 0)) {
        return 0;
    }
    if (time >= 1) {
        return 1;
    }
    const double angle = swing_ * time;
    const double swung = angle > kNoSwing ? std::sin(angle) / swing_ : time;
    return 1 - std::exp(-damping_ * frequency_ * time) *
                   (std::cos(angle) + (damping_ * frequency_ - velocity_) * swung);
}

double SpringTiming::envelope(double time) const {
    // |sin(swing · time) / swing| is at most either.
    const double swung = swing_ * time > 1 ? 1 / swing_ : time;
    return std::exp(-damping_ * frequency_ * time) *
           (1 + std::abs(damping_ * frequency_ - velocity_) * swung);
}

}  // namespace velmoranth::desktop
