#include "records/history.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace embrix {

namespace {

void dropIfNotFinite(std::optional<double>& number) {
  if (number && !std::isfinite(*number)) number.reset();
}

SharedMap<double> finiteOf(const SharedMap<double>& numbers) {
  std::vector<SharedMap<double>::Entry> kept(numbers.begin(), numbers.end());
  std::erase_if(kept, [](const auto& entry) { return !std::isfinite(entry.value); });
  return SharedMap<double>(std::move(kept));
}

bool isFinite(const SharedMap<double>& numbers) {
  return std::all_of(numbers.begin(), numbers.end(),
                     [](const auto& entry) { return std::isfinite(entry.value); });
}

}  // namespace

History::History(std::size_t capacity) : capacity_(std::max<std::size_t>(capacity, 1)) {
  points_.reserve(2 * capacity_);
}

std::span<const HistoryPoint> History::points() const {
  return std::span(points_).subspan(first_);
}

void History::append(HistoryPoint point) {
  dropIfNotFinite(point.systemWatts);
  dropIfNotFinite(point.temperature);
  if (!isFinite(point.groupWatts)) point.groupWatts = finiteOf(point.groupWatts);
  snapshot_.append(point);
  points_.push_back(std::move(point));
  if (points_.size() - first_ > capacity_) removeFirst();
}

void History::removeFirst() {
  points_[first_] = HistoryPoint{};
  ++first_;
  ++removed_;
  snapshot_.removeFirst();
  if (first_ == capacity_) {
    points_.erase(points_.begin(), points_.begin() + static_cast<std::ptrdiff_t>(first_));
    first_ = 0;
  }
}

std::span<const HistoryPoint> History::window(double seconds, double now) const {
  const auto all = points();
  const auto first = std::find_if(all.begin(), all.end(), [&](const HistoryPoint& point) {
    return point.time >= now - seconds;
  });
  return all.subspan(static_cast<std::size_t>(first - all.begin()));
}

std::optional<double> History::average(std::string_view key, double seconds, double now) const {
  const auto points = window(seconds, now);
  if (points.empty()) return std::nullopt;
  double sum = 0;
  for (const HistoryPoint& point : points) sum += point.watts(key);
  return sum / static_cast<double>(points.size());
}

HistorySnapshot History::snapshot() const {
  return snapshot_;
}

bool History::operator==(const History& other) const {
  const auto mine = points();
  const auto others = other.points();
  return capacity_ == other.capacity_ &&
         std::equal(mine.begin(), mine.end(), others.begin(), others.end());
}

}  // namespace embrix
