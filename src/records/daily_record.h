// One day in the archive. A value that shares its parts with its copies.
#pragma once

#include <optional>
#include <string>

#include "base/shared_text.h"
#include "records/shared_map.h"

namespace embrix {

struct DailyRecord {
  std::string day;  // "2026-03-02"
  double wattHours = 0;
  SharedMap<double> appWattHours;  // by group key; the biggest of the day
  SharedMap<SharedText> appNames;  // of those groups only
  std::optional<int> health;       // of the battery, percent
  std::optional<int> cycles;
  std::optional<double> fullWh;  // watt-hours of a full charge

  bool operator==(const DailyRecord&) const = default;
};

}  // namespace embrix
