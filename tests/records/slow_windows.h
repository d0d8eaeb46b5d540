// Averages and runaways as they are told: by walking the window each time. What the running sums
// and counts are held against.
#pragma once

#include <map>
#include <optional>
#include <set>
#include <span>
#include <string>

#include "records/history.h"

namespace embrix {

struct SlowWindows {
  // The points from the first whose time is at or after `now - seconds`, to the end.
  static std::span<const HistoryPoint> window(const History& history, double seconds, double now) {
    const auto points = history.points();
    for (std::size_t i = 0; i < points.size(); ++i) {
      if (points[i].time >= now - seconds) return points.subspan(i);
    }
    return {};
  }

  // Of all points whose own time is at or after `now - seconds`.
  static std::optional<double> average(const History& history, const std::string& key,
                                       double seconds, double now) {
    std::size_t points = 0;
    long double sum = 0;
    for (const HistoryPoint& point : history.points()) {
      if (!(point.time >= now - seconds)) continue;
      ++points;
      for (const auto& [name, watts] : point.groupWatts) {
        if (name == key) sum += watts;
      }
    }
    if (points == 0) return std::nullopt;
    return static_cast<double>(sum / static_cast<long double>(points));
  }

  static std::set<std::string> keysWithShare(const History& history, double now, double seconds,
                                             double threshold, double share) {
    const auto points = window(history, seconds, now);
    std::set<std::string> keys;
    for (const HistoryPoint& point : points) {
      for (const auto& [name, watts] : point.groupWatts) keys.insert(name.string());
    }
    std::set<std::string> result;
    for (const std::string& key : keys) {
      double above = 0;
      for (const HistoryPoint& point : points) {
        if (point.watts(key) >= threshold) above += 1;
      }
      if (above / static_cast<double>(points.size()) >= share) result.insert(key);
    }
    return result;
  }
};

}  // namespace embrix
