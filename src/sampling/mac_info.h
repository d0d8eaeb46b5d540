// What never changes about the machine, with a word for each thing that could not be read. Made
// once at the start; a plain value from then on.
#pragma once

#include <string>

#include "host/machine_facts.h"

namespace embrix {

struct MacInfo {
  std::string name = "Mac";            // "MacBook Pro (14-inch, M3, 2023)"
  std::string chip = "Apple silicon";  // "Apple M3"
  int performanceCores = 0;            // 0 when unknown
  int efficiencyCores = 0;             // 0 when unknown
  int memoryGB = 0;                    // whole units of 2^30 bytes
  std::string osVersion;               // "macOS 15.3", "macOS 15.3.1"
  std::string model;                   // "Mac15,3"; empty when unknown

  static MacInfo from(const MachineFacts& facts);

  // The name without its parentheses, but with the size of the screen: "MacBook Pro 14-inch",
  // "Mac mini".
  std::string shortName() const;

  bool operator==(const MacInfo&) const = default;
};

}  // namespace embrix
