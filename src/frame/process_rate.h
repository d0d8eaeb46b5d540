// The unsmoothed rates of one process between two samples.
#pragma once

#include <cstdint>

namespace embrix {

struct ProcessRate {
  std::int32_t pid = 0;
  double watts = 0;       // of the energy counter alone, no GPU share
  double cpuPercent = 0;  // 100 is one core fully busy
  double wakeupsPerSecond = 0;

  bool operator==(const ProcessRate&) const = default;
};

}  // namespace embrix
