// What the control outside the program's windows is told.

#include <cmath>

#include "model/power_model.h"

namespace embrix {

namespace {

constexpr double kSecondsBetweenReloads = 15;

}  // namespace

void PowerModel::publishControlState(const Verdict& verdict) {
  const ControlState state{.watts = std::round(totalWatts()),
                           .subject = verdict.subject,
                           .hot = loadLevel() != LoadLevel::calm,
                           .throttling = isThrottled()};
  if (state == lastControlState_) return;
  lastControlState_ = state;
  state.save(ports_.controlSuite);
  const double now = ports_.scheduler.uptime();
  if (now - lastControlReload_ < kSecondsBetweenReloads) return;
  lastControlReload_ = now;
  ports_.controls.reloadAllControls();
}

}  // namespace embrix
