// Calm, restore and terminate on a Mac. Calm is the kernel's own background band, in which a
// process runs on the efficiency cores alone; whoever may put a process there may take it out
// again. What a process did to its own band is its own matter and stays: the kernel keeps the two
// apart. One that a killed run left in the background comes out when it is calmed and restored.
//
// The system names a process by its pid alone, so its start time is looked at right before each
// call.
#pragma once

#include "host/process_control.h"

namespace embrix {

class MacProcessControl final : public ProcessControl {
 public:
  int calm(const ProcessIdentity& process) override;
  int restore(const ProcessIdentity& process) override;
  int terminate(const ProcessIdentity& process) override;
};

}  // namespace embrix
