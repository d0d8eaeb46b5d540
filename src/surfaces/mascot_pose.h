// What varies with time in the mascot's drawing: breath, blink, shiver and the like. In units of
// the 120-unit drawing where lengths are meant. Plain values; any thread.
#pragma once

#include <optional>

#include "surfaces/geometry.h"
#include "surfaces/mascot_features.h"

namespace embrix {

struct MascotPose {
  double dy = 0;               // vertical shift
  double squash = 0;           // fraction by which the figure widens and flattens
  double shake = 0;            // horizontal shift
  double tilt = 0;             // degrees, clockwise
  double tuft = 0;             // swing of the tuft, degrees
  double eyes = 1;             // openness, 0 to 1
  double eyeScale = 1;         // size of the eyes against their own
  Point look;                  // how far the pupils move
  double brow = 0;             // lift of the brows
  std::optional<double> drip;  // phase of a drop of sweat, 0 to 1; absent without one
  double steam = 0;            // 0 or 1
  double time = 0;             // seconds, what it was made for

  // How a figure of that mood stands at that time when nothing happens to it.
  static MascotPose of(MascotMood mood, double time);

  // How far the point of the figure that moves the furthest has to go from this pose to the other:
  // the top of the body, the tip of the tuft, the brows or the drop. The eyes are left out.
  double distanceTo(const MascotPose& other) const;

  // When, after `time`, the eyes begin to close next, or are still closing or opening: then `time`.
  static double nextBlink(double time);

  bool operator==(const MascotPose&) const = default;
};

}  // namespace embrix
