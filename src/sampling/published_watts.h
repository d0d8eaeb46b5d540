// The chip's watts from counters that tell when they were last written. Each channel's energy is
// divided by its own interval, and in a tick in which it was not written its last figure stands:
// neither a batch that is due in the next tick nor two batches in one make a difference.
// Sampling thread only.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "frame/energy_channel.h"
#include "frame/power_breakdown.h"

namespace embrix {

class PublishedWatts {
 public:
  // `longestSilence`: seconds for which the figure of a channel that is not written can stand.
  explicit PublishedWatts(double longestSilence) : longestSilence_(longestSilence) {}

  // One tick: channels, the seconds of each (as many; 0 or less when it was not written), and the
  // uptime. Absent while the CPU's counter is silent and no figure of it stands: it cannot be 0
  // while the CPU runs this program. Any other channel that is silent for so long draws nothing.
  std::optional<PowerBreakdown> add(const std::vector<EnergyChannel>& channels,
                                    const std::vector<double>& seconds, double uptime);

  void forget() { figures_.clear(); }

 private:
  struct Figure {
    std::string name;
    int repeat = 0;  // how many channels of that name come before this one
    double watts = 0;
    double toldAt = 0;  // uptime
  };

  const Figure* standing(std::string_view name, int repeat, double uptime) const;

  double longestSilence_;
  std::vector<Figure> figures_;  // of the newest tick, those that were told at some time
  std::vector<Figure> next_;     // storage, used again
};

}  // namespace embrix
