#include "model/alert_policy.h"

namespace embrix {

namespace {

// No group has a key with a middle dot at its front.
constexpr const char* kThrottleKey = "·throttle";

}  // namespace

std::vector<SharedText> AlertPolicy::appsToAlert(const GroupKeys& hot, double now) {
  std::vector<SharedText> alerting;
  for (const SharedText& key : hot) {
    const auto snoozed = snoozedUntil_.find(key);
    if (snoozed != snoozedUntil_.end() && snoozed->second > now) continue;
    if (isCoolingDown(key, now)) continue;
    lastSent_.insert_or_assign(key, now);
    alerting.push_back(key);
  }
  return alerting;
}

bool AlertPolicy::shouldAlertThrottling(ThermalState from, ThermalState to, double now) {
  if (!isThrottled(to) || isThrottled(from)) return false;
  const SharedText key(kThrottleKey);
  if (isCoolingDown(key, now)) return false;
  lastSent_.insert_or_assign(key, now);
  return true;
}

bool AlertPolicy::isCoolingDown(const SharedText& key, double now) const {
  const auto sent = lastSent_.find(key);
  return sent != lastSent_.end() && now - sent->second < cooldown_;
}

}  // namespace embrix
