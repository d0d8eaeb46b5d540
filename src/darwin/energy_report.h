// What two samples of the chip's energy counters say together: from raw channels and their time
// stamps to an interval with names that are known. Any thread.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "frame/energy_channel.h"
#include "host/energy_source.h"

namespace embrix {

struct StampedChannel {
  EnergyChannel channel;  // as the chip names it; its value is the difference of the two samples
  // When the counter was last written, at the earlier and at the later sample, in machine time
  // units; absent where that is unknown.
  std::optional<std::uint64_t> before;
  std::optional<std::uint64_t> after;

  bool operator==(const StampedChannel&) const = default;
};

// `seconds` of a channel is the time between the two writings that the samples saw. It is absent
// for all when one of them has no stamps, or stamps that run backwards, and when a counter moved
// whose stamp did not, for such stamps tell something else. `secondsPerTick` is the length of a
// machine time unit.
EnergyInterval energyInterval(const std::vector<StampedChannel>& channels, double secondsPerTick);

}  // namespace embrix
