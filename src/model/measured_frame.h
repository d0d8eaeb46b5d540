// The model's guard against figures that no machine can have: NaN, infinities, watts beyond all
// reason. A single one of them would stay in sums, records and files for good.
#pragma once

#include "frame/frame.h"

namespace embrix {

struct MeasuredFrame {
  // No machine that runs this draws a megawatt; sums of what is below stay finite.
  static constexpr double kMostWatts = 1e6;
  // Seconds since 1970: the end of the year 9999, the last whose day has a key of four digits.
  static constexpr double kLatestDate = 253402300799;

  // Makes absent what was not measured. Where a figure cannot be absent it becomes 0, and a group's
  // sum becomes that of its rows. A date that is none becomes `now`.
  static void keepOnly(Frame& frame, double now);
};

}  // namespace embrix
