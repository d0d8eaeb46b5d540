// The battery's registry entry and the power sources that the system lists. Sampling thread only.
#pragma once

#include <optional>
#include <vector>

#include "host/property.h"

namespace embrix {

class BatterySource {
 public:
  virtual ~BatterySource() = default;

  // False on a machine without a battery service. Constant.
  virtual bool hasService() = 0;

  // Raw capacities, voltage, currents, telemetry, by their registry names: milliampere-hours,
  // millivolts, milliamperes (negative while discharging), milliwatts. Absent when unreadable.
  virtual std::optional<PropertyMap> registry() = 0;

  // A description for each power source, in the system's order.
  virtual std::vector<PropertyMap> powerSources() = 0;
};

}  // namespace embrix
