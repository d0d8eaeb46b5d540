// The graphics processors and who uses them. Sampling thread only.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "host/property.h"

namespace embrix {

// One connection of a process to a graphics processor.
struct GpuClient {
  std::optional<std::string> creator;  // reads like "pid 123, Safari"
  // Time used so far in each of the client's contexts, in units of the driver; a context without
  // a number is absent. No list at all when the driver tells none.
  std::optional<std::vector<std::optional<std::uint64_t>>> accumulatedTimes;

  bool operator==(const GpuClient&) const = default;
};

class GpuSource {
 public:
  virtual ~GpuSource() = default;

  // The first graphics processor's statistics by their registry names; absent without one.
  virtual std::optional<PropertyMap> performanceStatistics() = 0;

  // The clients of all graphics processors.
  virtual std::vector<GpuClient> clients() = 0;
};

}  // namespace embrix
