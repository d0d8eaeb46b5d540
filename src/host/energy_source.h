// The chip's energy counters. Sampling thread only.
#pragma once

#include <optional>
#include <vector>

#include "frame/energy_channel.h"

namespace embrix {

struct EnergyInterval {
  std::vector<EnergyChannel> channels;  // energy over the interval, by channel
  // How long the interval of each channel was by the counters' own time stamps, in seconds: as many
  // as there are channels, 0 for one that was not written in between. Absent where there are no
  // stamps, and the time between the two samples stands for all of them.
  std::optional<std::vector<double>> seconds;

  bool operator==(const EnergyInterval&) const = default;
};

class EnergySource {
 public:
  virtual ~EnergySource() = default;

  // Takes a sample of the counters and keeps the one before it. False when none could be taken; the
  // samples kept so far then stand. A host without counters always answers false.
  virtual bool sample() = 0;

  // From the sample before the newest to the newest. Absent before two samples, and when no
  // difference could be made.
  virtual std::optional<EnergyInterval> interval() = 0;
};

}  // namespace embrix
