#include "darwin/energy_report.h"

#include <utility>

#include "darwin/energy_channels.h"

namespace embrix {

namespace {

// Between the two writings; absent when the stamps do not say.
std::optional<double> secondsOf(const StampedChannel& stamped, double secondsPerTick) {
  if (!stamped.before || !stamped.after || *stamped.after < *stamped.before) return std::nullopt;
  const std::uint64_t ticks = *stamped.after - *stamped.before;
  if (ticks == 0 && stamped.channel.value > 0) return std::nullopt;
  return static_cast<double>(ticks) * secondsPerTick;
}

}  // namespace

EnergyInterval energyInterval(const std::vector<StampedChannel>& channels, double secondsPerTick) {
  std::vector<EnergyChannel> raw;
  raw.reserve(channels.size());
  for (const StampedChannel& stamped : channels) raw.push_back(stamped.channel);
  EnergyInterval interval;
  std::vector<double> seconds;
  bool isStamped = true;
  for (NormalizedChannel& each : normalizedWithSources(raw)) {
    const auto own = secondsOf(channels[each.source], secondsPerTick);
    isStamped = isStamped && own;
    seconds.push_back(own.value_or(0));
    interval.channels.push_back(std::move(each.channel));
  }
  if (isStamped && !seconds.empty()) interval.seconds = std::move(seconds);
  return interval;
}

}  // namespace embrix
