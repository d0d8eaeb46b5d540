// The controls in the system's Control Centre. The call that reloads them exists in another
// language alone: whoever packs the application links it under the name of the hook. Without it
// nothing happens.
#pragma once

#include "host/control_center.h"

extern "C" {
// Asks the system to have every control of the application read its state again.
void embrix_reload_all_controls(void) __attribute__((weak_import));
}

namespace embrix {

class MacControlCenter final : public ControlCenter {
 public:
  void reloadAllControls() override {
    if (embrix_reload_all_controls != nullptr) embrix_reload_all_controls();
  }
};

}  // namespace embrix
