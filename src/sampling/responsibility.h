// Asks the platform who is responsible for a process: the application that a helper works for even
// though it is not its child. Sampling thread only.
#pragma once

#include <cstdint>
#include <optional>

#include "host/responsibility_source.h"

namespace embrix {

class Responsibility {
 public:
  // `source` must outlive this.
  explicit Responsibility(ResponsibilitySource& source) : source_(&source) {}

  // The responsible pid, 1 or above; absent when the platform knows none.
  std::optional<std::int32_t> lookup(std::int32_t pid) const;

 private:
  ResponsibilitySource* source_;
};

}  // namespace embrix
