// What one frame leaves in the history. A value that shares its parts with its copies.
#pragma once

#include <optional>
#include <string_view>

#include "base/shared_text.h"
#include "records/shared_map.h"

namespace embrix {

struct HistoryPoint {
  double time = 0;                    // wall clock, seconds since 1970
  std::optional<double> systemWatts;  // the battery service's figure for the whole machine
  SharedMap<double> groupWatts;       // by group key; groups that draw next to nothing are left out
  std::optional<double> temperature;  // degrees Celsius
  double cpuPercent = 0;              // over all groups; 100 is one core
  std::optional<SharedText> label;    // who was responsible, as the verdict named it

  // 0 for a group that is not there.
  double watts(std::string_view key) const;

  // The larger of `systemWatts` (0 when absent) and the sum of `groupWatts`.
  double totalWatts() const;

  bool operator==(const HistoryPoint&) const = default;
};

}  // namespace embrix
