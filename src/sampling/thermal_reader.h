// The hottest known die sensor. Sensors are slow to ask, so a tick refreshes two of them and goes
// by the last word of the others. Sampling thread only.
#pragma once

#include <cstddef>
#include <optional>
#include <vector>

#include "host/temperature_source.h"

namespace embrix {

class ThermalReader {
 public:
  // Chooses the sensors whose names contain "tdie"; all of them when none does. `source` must
  // outlive the reader.
  explicit ThermalReader(TemperatureSource& source);

  // Degrees Celsius, 0 to 150. Absent without sensors and while none has given a valid reading.
  std::optional<double> cpuTemperature();

 private:
  bool shouldReadAll() const;
  void readNext();

  TemperatureSource& source_;
  std::vector<std::size_t> sensors_;           // places in the source's list
  std::vector<std::optional<double>> latest_;  // of each chosen sensor, the last valid reading
  std::size_t cursor_ = 0;                     // the chosen sensor to be read next
};

}  // namespace embrix
