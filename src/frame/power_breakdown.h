// The chip's power by block and by core, in watts.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "frame/energy_channel.h"

namespace embrix {

struct PowerBreakdown {
  struct Core {
    std::string name;  // "P0", "E3": the place in the sorted order
    bool isPerformance = false;
    double watts = 0;

    bool operator==(const Core&) const = default;
  };

  // What one channel draws, under its name.
  struct ChannelWatts {
    std::string_view name;
    double watts = 0;
  };

  double cpu = 0;
  double gpu = 0;
  double neuralEngine = 0;
  double memory = 0;
  double display = 0;
  std::vector<Core> cores;  // performance cores, then efficiency cores

  // All blocks at zero and no cores.
  static PowerBreakdown empty() { return {}; }

  // Watts from the energy that the channels gathered over so many seconds; empty() when that is not
  // above 0. Channels of one name count together.
  static PowerBreakdown parse(const std::vector<EnergyChannel>& channels, double seconds);

  // The two steps of it, for channels that did not gather over one time. The interval is above 0.
  static double watts(const EnergyChannel& channel, double seconds);
  static PowerBreakdown of(const std::vector<ChannelWatts>& channels);

  bool operator==(const PowerBreakdown&) const = default;
};

}  // namespace embrix
