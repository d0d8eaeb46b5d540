#include "sampling/rate_calculator.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

namespace embrix {
namespace {

constexpr double kNanojoulesPerJoule = 1e9;
constexpr double kNanosecondsPerSecond = 1e9;

// The largest difference of two counters over an interval must still be a number, so that no rate
// can poison what is summed or smoothed from it.
bool canDivideBy(double interval) {
  constexpr double kLargestDifference = 18446744073709551616.0;  // 2^64
  return interval > 0 && std::isfinite(interval) && std::isfinite(kLargestDifference / interval);
}

double difference(std::uint64_t before, std::uint64_t after) {
  return static_cast<double>(after - before);
}

std::optional<ProcessRate> rateOf(const ProcessCounters& previous, const ProcessSample& current,
                                  double interval) {
  const bool isSameProcess = previous.startTime == current.startTime;
  const bool ranForwards = current.cpuNS >= previous.cpuNS && current.wakeups >= previous.wakeups;
  if (!isSameProcess || !ranForwards) return std::nullopt;
  double watts = 0;
  if (previous.energyNJ && current.energyNJ) {
    if (*current.energyNJ < *previous.energyNJ) return std::nullopt;
    watts = difference(*previous.energyNJ, *current.energyNJ) / kNanojoulesPerJoule / interval;
  }
  const double cpuSeconds = difference(previous.cpuNS, current.cpuNS) / kNanosecondsPerSecond;
  return ProcessRate{.pid = current.pid,
                     .watts = watts,
                     .cpuPercent = cpuSeconds / interval * 100,
                     .wakeupsPerSecond = difference(previous.wakeups, current.wakeups) / interval};
}

}  // namespace

void RateCalculator::rates(const PreviousSamples& previous,
                           const std::vector<ProcessSample>& current, double interval,
                           std::vector<std::optional<ProcessRate>>& result) {
  result.resize(current.size());
  if (!canDivideBy(interval)) {
    std::fill(result.begin(), result.end(), std::nullopt);
    return;
  }
  for (std::size_t i = 0; i < current.size(); ++i) {
    const ProcessCounters* before = previous.find(current[i].pid);
    result[i] = before == nullptr ? std::nullopt : rateOf(*before, current[i], interval);
  }
}

}  // namespace embrix
