#pragma once

#include "frame/thermal_state.h"

namespace embrix {

class ThermalStateSource {
 public:
  virtual ~ThermalStateSource() = default;

  // `nominal` where the system does not tell. Sampling thread only.
  virtual ThermalState read() = 0;
};

}  // namespace embrix
