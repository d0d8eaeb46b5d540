#include "records/window_counts.h"

namespace embrix {

void WindowCounts::advance(const History& history, double now, double seconds,
                           double thresholdWatts) {
  if (thresholdWatts != threshold_) {
    threshold_ = thresholdWatts;
    counts_.clear();
    for (const HistoryPoint& point : window_.points()) enter(point);
  }
  window_.move(
      history, seconds, now, [this](const HistoryPoint& point) { enter(point); },
      [this](const HistoryPoint& point) { leave(point); });
}

std::vector<SharedText> WindowCounts::keysWithShare(double share) const {
  std::vector<SharedText> keys;
  const auto all = static_cast<double>(points());
  for (const auto& [key, count] : counts_) {
    const bool isAboveWhenMissing = 0 >= threshold_;
    const std::size_t missing = isAboveWhenMissing ? points() - count.points : 0;
    if (static_cast<double>(count.above + missing) / all >= share) keys.push_back(key);
  }
  return keys;
}

void WindowCounts::enter(const HistoryPoint& point) {
  for (const auto& [key, watts] : point.groupWatts) {
    Count& count = counts_[key];
    ++count.points;
    if (watts >= threshold_) ++count.above;
  }
}

void WindowCounts::leave(const HistoryPoint& point) {
  for (const auto& [key, watts] : point.groupWatts) {
    const auto found = counts_.find(key);
    Count& count = found.value();
    if (--count.points == 0) {
      counts_.erase(found);
    } else if (watts >= threshold_) {
      --count.above;
    }
  }
}

}  // namespace embrix
