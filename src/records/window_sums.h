// The averages of the last minutes, for every group at once: `History::average` at the cost of the
// points that come and go, not of all that stand in between. Main thread.
#pragma once

#include <cstddef>
#include <optional>
#include <string_view>
#include <vector>

#include "base/hash_map.h"
#include "records/history_window.h"

namespace embrix {

class WindowSums {
 public:
  // The window's length.
  explicit WindowSums(double seconds) : seconds_(seconds) {}

  // Takes in what was appended to the history since the last call, and lets go of what is older
  // than `now - seconds`. Always the same history.
  void advance(const History& history, double now);

  // How many points the window has.
  std::size_t points() const { return window_.points().size(); }

  // The mean watts of that group over the window, a point without it counting as 0. Absent when the
  // window is empty. Within 1e-10 of the value that adding up the window gives.
  std::optional<double> average(std::string_view key) const;

 private:
  struct Sum {
    double watts = 0;
    double error = 0;  // how far rounding can have led `watts` astray
    std::size_t points = 0;

    void add(double change);
    bool isSound() const;
  };

  void enter(const HistoryPoint& point);
  void leave(const HistoryPoint& point);
  Sum summed(std::string_view key) const;

  double seconds_;
  HistoryWindow window_;
  HashMap<SharedText, Sum> sums_;    // of the groups that are in the window
  std::vector<SharedText> unsound_;  // groups to be added up anew
};

}  // namespace embrix
