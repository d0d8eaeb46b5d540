#pragma once

#include <optional>

namespace embrix {

// When it is on a replayed machine.
struct ReplayedMoment {
  double uptime = 0;    // seconds, as last told
  double wallTime = 0;  // seconds since 1970, as last told
  // What the next tick will tell first; absent after the last one, and when it tells none.
  std::optional<double> nextUptime;
};

}  // namespace embrix
