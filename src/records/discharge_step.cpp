#include "records/discharge_step.h"

#include <utility>

namespace embrix {

bool beginsDischarge(const DischargeState& state, double now, std::optional<int> percent) {
  if (!state.session) return true;
  if (state.wasOnBattery) return !*state.wasOnBattery;
  constexpr int kFull = 100;
  const bool isForgotten = now - state.session->lastTime >= kForgottenSession;
  // More charge than at the start: it was on power while the program was not running.
  const bool hasCharged = state.session->startPercent.value_or(kFull) < percent.value_or(0);
  return isForgotten || hasCharged;
}

void recordDischarge(DischargeState& state, const Frame& frame, std::optional<double> previousDate,
                     double totalWatts) {
  if (!frame.battery) return;
  const BatteryReading& battery = *frame.battery;
  const double now = frame.date;
  if (const auto woke = std::exchange(state.pendingWake, std::nullopt); woke && state.session) {
    state.session->didWake(*woke, battery.percent, battery.remainingWh);
  }
  if (battery.isCharging || battery.externalConnected) {
    state.wasOnBattery = false;
    return;
  }
  if (beginsDischarge(state, now, battery.percent)) {
    state.session = DischargeSession::begun(now, battery.percent);
  }
  state.wasOnBattery = true;
  if (!previousDate) return;
  state.session->record(now, totalWatts, DischargeSession::entriesOf(frame.groups),
                        now - *previousDate);
}

}  // namespace embrix
