// How a spring gets a property to its new value: a body on a damped spring, drawn from the old
// value (0) to the new one (1), where it has come to rest when the animation's time is over.
//     SpringTiming::create(0.5, 0, 0.3).at(0.25)  // a share of the way; may be more than 1
#pragma once

namespace velmoranth::desktop {

class SpringTiming {
  public:
    // `damping` is the ratio to the critical one: below 1 the body overshoots, by
    // exp(-damping · pi / sqrt(1 - damping²)) of the way when it starts at rest; from 1 on it does
    // not. `initialVelocity` is in whole ways a second, `duration` in seconds. Numbers out of
    // bounds are brought into them; NaN is damping 1, velocity 0.
    //
    // The platform is told no stiffness, only when the movement is to be over. Ours is the one at
    // which body and swing are within a thousandth of the way from rest at the duration: what
    // the platform looks like, but its own rule is not published.
    [[nodiscard]] static SpringTiming create(double damping, double initialVelocity,
                                             double duration);

    // The share of the way at a share of the time: 0 up to time 0, 1 from time 1 on.
    [[nodiscard]] double at(double time) const;

    // How far the body may be from rest at a share of the time, whatever its swing.
    [[nodiscard]] double envelope(double time) const;

  private:
    SpringTiming(double damping, double velocity, double frequency);

    double damping_;
    double velocity_;   // whole ways a duration
    double frequency_;  // undamped; radians a duration
    double swing_;      // of the damped body, 0 at damping 1; radians a duration
};

}  // namespace velmoranth::desktop
