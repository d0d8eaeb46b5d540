// The rolling memory of the last hour or so: one small point for each frame. Charts, averages and
// the search for runaways read it. What is kept for days is the day ledger's and the archive's.
// Main thread; a point and a snapshot may be read on any.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

#include "records/history_point.h"
#include "records/history_snapshot.h"

namespace embrix {

class History {
 public:
  // `capacity` is a number of points, at least 1, not a span of time.
  explicit History(std::size_t capacity);

  std::size_t capacity() const { return capacity_; }

  // In the order in which they were appended: ascending times unless the clock was set back.
  std::span<const HistoryPoint> points() const;

  // How many points stood before the first of points() and are gone.
  std::uint64_t removed() const { return removed_; }

  // The oldest points go where there are more than the capacity. A number in the point that is not
  // finite was not measured: its group or its field is left out.
  void append(HistoryPoint point);

  // From the first point whose time is at or after `now - seconds`, to the end, whatever the times
  // of those behind it are. Empty when there is no such point.
  std::span<const HistoryPoint> window(double seconds, double now) const;

  // The mean watts of that group over the window, a point without it counting as 0. Absent when the
  // window is empty. Walks the window: for the averages of every frame there is WindowSums.
  std::optional<double> average(std::string_view key, double seconds, double now) const;

  // All points, to be saved on another thread.
  HistorySnapshot snapshot() const;

  bool operator==(const History& other) const;

 private:
  void removeFirst();

  std::size_t capacity_;
  // Points up to `first_` are gone and empty; they are cleared away many at a time.
  std::vector<HistoryPoint> points_;
  std::size_t first_ = 0;
  std::uint64_t removed_ = 0;
  HistorySnapshot snapshot_;  // of what stands from `first_` on
};

}  // namespace embrix
