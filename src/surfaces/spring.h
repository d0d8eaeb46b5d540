// The motion of every animation that springs: a mass that is pulled to its target and braked. The
// curve is a closed form, so it can be asked for any moment in any order. Seconds; values in the
// unit of what moves. Plain values; any thread.
#pragma once

namespace embrix {

struct Spring {
  double response = 0.5;  // seconds of one swing without a brake; at 0 there is no way at all
  double dampingFraction = 0.8;  // above 0; 1 is just enough not to swing over, more is slower

  // Told by how long it seems to last and by how much it swings over: 0 not at all, 1 for ever.
  static constexpr Spring ofDuration(double duration, double bounce) {
    return {duration, 1 - bounce};
  }

  bool operator==(const Spring&) const = default;
};

// One way of a spring to a target. Before its start it stands where it starts.
class SpringMotion {
 public:
  // `velocity` at the start, in units a second.
  SpringMotion(Spring spring, double from, double to, double velocity = 0);

  double valueAt(double seconds) const;
  double velocityAt(double seconds) const;

  double target() const { return target_; }

  // The time from which on the value stays within `tolerance` of the target, 0 when it does so from
  // the start. May be up to one swing later than the very first such time.
  double settlingTime(double tolerance) const;

 private:
  struct State {
    double offset = 0;  // from the target
    double velocity = 0;
  };

  State stateAt(double seconds) const;
  // Never below the distance from the target, and falling from `fallsFrom()` on.
  double envelopeAt(double seconds) const;
  double fallsFrom() const;

  double frequency_;  // radians a second without a brake; 0 where there is no way
  double damping_;
  double target_;
  double offset_;
  double velocity_;
};

}  // namespace embrix
