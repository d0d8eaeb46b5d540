#include "model/battery_time.h"

#include <algorithm>

namespace embrix {

namespace {

constexpr double kLeastWatts = 1;  // below that an estimate runs away
constexpr double kMinutesInHour = 60;

constexpr double kLeastWattsLeft = 3;
constexpr double kLeastGain = 1;   // minutes
constexpr double kMostGain = 300;  // minutes

std::optional<double> minutesOf(std::optional<double> wattHours, double watts) {
  if (!wattHours) return std::nullopt;
  return *wattHours > 0 ? *wattHours / watts * kMinutesInHour : 0;
}

}  // namespace

std::optional<double> BatteryTime::runtime(const BatteryReading& battery, double presentWatts,
                                           double watts) {
  if (!(presentWatts > 0)) return std::nullopt;
  const double drawn = std::max(kLeastWatts, watts);
  if (battery.isCharging || battery.externalConnected) return minutesOf(battery.fullWh, drawn);
  // The system's own estimate knows more than the charge alone.
  if (battery.minutesRemaining) return presentWatts * *battery.minutesRemaining / drawn;
  return minutesOf(battery.remainingWh, drawn);
}

std::optional<double> BatteryTime::gain(const BatteryReading& battery, double presentWatts,
                                        double saved) {
  if (!(saved > 0)) return std::nullopt;
  const auto before = runtime(battery, presentWatts, presentWatts);
  const auto after = runtime(battery, presentWatts, presentWatts - saved);
  if (!before || !after) return std::nullopt;
  return std::max(*after - *before, 0.0);
}

std::optional<double> BatteryTime::meaningfulGain(const BatteryReading& battery,
                                                  double presentWatts, double saved) {
  if (presentWatts - saved < kLeastWattsLeft) return std::nullopt;
  const auto minutes = gain(battery, presentWatts, saved);
  const bool isMeaningful = minutes && *minutes >= kLeastGain && *minutes <= kMostGain;
  return isMeaningful ? minutes : std::nullopt;
}

}  // namespace embrix
