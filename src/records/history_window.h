// The window of a history as it moves: which points have come in and which have gone since the last
// look. At every moment it holds the points that History::window gives. Main thread.
//
// It keeps its own copies, since a point can leave the history while it still stands in a long
// window's count, and follows a clock that is set back or forward: each is a window that grows or
// shrinks by more points than usual.
#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>

#include "records/history.h"

namespace embrix {

class HistoryWindow {
 public:
  const std::deque<HistoryPoint>& points() const { return points_; }

  // Calls enter(point) for each point that comes in, leave(point) for each that goes. A point can
  // do both in one call. Always the same history.
  template <typename Enter, typename Leave>
  void move(const History& history, double seconds, double now, Enter enter, Leave leave) {
    const double oldest = now - seconds;
    if (hasOtherPoints(history)) restart(history, leave);
    while (next_ < history.removed() + history.points().size()) {
      points_.push_back(history.points()[next_++ - history.removed()]);
      enter(points_.back());
    }
    for (std::size_t count = earlierPoints(history, oldest); count > 0; --count) {
      points_.push_front(history.points()[first() - history.removed() - 1]);
      enter(points_.front());
    }
    while (!points_.empty() && (first() < history.removed() || !(points_.front().time >= oldest))) {
      leave(points_.front());
      points_.pop_front();
    }
    oldest_ = oldest;
  }

 private:
  std::uint64_t first() const { return next_ - points_.size(); }

  // More points are gone than were ever seen, or fewer were appended.
  bool hasOtherPoints(const History& history) const;

  template <typename Leave>
  void restart(const History& history, Leave leave) {
    for (const HistoryPoint& point : points_) leave(point);
    points_.clear();
    next_ = history.removed();
  }

  // How many points in front of the window belong to it: none unless the window now reaches further
  // back than at the last call.
  std::size_t earlierPoints(const History& history, double oldest) const;

  std::deque<HistoryPoint> points_;
  std::uint64_t next_ =
      0;               // the number of the point behind the window, counted from the very first
  double oldest_ = 0;  // the time from which on points counted at the last call
};

}  // namespace embrix
