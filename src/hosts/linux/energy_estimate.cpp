#include "hosts/linux/energy_estimate.h"

#include <algorithm>

namespace embrix {

namespace {

// On a quiet machine the package draws watts that no process asked for; dividing them by next to no
// busy time would make every process a furnace. Half a core's worth of work is the least that the
// package's power is divided by, and no core is taken to draw more than a desktop's at full boost.
constexpr double kLeastBusyCores = 0.5;
constexpr double kLeastWatts = 0.5;
constexpr double kMostWatts = 20.0;

}  // namespace

void EnergyEstimate::update(double uptime, std::optional<std::uint64_t> packageMicrojoules,
                            double busySeconds) {
  if (!packageMicrojoules) return;
  const Reading now{uptime, *packageMicrojoules, busySeconds};
  if (previous_ && now.uptime > previous_->uptime && now.microjoules > previous_->microjoules &&
      now.busySeconds >= previous_->busySeconds) {
    const double seconds = now.uptime - previous_->uptime;
    const double joules = static_cast<double>(now.microjoules - previous_->microjoules) / 1e6;
    const double busyCores = (now.busySeconds - previous_->busySeconds) / seconds;
    watts_ = std::clamp(joules / seconds / std::max(busyCores, kLeastBusyCores), kLeastWatts,
                        kMostWatts);
  }
  previous_ = now;
}

}  // namespace embrix
