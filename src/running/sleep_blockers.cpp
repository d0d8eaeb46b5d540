#include "running/sleep_blockers.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <limits>
#include <map>
#include <string_view>
#include <utility>

namespace embrix {

namespace {

constexpr std::array<std::string_view, 2> kDisplayTypes = {"PreventUserIdleDisplaySleep",
                                                           "NoDisplaySleepAssertion"};
constexpr std::array<std::string_view, 3> kSystemTypes = {
    "PreventUserIdleSystemSleep", "PreventSystemSleep", "NoIdleSleepAssertion"};

constexpr double kFarFuture = std::numeric_limits<double>::infinity();

// What the user has no say over.
constexpr std::array<std::string_view, 9> kIgnoredProcesses = {
    "powerd",          "WindowServer", "sharingd",   "useractivityd", "backupd",
    "softwareupdated", "mds",          "mds_stores", "bluetoothd"};

template <typename List, typename Text>
bool contains(const List& list, const Text& text) {
  return std::find(list.begin(), list.end(), text) != list.end();
}

void add(const PowerAssertion& assertion, bool isSystem, bool isDisplay, SleepBlocker& row) {
  row.preventsSystemSleep |= isSystem;
  row.preventsDisplaySleep |= isDisplay;
  if (!assertion.name.empty() && !contains(row.reasons, assertion.name)) {
    row.reasons.push_back(assertion.name);
  }
  if (assertion.started && std::isfinite(*assertion.started)) {
    row.since = std::min(row.since.value_or(*assertion.started), *assertion.started);
  }
}

}  // namespace

std::vector<SleepBlocker> SleepBlockers::blockers(const std::vector<PowerAssertion>& assertions) {
  std::map<std::int32_t, SleepBlocker> byPID;
  for (const PowerAssertion& assertion : assertions) {
    const bool isSystem = contains(kSystemTypes, assertion.type);
    const bool isDisplay = contains(kDisplayTypes, assertion.type);
    if (!isSystem && !isDisplay) continue;
    if (contains(kIgnoredProcesses, assertion.processName)) continue;
    const auto [row, isNew] = byPID.try_emplace(assertion.pid);
    if (isNew) {
      row->second.pid = assertion.pid;
      row->second.processName = assertion.processName;
    }
    add(assertion, isSystem, isDisplay, row->second);
  }

  std::vector<SleepBlocker> rows;
  rows.reserve(byPID.size());
  for (auto& [pid, row] : byPID) rows.push_back(std::move(row));
  // The rows come by ascending pid, and a stable sort leaves ties so.
  std::stable_sort(rows.begin(), rows.end(), [](const auto& a, const auto& b) {
    return a.since.value_or(kFarFuture) < b.since.value_or(kFarFuture);
  });
  return rows;
}

}  // namespace embrix
