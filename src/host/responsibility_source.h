#pragma once

#include <cstdint>
#include <optional>

namespace embrix {

class ResponsibilitySource {
 public:
  virtual ~ResponsibilitySource() = default;

  // The pid as the platform answers, which can be below 1 when it knows none; absent where the
  // platform has no such notion. Sampling thread only.
  virtual std::optional<std::int32_t> responsiblePID(std::int32_t pid) = 0;
};

}  // namespace embrix
