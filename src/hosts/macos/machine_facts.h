#pragma once

#include "host/machine_facts.h"

namespace embrix {

// By the device tree, the kernel's named values and the system's version. Read once at the start.
MachineFacts macMachineFacts();

}  // namespace embrix
