// When an alert may be sent, and when the same one must wait. Holds only what was sent and snoozed;
// times are seconds since 1970. Main thread only.
#pragma once

#include <functional>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "base/shared_text.h"
#include "frame/thermal_state.h"

namespace embrix {

// Keys of groups, ascending.
using GroupKeys = std::set<SharedText>;

class AlertPolicy {
 public:
  // `cooldown` in seconds between two alerts of the same key.
  explicit AlertPolicy(double cooldown) : cooldown_(cooldown) {}

  // Those of the groups that may alert now, ascending; their cooldown starts with this call.
  std::vector<SharedText> appsToAlert(const GroupKeys& hot, double now);

  // Whether the machine has just begun to hold itself back and may alert now; the cooldown starts
  // with a yes.
  bool shouldAlertThrottling(ThermalState from, ThermalState to, double now);

  // Silences the group up to that moment. Its cooldown goes on.
  void snooze(const SharedText& key, double until) { snoozedUntil_.insert_or_assign(key, until); }

 private:
  bool isCoolingDown(const SharedText& key, double now) const;

  double cooldown_;
  std::map<SharedText, double> lastSent_;
  std::map<SharedText, double> snoozedUntil_;
};

}  // namespace embrix
