// What was left running: rows, what is kept aside, and stopping.

#include <utility>

#include "model/battery_time.h"
#include "model/left_running.h"
#include "model/power_model.h"
#include "model/setting_keys.h"
#include "sampling/simulator_devices.h"

namespace embrix {

std::vector<ForgottenRow> PowerModel::forgottenRows() const {
  if (!*frame_) return {};
  return LeftRunning::rows(**frame_, *kept_,
                           [this](double watts) { return minutesGainedStopping(watts); });
}

std::vector<ForgottenItem> PowerModel::keptItems() const {
  std::vector<ForgottenItem> items;
  if (!*frame_) return items;
  for (const ForgottenItem& item : (*frame_)->forgotten) {
    if (kept_->contains(LeftRunning::keptKey(item))) items.push_back(item);
  }
  return items;
}

void PowerModel::keep(const ForgottenItem& item) {
  std::set<std::string> kept = *kept_;
  kept.insert(LeftRunning::keptKey(item));
  storeKept(std::move(kept));
}

void PowerModel::unkeep(const ForgottenItem& item) {
  std::set<std::string> kept = *kept_;
  kept.erase(LeftRunning::keptKey(item));
  storeKept(std::move(kept));
}

void PowerModel::storeKept(std::set<std::string> kept) {
  ports_.defaults.set(SettingKeys::kKeptForgotten,
                      std::vector<std::string>(kept.begin(), kept.end()));
  kept_ = std::move(kept);
}

void PowerModel::stop(const ForgottenRow& row) {
  const Changes changes(*this);
  shutDownOrQuit(row);
  lastFreed_ = Freed{.date = ports_.scheduler.wallTime(), .bytes = row.memoryBytes()};
}

void PowerModel::stopAllForgotten() {
  const Changes changes(*this);
  const auto rows = forgottenRows();
  for (const ForgottenRow& row : rows) shutDownOrQuit(row);
  lastFreed_ = Freed{.date = ports_.scheduler.wallTime(), .bytes = ForgottenRow::memoryBytes(rows)};
}

void PowerModel::shutDownOrQuit(const ForgottenRow& row) {
  if (!row.item.simulatorUDID) {
    for (const ProcessRow& process : row.processes) quit(process);
    return;
  }
  // Its processes belong to the launcher: it must go down cleanly, and signals would not do that.
  if (*isFixture_) {
    removeFromFixture(row.item.root.pid);
    return;
  }
  ports_.scheduler
      .background(
          WorkPriority::utility,
          [udid = *row.item.simulatorUDID, &commands = ports_.cleanup.commands] {
            SimulatorDevices::shutDown(udid, commands);
          },
          [] {})
      .detach();
}

std::optional<double> PowerModel::runtimeAtWatts(double watts) const {
  if (!*frame_ || !(*frame_)->battery) return std::nullopt;
  return BatteryTime::runtime(*(*frame_)->battery, totalWatts(), watts);
}

std::optional<double> PowerModel::minutesGainedStopping(double watts) const {
  if (!*frame_ || !(*frame_)->battery) return std::nullopt;
  return BatteryTime::gain(*(*frame_)->battery, totalWatts(), watts);
}

std::optional<double> PowerModel::meaningfulGainStopping(double watts) const {
  if (!*frame_ || !(*frame_)->battery) return std::nullopt;
  return BatteryTime::meaningfulGain(*(*frame_)->battery, totalWatts(), watts);
}

std::optional<double> PowerModel::unattributedWatts() const {
  if (!*frame_ || !(*frame_)->battery || !(*frame_)->battery->systemWatts) return std::nullopt;
  double apps = 0;
  for (const AppGroup& group : (*frame_)->groups) apps += group.watts;
  return std::max(totalWatts() - apps, 0.0);
}

}  // namespace embrix
