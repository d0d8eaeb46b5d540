#pragma once

#include "host/power_log_source.h"

namespace embrix {

// What the system's tool for power management prints of its log. Any thread that may wait.
class MacPowerLogSource final : public PowerLogSource {
 public:
  std::string read() override;
};

}  // namespace embrix
