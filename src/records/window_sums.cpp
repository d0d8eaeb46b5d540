#include "records/window_sums.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <ranges>

namespace embrix {

namespace {

// A sum that goes up and down for days gathers what rounding leaves in it, and one huge value that
// passes through can wipe out all that is small. So each sum knows how wrong it can be, and is
// added up anew where that is more than this share of it: for steady values about once a day.
constexpr double kMostError = 1e-11;

constexpr double kInfinity = std::numeric_limits<double>::infinity();

}  // namespace

void WindowSums::Sum::add(double change) {
  watts += change;
  error += std::abs(watts) * (std::numeric_limits<double>::epsilon() / 2);
}

bool WindowSums::Sum::isSound() const {
  return std::isfinite(watts) && error <= std::abs(watts) * kMostError;
}

void WindowSums::advance(const History& history, double now) {
  window_.move(
      history, seconds_, now, [this](const HistoryPoint& point) { enter(point); },
      [this](const HistoryPoint& point) { leave(point); });
  for (const SharedText& key : unsound_) {
    const auto found = sums_.find(key);
    if (found != sums_.end()) found.value() = summed(key, -kInfinity);
  }
  unsound_.clear();
  oldest_ = now - seconds_;
  if (!isInOrder_) findStrays();
}

void WindowSums::findStrays() {
  const auto& points = window_.points();
  const auto time = [](const HistoryPoint& point) { return point.time; };
  isInOrder_ = std::ranges::is_sorted(points, {}, time);
  newest_ = points.empty() ? 0 : points.back().time;
  strays_ = static_cast<std::size_t>(std::ranges::count_if(
      points, [this](double moment) { return !(moment >= oldest_); }, time));
}

std::optional<double> WindowSums::average(std::string_view key) const {
  if (points() == 0) return std::nullopt;
  if (strays_ > 0) return summed(key, oldest_).watts / static_cast<double>(points());
  const auto found = sums_.find(key);
  return found == sums_.end() ? 0 : found->second.watts / static_cast<double>(points());
}

void WindowSums::enter(const HistoryPoint& point) {
  if (point.time < newest_) isInOrder_ = false;
  newest_ = std::max(newest_, point.time);
  for (const auto& [key, watts] : point.groupWatts) {
    Sum& sum = sums_[key];
    sum.add(watts);
    ++sum.points;
    if (!sum.isSound()) unsound_.push_back(key);
  }
}

void WindowSums::leave(const HistoryPoint& point) {
  for (const auto& [key, watts] : point.groupWatts) {
    const auto found = sums_.find(key);
    Sum& sum = found.value();
    if (--sum.points == 0) {
      sums_.erase(found);
      continue;
    }
    sum.add(-watts);
    if (!sum.isSound()) unsound_.push_back(key);
  }
}

WindowSums::Sum WindowSums::summed(std::string_view key, double oldest) const {
  Sum sum;
  for (const HistoryPoint& point : window_.points()) {
    const double* const watts = point.time >= oldest ? point.groupWatts.find(key) : nullptr;
    if (watts == nullptr) continue;
    sum.add(*watts);
    ++sum.points;
  }
  return sum;
}

}  // namespace embrix
