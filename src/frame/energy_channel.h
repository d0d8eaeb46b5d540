#pragma once

#include <cstdint>
#include <string>

namespace embrix {

// One reading of the chip's energy counters over one interval.
struct EnergyChannel {
  std::string name;        // such as "CPU Energy"
  std::string unit;        // "nJ", "uJ", "µJ", "mJ" or "J"; any other counts as no energy
  std::int64_t value = 0;  // in that unit, over the interval

  bool operator==(const EnergyChannel&) const = default;
};

}  // namespace embrix
