#pragma once

namespace embrix {

// The controls outside the program's windows that show its published state.
class ControlCenter {
 public:
  virtual ~ControlCenter() = default;

  // Asks the system to have every control read the published state again. Main thread only.
  virtual void reloadAllControls() = 0;
};

}  // namespace embrix
