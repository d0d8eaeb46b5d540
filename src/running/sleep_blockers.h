// Who keeps the machine or its display awake, and why, out of all the holds on its sleep. A rule
// over plain records. Any thread.
#pragma once

#include <vector>

#include "frame/power_assertion.h"
#include "frame/sleep_blocker.h"

namespace embrix {

struct SleepBlockers {
  // One row for each process that keeps the system or the display from sleeping, system services
  // that the user has no say over left out. Longest held first, rows of unknown age last, rows of
  // equal age by ascending pid.
  static std::vector<SleepBlocker> blockers(const std::vector<PowerAssertion>& assertions);
};

}  // namespace embrix
