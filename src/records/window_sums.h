// The averages of the last minutes, for every group at once, at the cost of the points that come
// and go, not of all that stand in between. It is `History::average`, but that every point counts
// by its own time: what a clock that was set back has put between newer points stays out. Main
// thread.
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

  // How many points count.
  std::size_t points() const { return window_.points().size() - strays_; }

  // The mean watts of that group over the points, one without it counting as 0. Absent when there
  // is no point. Within 1e-10 of the value that adding up the points gives.
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
  // Of the points that are not older than that.
  Sum summed(std::string_view key, double oldest) const;
  void findStrays();

  double seconds_;
  HistoryWindow window_;
  double oldest_ = 0;  // the time from which on a point counts
  double newest_ = 0;  // of the points that came in since they were last in the order of time
  bool isInOrder_ = true;
  std::size_t strays_ = 0;           // points of the window that are too old
  HashMap<SharedText, Sum> sums_;    // of the groups that are in the window
  std::vector<SharedText> unsound_;  // groups to be added up anew
};

}  // namespace embrix
