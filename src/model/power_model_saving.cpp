// When the records go to disk, and what sleep does to them.

#include <cmath>
#include <memory>
#include <mutex>
#include <optional>
#include <utility>

#include "model/power_model.h"

namespace embrix {

namespace {

constexpr double kSecondsBetweenSaves = 30;

}  // namespace

// What a save in the background and the main thread tell each other.
struct PowerModel::SaveTurn {
  std::mutex isSaving;
  bool hasNewerSession = false;  // the one on the disk is newer than the save's; by `isSaving`
};

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
  saveTurn_ = std::make_shared<SaveTurn>();
  saving_ = ports_.scheduler.background(
      WorkPriority::utility,
      [turn = saveTurn_, store = ports_.store, points = history_->snapshot(), ledger = *ledger_,
       archive = *archive_, discharge = *discharge_, baseline = *baseline_] {
        const std::lock_guard lock(turn->isSaving);
        // What cannot be written is tried again with the next save.
        store.saveAll(points, ledger, archive,
                      turn->hasNewerSession ? std::optional<DischargeSession>() : discharge,
                      baseline);
      },
      [] {});
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
  // At once, on this thread: the machine may not come back before the battery is gone. After a save
  // that is under way, and never undone by one that is still to come.
  std::unique_lock<std::mutex> lock;
  if (saveTurn_) {
    lock = std::unique_lock(saveTurn_->isSaving);
    saveTurn_->hasNewerSession = true;
  }
  ports_.store.saveDischarge(**discharge_);
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
