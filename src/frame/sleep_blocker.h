#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace embrix {

// One process that keeps the system or the display from sleeping.
struct SleepBlocker {
  std::int32_t pid = 0;  // also the row's identity
  std::string processName;
  bool preventsSystemSleep = false;
  bool preventsDisplaySleep = false;
  std::vector<std::string> reasons;  // its own words, no empties, no repeats, first seen first
  std::optional<double> since;       // seconds since 1970; the earliest known

  bool operator==(const SleepBlocker&) const = default;
};

}  // namespace embrix
