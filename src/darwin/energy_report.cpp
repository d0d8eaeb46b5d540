#include "darwin/energy_report.h"

#include <algorithm>
#include <limits>

#include "darwin/energy_channel_name.h"
#include "darwin/energy_channels.h"

namespace embrix {

namespace {

// Counters of one batch are written one after the other, not at one moment.
constexpr double kBatchSeconds = 0.05;

bool matters(const EnergyChannel& channel) {
  return channel.value >= 0 && (energyBlockOf(channel.name) || energyCoreOf(channel.name));
}

std::optional<double> secondsOf(const std::vector<StampedChannel>& channels,
                                double secondsPerTick) {
  double shortest = std::numeric_limits<double>::infinity();
  double longest = 0;
  for (const StampedChannel& stamped : channels) {
    if (!matters(stamped.channel)) continue;
    if (!stamped.before || !stamped.after || *stamped.after < *stamped.before) return std::nullopt;
    const std::uint64_t ticks = *stamped.after - *stamped.before;
    if (ticks == 0 && stamped.channel.value > 0) return std::nullopt;
    const double seconds = static_cast<double>(ticks) * secondsPerTick;
    shortest = std::min(shortest, seconds);
    longest = std::max(longest, seconds);
  }
  const bool isEmpty = shortest > longest;
  if (isEmpty || !(longest - shortest <= kBatchSeconds)) return std::nullopt;
  // Between a batch that was written and one that was not lies more than a rounding.
  if (shortest == 0 && longest > 0) return std::nullopt;
  return longest;
}

}  // namespace

EnergyInterval energyInterval(const std::vector<StampedChannel>& channels, double secondsPerTick) {
  EnergyInterval interval;
  interval.seconds = secondsOf(channels, secondsPerTick);
  std::vector<EnergyChannel> raw;
  raw.reserve(channels.size());
  for (const StampedChannel& stamped : channels) raw.push_back(stamped.channel);
  interval.channels = normalizedChannels(std::move(raw));
  return interval;
}

}  // namespace embrix
