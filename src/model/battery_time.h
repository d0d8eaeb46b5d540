// How long a battery lasts at a given power. Minutes; watts of the whole machine. Plain functions;
// any thread.
#pragma once

#include <optional>

#include "frame/battery_reading.h"

namespace embrix {

struct BatteryTime {
  // At `watts`, of a machine that draws `presentWatts` now. On power, how long a full battery would
  // last. Absent when the battery does not tell enough, or nothing is drawn now.
  static std::optional<double> runtime(const BatteryReading& battery, double presentWatts,
                                       double watts);

  // What it gains when `saved` of the present watts are no longer drawn; never below 0. Absent when
  // there is nothing to save.
  static std::optional<double> gain(const BatteryReading& battery, double presentWatts,
                                    double saved);

  // The same where it can be promised: from a minute to five hours, with enough power left for an
  // estimate to mean something.
  static std::optional<double> meaningfulGain(const BatteryReading& battery, double presentWatts,
                                              double saved);
};

}  // namespace embrix
