// When the model speaks up by itself, and what the user's answers do.

#include <algorithm>

#include <fmt/format.h>

#include "base/format.h"
#include "model/power_model.h"
#include "model/setting_keys.h"
#include "model/wording.h"

namespace embrix {

namespace {

constexpr double kSnooze = 3600;  // seconds
constexpr double kLeastGain = 1;  // minutes worth a word
constexpr double kSecondsInMinute = 60;

}  // namespace

void PowerModel::sendAlerts(const std::optional<Frame>& previous) {
  // Asked for nothing, the policy spends nothing.
  if (!ports_.defaults.boolFor(SettingKeys::kRunawayNotifications)) return;
  const double now = (*frame_)->date;
  for (const SharedText& key : alerts_.appsToAlert(*runaways_, now)) alertRunaway(key);
  if (previous &&
      alerts_.shouldAlertThrottling(previous->thermalState, (*frame_)->thermalState, now)) {
    alertThrottling();
  }
}

void PowerModel::alertRunaway(const SharedText& key) {
  const std::int64_t minutes =
      Wording::wholeMinutes(ports_.defaults.doubleFor(SettingKeys::kAlertMinutes));
  const double seconds = static_cast<double>(minutes) * kSecondsInMinute;
  const double average = history_->average(key, seconds, (*frame_)->date).value_or(0);
  std::string body = fmt::format("Averaging {:.1f} W for over {} min.", average, minutes);
  const auto gain = minutesGainedStopping(average);
  if (gain && *gain >= kLeastGain) {
    body += fmt::format(" It's costing you {} of battery.",
                        Format::durationMinutes(Wording::wholeMinutes(*gain)));
  }
  Notification notification{.identifier = fmt::format("hot-{}", key.view()),
                            .title = subjectForGroup(key) + " is heating your Mac",
                            .body = std::move(body),
                            .group = key.string(),
                            .category = {}};
  if (hasOwnTarget(key)) notification.category = NotificationRouter::kHotApp;
  notifications_.post(notification);
}

void PowerModel::alertThrottling() {
  Notification notification{.identifier = "throttle",
                            .title = "Your Mac is throttling",
                            .body = "macOS is slowing the CPU to cool down. ",
                            .group = {},
                            .category = {}};
  if (!(*frame_)->groups.empty()) {
    const AppGroup& top = (*frame_)->groups.front();
    const SharedText& key = top.identity.key;
    notification.body +=
        fmt::format("Biggest load: {} at {}.", subjectForGroup(key), Wording::watts(top.watts));
    notification.group = key.string();
    if (hasOwnTarget(key)) notification.category = NotificationRouter::kHotApp;
  }
  notifications_.post(notification);
}

// Buttons that could do nothing are not offered.
bool PowerModel::hasOwnTarget(std::string_view key) const {
  const auto targets = targetsInGroup(key);
  return std::any_of(targets.begin(), targets.end(),
                     [&](const ProcessRow& row) { return row.uid == uid(); });
}

void PowerModel::handle(NotificationRouter::Action action, const std::string& groupKey) {
  switch (action) {
    case NotificationRouter::Action::calm:
      calm(targetsInGroup(groupKey));
      break;
    case NotificationRouter::Action::stop: {
      const Changes changes(*this);
      for (const ProcessRow& row : targetsInGroup(groupKey)) quit(row);
      break;
    }
    case NotificationRouter::Action::snooze:
      alerts_.snooze(groupKey, ports_.scheduler.wallTime() + kSnooze);
      break;
    case NotificationRouter::Action::open:
      openConsole();
      break;
  }
}

}  // namespace embrix
