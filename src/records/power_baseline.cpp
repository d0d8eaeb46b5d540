#include "records/power_baseline.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

namespace embrix {

PowerBaseline::PowerBaseline(std::vector<float> samples, double lastAdded)
    : samples_(std::move(samples)), lastAdded_(lastAdded), sorted_(samples_) {
  std::sort(sorted_.begin(), sorted_.end());
}

void PowerBaseline::add(double watts, double time) {
  if (time - lastAdded_ < kBetweenSamples) return;
  if (!(watts > 0) || !std::isfinite(watts)) return;
  lastAdded_ = time;
  constexpr double kLargest = std::numeric_limits<float>::max();
  const auto sample = static_cast<float>(std::min(watts, kLargest));
  samples_.push_back(sample);
  sorted_.insert(std::upper_bound(sorted_.begin(), sorted_.end(), sample), sample);
  while (samples_.size() > kMostSamples) {
    sorted_.erase(std::lower_bound(sorted_.begin(), sorted_.end(), samples_.front()));
    samples_.erase(samples_.begin());
  }
}

std::optional<double> PowerBaseline::median() const {
  if (sorted_.size() < kLeastToJudge) return std::nullopt;
  return sorted_[sorted_.size() / 2];
}

}  // namespace embrix
