// The holds that processes have on the machine's sleep, one record each. Keeps no state.
// Sampling thread only.
#pragma once

#include <vector>

#include "frame/power_assertion.h"
#include "host/assertion_source.h"

namespace embrix {

class AssertionReader {
 public:
  // `source` must outlive the reader.
  explicit AssertionReader(AssertionSource& source) : source_(source) {}

  // Empty when unreadable. A hold with a malformed field is told with what it has; a start before
  // 1970 is one.
  std::vector<PowerAssertion> read();

 private:
  AssertionSource& source_;
};

}  // namespace embrix
