// Everything the program knows about the machine at one moment. Plain values: a frame is copied,
// never shared. What could not be read is absent or empty, never zero.
#pragma once

#include <optional>
#include <vector>

#include "frame/app_group.h"
#include "frame/battery_reading.h"
#include "frame/fan.h"
#include "frame/forgotten_item.h"
#include "frame/local_server.h"
#include "frame/memory_reading.h"
#include "frame/power_breakdown.h"
#include "frame/sleep_blocker.h"
#include "frame/thermal_state.h"

namespace embrix {

struct Frame {
  double date = 0;  // wall clock, seconds since 1970
  // Largest watts first. Groups of equal watts come in the order in which the process table first
  // names them.
  std::vector<AppGroup> groups;
  std::optional<BatteryReading> battery;  // absent without a battery service
  std::optional<double> temperature;      // hottest known die sensor, degrees Celsius
  ThermalState thermalState = ThermalState::nominal;
  std::optional<PowerBreakdown> breakdown;  // cores trimmed to the hardware's
  std::optional<double> gpuUtilization;     // 0 to 1 as read
  std::optional<MemoryReading> memory;
  std::vector<Fan> fans;                    // empty on a fanless machine
  std::vector<ForgottenItem> forgotten;     // of the last scan, at most 30 seconds old
  std::vector<LocalServer> servers;         // of the same scan
  std::vector<SleepBlocker> sleepBlockers;  // at most 10 seconds old

  bool operator==(const Frame&) const = default;
};

}  // namespace embrix
