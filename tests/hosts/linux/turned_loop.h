// A main thread's loop that a test turns.
#pragma once

#include <systemd/sd-event.h>

#include "hosts/linux/clock.h"
#include "hosts/linux/event_loop.h"

namespace embrix {

// Turns the loop until something is so, which may be another thread's doing. False when it never
// is.
template <typename Condition>
bool turnUntil(LinuxEventLoop& loop, Condition isSo) {
  constexpr double kNever = 60;           // seconds
  constexpr std::uint64_t kLook = 20000;  // microseconds
  LinuxClock clock;
  const double giveUp = clock.uptime() + kNever;
  while (!isSo()) {
    if (clock.uptime() > giveUp || sd_event_run(loop.event(), kLook) < 0) return false;
  }
  return true;
}

}  // namespace embrix
