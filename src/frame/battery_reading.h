#pragma once

#include <optional>

namespace embrix {

// What the battery and its telemetry tell. An absent field could not be read.
struct BatteryReading {
  std::optional<double> systemWatts;    // what the whole machine draws now
  std::optional<int> percent;           // state of charge, 0 to 100
  std::optional<int> minutesRemaining;  // to empty; absent while charging or on the adapter
  bool isCharging = false;
  bool externalConnected = false;    // on the power adapter
  std::optional<int> healthPercent;  // maximum against design capacity; can exceed 100
  std::optional<int> cycleCount;
  std::optional<double> remainingWh;  // watt-hours left
  std::optional<double> fullWh;       // watt-hours of a full charge

  bool operator==(const BatteryReading&) const = default;
};

}  // namespace embrix
