#include "sampling/energy_reader.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <iterator>
#include <utility>

namespace embrix {

namespace {

// Within this time a CPU uses more than a counter can miss, in seconds.
constexpr double kTimeToUseEnergy = 0.5;

bool isCPU(const EnergyChannel& channel) {
  return channel.name == "CPU Energy";
}

// Whether the channels have the CPU's counter, and it has not moved in them.
bool cpuStandsStill(const std::vector<EnergyChannel>& channels) {
  bool isThere = false;
  for (const EnergyChannel& channel : channels) {
    if (!isCPU(channel)) continue;
    if (channel.value != 0) return false;
    isThere = true;
  }
  return isThere;
}

}  // namespace

std::optional<PowerBreakdown> EnergyReader::read() {
  if (!source_.sample()) return std::nullopt;
  // After the sample: the time it takes belongs to the interval that it ends.
  const double now = clock_.uptime();
  const std::optional<double> before = std::exchange(previous_, now);
  auto interval = before ? source_.interval() : std::nullopt;
  if (!interval) {
    // The energy up to here is known to nobody. The next interval begins at this sample.
    last_.reset();
    published_.forget();
    startOver(now);
    return std::nullopt;
  }
  if (!hasStamps(*interval)) return byClock(std::move(interval->channels), now - *before, now);
  // What came before an interval with stamps has its own time.
  startOver(now);
  last_ = published_.add(interval->channels, *interval->seconds, now);
  return last_;
}

bool EnergyReader::hasStamps(const EnergyInterval& interval) {
  const auto& seconds = interval.seconds;
  if (!isStamped_ || !seconds || seconds->size() != interval.channels.size()) return false;
  const auto isTime = [](double length) { return std::isfinite(length); };
  if (!std::all_of(seconds->begin(), seconds->end(), isTime)) return false;
  if (!cpuStandsStill(interval.channels)) return true;
  for (std::size_t i = 0; i < seconds->size(); ++i) {
    const bool hasMoved = (*seconds)[i] > kTimeToUseEnergy;
    if (hasMoved && isCPU(interval.channels[i])) isStamped_ = false;
  }
  return isStamped_;
}

std::optional<PowerBreakdown> EnergyReader::byClock(std::vector<EnergyChannel> channels,
                                                    double seconds, double now) {
  pending_.insert(pending_.end(), std::make_move_iterator(channels.begin()),
                  std::make_move_iterator(channels.end()));
  pendingSeconds_ += std::max(seconds, 0.0);
  const bool isSilent = !(pendingSeconds_ > 0) || cpuStandsStill(pending_);
  if (isSilent && now - toldAt_ < kLongestSilence) return last_;
  last_.reset();
  if (pendingSeconds_ > 0) last_ = PowerBreakdown::parse(pending_, pendingSeconds_);
  startOver(now);
  return last_;
}

void EnergyReader::startOver(double now) {
  pending_.clear();
  pendingSeconds_ = 0;
  toldAt_ = now;
}

}  // namespace embrix
