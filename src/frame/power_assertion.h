#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace embrix {

// One hold that a process has on the machine's sleep.
struct PowerAssertion {
  std::int32_t pid = 0;           // owner
  std::string processName;        // given by the system, else "pid " and the pid
  std::string type;               // empty when missing
  std::string name;               // the holder's own reason, empty when missing
  std::optional<double> started;  // seconds since 1970

  bool operator==(const PowerAssertion&) const = default;
};

}  // namespace embrix
