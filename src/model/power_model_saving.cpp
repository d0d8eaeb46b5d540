// When the records go to disk, and what sleep does to them.

#include <cmath>
#include <utility>

#include "model/power_model.h"

namespace embrix {

namespace {

constexpr double kSecondsBetweenSaves = 30;

}  // namespace

void PowerModel::saveHistoryPeriodically() {
  framesSinceSave_ += 1;
  if (framesSinceSave_ * std::trunc(currentInterval()) < kSecondsBetweenSaves) return;
  if (saving_.isPending()) return;  // a slow disk; the next frame tries again
  framesSinceSave_ = 0;
  save();
}

void PowerModel::save() {
  Archive archive = *archive_;  // its days are shared, not copied
  archive.record(*ledger_, *frame_ ? (*frame_)->battery : std::nullopt);
  archive_ = std::move(archive);
  if (ports_.store.directory.empty()) return;  // nothing is kept, so nothing is copied
  saving_ = ports_.scheduler.background(
      WorkPriority::utility,
      [store = ports_.store, points = history_->snapshot(), ledger = *ledger_, archive = *archive_,
       discharge = *discharge_, baseline = *baseline_] {
        // What cannot be written is tried again with the next save.
        store.saveAll(points, ledger, archive, discharge, baseline);
      },
      [this] {
        if (std::exchange(mustSaveDischargeAgain_, false) && *discharge_) {
          ports_.store.saveDischarge(**discharge_);
        }
      });
}

void PowerModel::willSleep() {
  const Changes changes(*this);
  if (!isOnBattery() || !*discharge_) return;
  const BatteryReading& battery = *(*frame_)->battery;
  discharge_.change([&](std::optional<DischargeSession>& session) {
    session->sleepStart = {.time = ports_.scheduler.wallTime(),
                           .percent = battery.percent,
                           .remainingWh = battery.remainingWh};
  });
  // At once, on this thread: the machine may not come back before the battery is gone.
  ports_.store.saveDischarge(**discharge_);
  // A save that is under way may still put the session without its mark in place of this one.
  mustSaveDischargeAgain_ = saving_.isPending();
}

void PowerModel::didWake() {
  pendingWake_ = ports_.scheduler.wallTime();
  refreshOvernight(true);
}

bool PowerModel::isOnBattery() const {
  if (!*frame_ || !(*frame_)->battery) return false;
  return !(*frame_)->battery->isCharging && !(*frame_)->battery->externalConnected;
}

}  // namespace embrix
