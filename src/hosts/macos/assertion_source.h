// The system's table of power assertions. Sampling thread only.
#pragma once

#include <vector>

#include "host/assertion_source.h"

namespace embrix {

class MacAssertionSource final : public AssertionSource {
 public:
  // Empty, too, when the table is not of the form that it should have.
  std::vector<ProcessAssertions> read() override;
};

}  // namespace embrix
