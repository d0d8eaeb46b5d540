// One frame: what it changes, in the order in which each step needs what the ones before it wrote.

#include <algorithm>
#include <utility>

#include "model/measured_frame.h"
#include "model/power_model.h"
#include "model/runaway_detector.h"
#include "model/setting_keys.h"

namespace embrix {

namespace {

constexpr double kLeastHistoryWatts = 0.05;  // what draws less leaves no trace
constexpr std::size_t kAveragedGroups = 50;
constexpr double kSecondsInMinute = 60;

}  // namespace

void PowerModel::apply(Frame frame) {
  const Changes changes(*this);
  MeasuredFrame::keepOnly(frame, ports_.scheduler.wallTime());
  std::optional<Frame> previous = frame_.exchange(std::move(frame));

  nameGroups();
  const Verdict verdict = Verdict::make((*frame_)->groups, totalWatts());
  appendHistory(verdict);
  averageTenMinutes();
  findRunaways();
  recordLedger(previous, verdict);
  recordDischarge(previous);
  addToBaseline();
  pruneCalmed();
  applyCalmRules();
  sendAlerts(previous);
  publishControlState(verdict);
  saveHistoryPeriodically();

  if (previous) spent_ = std::move(*previous);
}

void PowerModel::nameGroups() {
  groupNames_.change([&](GroupNames& names) {
    bool isNew = false;
    for (const AppGroup& group : (*frame_)->groups) {
      if (group.watts < kLeastHistoryWatts) continue;
      const GroupIdentity& identity = group.identity;
      const auto known = names.find(identity.key);
      if (known != names.end() && known->second == identity.name) continue;
      names.insert_or_assign(identity.key, identity.name);
      isNew = true;
    }
    return isNew;
  });
}

void PowerModel::appendHistory(const Verdict& verdict) {
  const Frame& frame = **frame_;
  HistoryPoint point{.time = frame.date, .temperature = frame.temperature};
  if (frame.battery) point.systemWatts = frame.battery->systemWatts;
  if (verdict.subject) point.label = *verdict.subject;
  std::vector<SharedMap<double>::Entry> watts;
  watts.reserve(frame.groups.size());
  for (const AppGroup& group : frame.groups) {
    point.cpuPercent += group.cpuPercent;
    if (group.watts >= kLeastHistoryWatts) watts.push_back({group.identity.key, group.watts});
  }
  point.groupWatts = SharedMap<double>(std::move(watts));
  history_.change([&](History& history) { history.append(std::move(point)); });
}

void PowerModel::averageTenMinutes() {
  const Frame& frame = **frame_;
  tenMinutes_.advance(*history_, frame.date);
  Averages averages;
  const std::size_t count = std::min(frame.groups.size(), kAveragedGroups);
  averages.reserve(count);
  for (std::size_t i = 0; i < count; ++i) {
    const SharedText& key = frame.groups[i].identity.key;
    if (const auto average = tenMinutes_.average(key)) averages.insert_or_assign(key, *average);
  }
  tenMinuteAverages_ = std::move(averages);
}

void PowerModel::findRunaways() {
  const double now = (*frame_)->date;
  const double watts = ports_.defaults.doubleFor(SettingKeys::kAlertWatts);
  const double seconds = ports_.defaults.doubleFor(SettingKeys::kAlertMinutes) * kSecondsInMinute;
  alertWindow_.advance(*history_, now, seconds, watts);
  GroupKeys runaways;
  if (RunawayDetector::hasWholeWindow(*history_, now, seconds)) {
    for (SharedText& key : alertWindow_.keysWithShare(RunawayDetector::kLeastShare)) {
      runaways.insert(std::move(key));
    }
  }
  runaways_ = std::move(runaways);
}

}  // namespace embrix
