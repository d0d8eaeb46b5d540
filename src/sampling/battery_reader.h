// The battery as one reading: raw capacities and power from its registry entry, charge and time
// from what the system tells users. Keeps no state. Sampling thread only.
#pragma once

#include <optional>

#include "frame/battery_reading.h"
#include "host/battery_source.h"

namespace embrix {

class BatteryReader {
 public:
  // `source` must outlive the reader.
  explicit BatteryReader(BatterySource& source) : source_(source) {}

  // Absent exactly when the machine has no battery service. A key that is missing, of another type
  // or out of range leaves the fields absent that are made of it.
  std::optional<BatteryReading> read();

 private:
  BatterySource& source_;
};

}  // namespace embrix
