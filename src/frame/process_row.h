// One process as a frame shows it.
#pragma once

#include <cstdint>
#include <optional>

#include "base/shared_text.h"

namespace embrix {

struct ProcessRow {
  SharedText id;  // as in ProcessSample; two lives of one pid within a second share it
  std::int32_t pid = 0;
  std::uint32_t uid = 0;  // effective user
  SharedText name;
  std::optional<SharedText> path;
  double watts = 0;               // smoothed; contains gpuWatts
  double cpuPercent = 0;          // smoothed; 100 is one core
  double wakeupsPerSecond = 0;    // smoothed
  std::uint64_t memoryBytes = 0;  // footprint of the latest sample
  double gpuWatts = 0;            // the smoothed GPU share alone

  bool operator==(const ProcessRow&) const = default;
};

}  // namespace embrix
