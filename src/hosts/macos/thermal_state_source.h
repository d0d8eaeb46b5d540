#pragma once

#include "host/thermal_state_source.h"

namespace embrix {

// The thermal state that the system tells every process. Sampling thread only.
class MacThermalStateSource final : public ThermalStateSource {
 public:
  ThermalState read() override;
};

}  // namespace embrix
