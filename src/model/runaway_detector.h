// What makes an app a runaway: not a burst, but much power for minutes on end. Plain functions; any
// thread.
#pragma once

#include "model/alert_policy.h"
#include "records/history.h"

namespace embrix {

struct RunawayDetector {
  // Of the points of the window, so many must lie at or above the threshold: one in five may dip.
  static constexpr double kLeastShare = 0.8;

  // Whether the history reaches back over the whole window of `duration` seconds before `now`.
  // Without that there are no runaways, however high the power.
  static bool hasWholeWindow(const History& history, double now, double duration);

  // The groups that are runaways at `now`, told by walking the window. The model gets the same from
  // WindowCounts at each frame.
  static GroupKeys runaways(const History& history, double now, double thresholdWatts,
                            double duration);
};

}  // namespace embrix
