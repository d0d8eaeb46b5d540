#include "model/power_model.h"

#include <algorithm>
#include <utility>

#include "model/setting_keys.h"
#include "model/total_watts.h"
#include "records/downsampled.h"

namespace embrix {

namespace {

constexpr double kAverageSeconds = 600;

std::set<std::string> keptIn(const Settings& defaults) {
  const auto keys = defaults.stringsFor(SettingKeys::kKeptForgotten);
  return keys ? std::set<std::string>(keys->begin(), keys->end()) : std::set<std::string>();
}

}  // namespace

PowerModel::PowerModel(PowerModelPorts ports)
    : ports_(std::move(ports)),
      ledger_(DayLedger::fresh(DayLedger::dayKey(ports_.scheduler.wallTime(), ports_.calendar))),
      cleanup_(ports_.cleanup, ports_.user.homeDirectory, ports_.scheduler),
      calmRules_(CalmRule::decode(ports_.defaults.dataFor(SettingKeys::kCalmRules).value_or(""))),
      kept_(keptIn(ports_.defaults)),
      notifications_(ports_.notifier),
      tenMinutes_(kAverageSeconds) {}

PowerModel::~PowerModel() {
  if (shared_ == this) shared_ = nullptr;
}

PowerModel* PowerModel::shared() {
  return shared_;
}

template <typename Visit>
void PowerModel::forEachObserved(Visit visit) {
  visit(frame_);
  visit(history_);
  visit(tenMinuteAverages_);
  visit(runaways_);
  visit(groupNames_);
  visit(calmed_);
  visit(ledger_);
  visit(archive_);
  visit(overnight_);
  visit(discharge_);
  visit(lastFreed_);
  visit(calmRules_);
  visit(autoCalmed_);
  visit(kept_);
  visit(visibleSurfaces_);
  visit(dashboardSection_);
  visit(isFixture_);
  visit(baseline_);
}

PowerModel::Changes::Changes(PowerModel& model) : model_(model) {
  if (model_.openChanges_++ == 0) model_.forEachObserved([](auto& field) { field.hold(); });
}

PowerModel::Changes::~Changes() {
  if (--model_.openChanges_ == 0) model_.forEachObserved([](auto& field) { field.release(); });
}

double PowerModel::totalWatts() const {
  return *frame_ ? embrix::totalWatts(**frame_) : 0;
}

const AppGroup* PowerModel::groupForPID(std::int32_t pid) const {
  if (!*frame_) return nullptr;
  for (const AppGroup& group : (*frame_)->groups) {
    const auto& rows = group.processes;
    if (std::any_of(rows.begin(), rows.end(), [&](const auto& row) { return row.pid == pid; })) {
      return &group;
    }
  }
  return nullptr;
}

std::vector<double> PowerModel::seriesFor(std::string_view key, double seconds, int points) const {
  std::vector<double> watts;
  for (const HistoryPoint& point : history_->window(seconds, ports_.scheduler.wallTime())) {
    watts.push_back(point.watts(key));
  }
  return downsampled(watts, points);
}

std::optional<int> PowerModel::percentUsedSinceUnplug() const {
  if (!*discharge_ || !*frame_ || !(*frame_)->battery) return std::nullopt;
  return (*discharge_)->percentUsed((*frame_)->battery->percent);
}

void PowerModel::surfaceAppeared() {
  visibleSurfaces_ = *visibleSurfaces_ + 1;
}

void PowerModel::surfaceDisappeared() {
  visibleSurfaces_ = std::max(*visibleSurfaces_ - 1, 0);
}

void PowerModel::openConsole() {
  if (openDashboard_) openDashboard_(DashboardSection::overview);
}

}  // namespace embrix
