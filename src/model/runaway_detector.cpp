#include "model/runaway_detector.h"

#include <span>

namespace embrix {

namespace {

double shareAtLeast(std::span<const HistoryPoint> window, std::string_view key, double watts) {
  std::size_t above = 0;
  for (const HistoryPoint& point : window) above += point.watts(key) >= watts ? 1 : 0;
  return static_cast<double>(above) / static_cast<double>(window.size());
}

}  // namespace

bool RunawayDetector::hasWholeWindow(const History& history, double now, double duration) {
  return !history.points().empty() && history.points().front().time <= now - duration;
}

GroupKeys RunawayDetector::runaways(const History& history, double now, double thresholdWatts,
                                    double duration) {
  if (!hasWholeWindow(history, now, duration)) return {};
  const auto window = history.window(duration, now);
  GroupKeys seen;
  for (const HistoryPoint& point : window) {
    for (const auto& [key, watts] : point.groupWatts) seen.insert(key);
  }
  std::erase_if(seen, [&](const SharedText& key) {
    return shareAtLeast(window, key, thresholdWatts) < kLeastShare;
  });
  return seen;
}

}  // namespace embrix
