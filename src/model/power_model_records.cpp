// What a frame adds to the day, to the discharge and to what is normal here.

#include "model/power_model.h"
#include "records/discharge_step.h"

namespace embrix {

void PowerModel::recordLedger(const std::optional<Frame>& previous, const Verdict& verdict) {
  const Frame& frame = **frame_;
  const std::string day = DayLedger::dayKey(frame.date, ports_.calendar);
  const auto entries = DayLedger::entriesOf(frame.groups);
  DayLedger::Step step{.day = day,
                       .now = frame.date,
                       .elapsed = {},
                       .totalWatts = totalWatts(),
                       .warmWatts = thresholds().warm,
                       .entries = entries,
                       .label = {}};
  if (previous) step.elapsed = frame.date - previous->date;
  if (verdict.subject) step.label = *verdict.subject;
  // Whoever draws power while time passes changes the day; else it is looked at whole.
  const bool addsEnergy = step.elapsed.value_or(0) > 0 && !entries.empty();
  ledger_.change([&](DayLedger& ledger) {
    const auto before = addsEnergy ? std::nullopt : std::optional(ledger);
    ledger.record(step);
    return before != ledger;
  });
}

void PowerModel::recordDischarge(const std::optional<Frame>& previous) {
  discharge_.change([&](std::optional<DischargeSession>& session) {
    // What every change to a session touches.
    struct Mark {
      double start;
      std::optional<int> startPercent;
      double lastTime;
      double totalWattHours;
      bool isAsleep;
      bool operator==(const Mark&) const = default;
    };
    const auto markOf = [](const std::optional<DischargeSession>& marked) {
      return marked ? std::optional(Mark{marked->start, marked->startPercent, marked->lastTime,
                                         marked->totalWattHours, marked->sleepStart.has_value()})
                    : std::nullopt;
    };
    const auto before = markOf(session);
    DischargeState state{
        .session = std::move(session), .wasOnBattery = wasOnBattery_, .pendingWake = pendingWake_};
    embrix::recordDischarge(state, **frame_,
                            previous ? std::optional(previous->date) : std::nullopt, totalWatts());
    session = std::move(state.session);
    wasOnBattery_ = state.wasOnBattery;
    pendingWake_ = state.pendingWake;
    return markOf(session) != before;
  });
}

void PowerModel::addToBaseline() {
  baseline_.change([&](PowerBaseline& baseline) {
    const double before = baseline.lastAdded();
    baseline.add(totalWatts(), (*frame_)->date);
    return baseline.lastAdded() != before;
  });
}

}  // namespace embrix
