// What never changes about the machine while the program runs, as the host finds it.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace embrix {

struct MachineFacts {
  std::optional<std::string> productName;  // "MacBook Pro (14-inch, M3, 2023)"
  std::optional<std::string> chip;         // "Apple M3"
  std::optional<int> performanceCores;
  std::optional<int> efficiencyCores;
  std::uint64_t memoryBytes = 0;
  std::string systemName;  // "macOS"
  int systemMajor = 0;
  int systemMinor = 0;
  int systemPatch = 0;               // 0 when the version has none
  std::optional<std::string> model;  // "Mac15,3"

  bool operator==(const MachineFacts&) const = default;
};

}  // namespace embrix
