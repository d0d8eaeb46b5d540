#include "sampling/published_watts.h"

#include <algorithm>
#include <cstddef>
#include <utility>

namespace embrix {

std::optional<PowerBreakdown> PublishedWatts::add(const std::vector<EnergyChannel>& channels,
                                                  const std::vector<double>& seconds,
                                                  double uptime) {
  next_.clear();
  std::vector<PowerBreakdown::ChannelWatts> watts;
  watts.reserve(channels.size());
  bool isCPUKnown = true;
  for (std::size_t i = 0; i < channels.size(); ++i) {
    const EnergyChannel& channel = channels[i];
    const auto repeat = static_cast<int>(
        std::count_if(channels.begin(), channels.begin() + static_cast<std::ptrdiff_t>(i),
                      [&](const EnergyChannel& other) { return other.name == channel.name; }));
    const Figure* known = standing(channel.name, repeat, uptime);
    if (seconds[i] > 0) {
      next_.push_back({.name = channel.name,
                       .repeat = repeat,
                       .watts = PowerBreakdown::watts(channel, seconds[i]),
                       .toldAt = uptime});
    } else if (known != nullptr) {
      next_.push_back(*known);
    } else {
      isCPUKnown = isCPUKnown && channel.name != "CPU Energy";
      watts.push_back({channel.name, 0});
      continue;
    }
    watts.push_back({channel.name, next_.back().watts});
  }
  std::swap(figures_, next_);
  return isCPUKnown ? std::optional(PowerBreakdown::of(watts)) : std::nullopt;
}

// Null when there is none, or none that still stands.
const PublishedWatts::Figure* PublishedWatts::standing(std::string_view name, int repeat,
                                                       double uptime) const {
  const auto figure = std::find_if(figures_.begin(), figures_.end(), [&](const Figure& each) {
    return each.repeat == repeat && each.name == name;
  });
  if (figure == figures_.end() || uptime - figure->toldAt >= longestSilence_) return nullptr;
  return &*figure;
}

}  // namespace embrix
