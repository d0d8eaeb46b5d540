// Who holds the machine awake. Sampling thread only.
#pragma once

#include <cstdint>
#include <vector>

#include "host/property.h"

namespace embrix {

struct ProcessAssertions {
  std::int32_t pid = 0;
  // Keys: "Process Name", "AssertType", "AssertName" (texts), "AssertStartWhen" (date).
  std::vector<PropertyMap> assertions;

  bool operator==(const ProcessAssertions&) const = default;
};

class AssertionSource {
 public:
  virtual ~AssertionSource() = default;

  // Empty when unreadable. In no particular order.
  virtual std::vector<ProcessAssertions> read() = 0;
};

}  // namespace embrix
