// For how much of the last minutes each group drew at least so many watts: what makes a runaway, at
// the cost of the points that come and go. Counted, never summed, so it is exact. Main thread.
#pragma once

#include <cstddef>
#include <vector>

#include "base/hash_map.h"
#include "records/history_window.h"

namespace embrix {

class WindowCounts {
 public:
  // Takes in what was appended to the history since the last call, and lets go of what is older
  // than `now - seconds`. Always the same history. Another length or another threshold than at the
  // last call may be given at any time; another threshold counts the window anew.
  void advance(const History& history, double now, double seconds, double thresholdWatts);

  // How many points the window has.
  std::size_t points() const { return window_.points().size(); }

  // The groups in the window whose share of points with at least the threshold is `share` or more,
  // a point without the group counting as 0 watts. Empty when the window is. In no order.
  std::vector<SharedText> keysWithShare(double share) const;

 private:
  struct Count {
    std::size_t points = 0;  // that have the group
    std::size_t above = 0;   // of these, at or above the threshold
  };

  void enter(const HistoryPoint& point);
  void leave(const HistoryPoint& point);

  double threshold_ = 0;
  HistoryWindow window_;
  HashMap<SharedText, Count> counts_;  // of the groups that are in the window
};

}  // namespace embrix
