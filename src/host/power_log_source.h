#pragma once

#include <string>

namespace embrix {

class PowerLogSource {
 public:
  virtual ~PowerLogSource() = default;

  // The system's log of sleep and wake, bytes as they come, oldest line first; empty when there is
  // none. Can take seconds: never called on the main or the sampling thread.
  virtual std::string read() = 0;
};

}  // namespace embrix
