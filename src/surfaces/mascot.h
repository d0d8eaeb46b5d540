// The program's character, alive: what it remembers of its mood, of clicks and of the pointer, and
// how it looks at any moment after. It keeps no timer; whoever shows it asks for moments, and asks
// how long to wait until the next one is worth drawing.
//
// Times are seconds on one clock of the caller's; when it is put back, nothing lasts longer for it.
// Main thread only.
#pragma once

#include <optional>
#include <vector>

#include "surfaces/mascot_features.h"
#include "surfaces/mascot_pose.h"

namespace embrix {

class Mascot {
 public:
  using Mood = MascotMood;
  using FrozenState = MascotFrozenState;
  using Reaction = MascotReaction;
  using Features = MascotFeatures;
  using Pose = MascotPose;

  // What the figure's surroundings know at a moment.
  struct Surroundings {
    std::optional<double> idle;    // seconds since the user's last input; absent when unknown
    std::optional<Point> gaze;     // the pointer, from the figure's centre, in points
    std::optional<double> relief;  // when something was freed
    bool steaming = false;
  };

  // `seed` is added to every time, so that two figures do not blink together.
  explicit Mascot(Mood mood, double seed = 0) : mood_(mood), seed_(seed) {}

  Mood mood() const { return mood_; }
  void setMood(Mood mood, double now);

  // The pointer is over the figure, or has left it.
  void setHovering(bool hovering, double now);

  // A click: a giggle; within 1.2 seconds of the last one a wink; after another such a surprise.
  void tap(double now);
  // The last one, absent before the first click.
  std::optional<Reaction> reaction() const;

  Pose pose(double now, const Surroundings& surroundings) const;
  Features features(double now, const Surroundings& surroundings) const;

  // Seconds from `now` until the figure looks different enough to be drawn again: a display frame
  // while something quick is on, one slow frame or several for the breath alone, up to the next
  // blink for a figure that does not even breathe. Above 0. `scale` is points per unit: the smaller
  // the figure, the less of its breath is seen.
  double untilNextFrame(double now, const Surroundings& surroundings, double scale = 1) const;

  // Seconds until the next slow frame: those of all figures fall on the same moments, the
  // twentieths of a second, so that a window with several of them is drawn once for all. At most a
  // twentieth, at least a display frame; where the next such moment is nearer than that, a display
  // frame, and the figure is in step from then on.
  static double untilSlowFrame(double now);

 private:
  struct Reacting {
    Reaction reaction;
    double start;
  };

  // Seconds until the slow frame by which a breathing figure has moved enough to be drawn again.
  double untilMoved(double now, double scale) const;
  bool isQuick(double now, const Surroundings& surroundings) const;

  Mood mood_;
  double seed_;
  bool isHovering_ = false;
  double hoverStart_ = 0;
  std::optional<Mood> blendFrom_;
  double blendStart_ = 0;
  std::vector<double> taps_;
  std::optional<Reacting> reacting_;
};

}  // namespace embrix
