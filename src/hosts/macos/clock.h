#pragma once

#include "host/clock.h"

namespace embrix {

// The system's own clocks. Uptime stands still while the machine is suspended, as the counters of
// processes do. Any thread.
class MacClock final : public Clock {
 public:
  double uptime() override;
  double wallTime() override;
  void sleep(double seconds) override;
};

// Seconds since some moment before the program started, those that the machine was suspended among
// them. Any thread.
double continuousSeconds();

// Nanoseconds in a machine time unit, the unit of the kernel's counters and time stamps.
double machineTimeUnitNS();

}  // namespace embrix
