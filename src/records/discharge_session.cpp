#include "records/discharge_session.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <utility>

namespace embrix {

namespace {

constexpr std::string_view kRestID = "system";
constexpr std::string_view kRestName = "Display & system";

int clampedToInt(std::int64_t number) {
  return static_cast<int>(std::clamp<std::int64_t>(number, std::numeric_limits<int>::min(),
                                                   std::numeric_limits<int>::max()));
}

int lostPercent(int before, int after) {
  return clampedToInt(std::max<std::int64_t>(std::int64_t{before} - after, 0));
}

void sortByWattHours(std::vector<DischargeSession::Share>& shares) {
  std::stable_sort(shares.begin(), shares.end(),
                   [](const auto& a, const auto& b) { return a.wattHours > b.wattHours; });
}

}  // namespace

DischargeSession DischargeSession::begun(double now, std::optional<int> percent) {
  DischargeSession session;
  session.start = now;
  session.startPercent = percent;
  session.lastTime = now;
  return session;
}

std::vector<DischargeSession::Entry> DischargeSession::entriesOf(std::span<const AppGroup> groups) {
  std::vector<Entry> entries;
  entries.reserve(kMostGroups);
  for (const AppGroup& group : groups.first(std::min(groups.size(), kMostGroups))) {
    if (group.watts < kLeastWatts) continue;
    entries.push_back({group.identity.key, group.identity.name, group.watts});
  }
  return entries;
}

void DischargeSession::record(double time, double totalWatts, std::span<const Entry> groups,
                              double dt) {
  lastTime = time;
  if (!(dt > 0)) return;
  const double seconds = std::min(dt, kLongestStep);
  if (std::isfinite(totalWatts)) totalWattHours += totalWatts * seconds / 3600;
  for (const Entry& entry : groups) {
    if (!(entry.watts > 0) || !std::isfinite(entry.watts)) continue;
    groupWattHours[entry.key] += seconds * entry.watts / 3600;
    groupNames[entry.key] = entry.name;
  }
}

void DischargeSession::didWake(double time, std::optional<int> percent,
                               std::optional<double> remainingWh) {
  if (!sleepStart) return;
  const SleepMark mark = *std::exchange(sleepStart, std::nullopt);
  asleepSeconds += std::max(time - mark.time, 0.0);
  if (mark.percent && percent) {
    asleepPercent =
        clampedToInt(std::int64_t{asleepPercent} + lostPercent(*mark.percent, *percent));
  }
  if (mark.remainingWh && remainingWh) {
    const double lost = *mark.remainingWh - *remainingWh;
    if (std::isfinite(lost)) asleepWattHours += std::max(lost, 0.0);
  }
  lastTime = time;
}

std::vector<DischargeSession::Share> DischargeSession::shares(int limit) const {
  if (!(totalWattHours > 0)) return {};
  std::vector<Share> shares;
  shares.reserve(groupWattHours.size() + 1);
  double sum = 0;
  for (const auto& [key, wattHours] : groupWattHours) {
    const auto name = groupNames.find(key);
    shares.push_back({.id = key.string(),
                      .name = (name == groupNames.end() ? key : name->second).string(),
                      .wattHours = wattHours,
                      .share = wattHours / totalWattHours});
    sum += wattHours;
  }
  // By id first, so that equal shares come in one order at every look.
  std::sort(shares.begin(), shares.end(),
            [](const Share& a, const Share& b) { return a.id < b.id; });
  sortByWattHours(shares);
  shares.resize(std::min(shares.size(), static_cast<std::size_t>(std::max(limit, 0))));
  if (const double rest = totalWattHours - sum; rest > 0) {
    shares.push_back({.id = std::string(kRestID),
                      .name = std::string(kRestName),
                      .wattHours = rest,
                      .share = rest / totalWattHours});
    sortByWattHours(shares);
  }
  return shares;
}

std::optional<int> DischargeSession::percentUsed(std::optional<int> percentNow) const {
  if (!startPercent || !percentNow) return std::nullopt;
  return lostPercent(*startPercent, *percentNow);
}

}  // namespace embrix
