#pragma once

#include "host/clock.h"

namespace embrix {

// The machine's own clocks; uptime counts the time that it was suspended. Any thread.
class LinuxClock final : public Clock {
 public:
  double uptime() override;
  double wallTime() override;
  void sleep(double seconds) override;
};

// Seconds since the machine started, without the time that it was suspended.
double awakeSeconds();

}  // namespace embrix
