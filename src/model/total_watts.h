#pragma once

#include <algorithm>

#include "frame/frame.h"

namespace embrix {

// What the whole machine draws, as every surface and record shows it: what the battery's telemetry
// says, but never less than the apps alone add up to.
inline double totalWatts(const Frame& frame) {
  double sum = 0;
  for (const AppGroup& group : frame.groups) sum += group.watts;
  const double telemetry = frame.battery ? frame.battery->systemWatts.value_or(0) : 0;
  return std::max(sum, telemetry);
}

}  // namespace embrix
