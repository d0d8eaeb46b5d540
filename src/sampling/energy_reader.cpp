#include "sampling/energy_reader.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <utility>

namespace embrix {

namespace {

// Whether the channels have the CPU's counter, and it has not moved in them.
bool cpuStandsStill(const std::vector<EnergyChannel>& channels) {
  bool isThere = false;
  for (const EnergyChannel& channel : channels) {
    if (channel.name != "CPU Energy") continue;
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
    startOver(now);
    return std::nullopt;
  }

  const bool isStamped = interval->seconds && std::isfinite(*interval->seconds);
  const double seconds = std::max(isStamped ? *interval->seconds : now - *before, 0.0);
  // An interval with a stamp stands for itself: what came before it has its own time.
  if (isStamped) forgetPending();
  if (!isStamped || seconds > 0) {
    pending_.insert(pending_.end(), std::make_move_iterator(interval->channels.begin()),
                    std::make_move_iterator(interval->channels.end()));
    pendingSeconds_ += seconds;
  }

  const bool isSilent = !(pendingSeconds_ > 0) || (!isStamped && cpuStandsStill(pending_));
  if (isSilent && now - toldAt_ < kLongestSilence) return last_;
  last_.reset();
  if (pendingSeconds_ > 0) last_ = PowerBreakdown::parse(pending_, pendingSeconds_);
  startOver(now);
  return last_;
}

void EnergyReader::startOver(double now) {
  forgetPending();
  toldAt_ = now;
}

void EnergyReader::forgetPending() {
  pending_.clear();
  pendingSeconds_ = 0;
}

}  // namespace embrix
