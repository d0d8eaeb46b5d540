#include "records/power_baseline.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>
#include <utility>

#include "records/json_writer.h"

namespace embrix {

PowerBaseline::PowerBaseline(std::vector<float> samples, double lastAdded)
    : samples_(std::move(samples)), lastAdded_(lastAdded), sorted_(samples_) {
  std::sort(sorted_.begin(), sorted_.end());
  for (const float sample : samples_) appendText(sample);
}

void PowerBaseline::add(double watts, double time) {
  if (time - lastAdded_ < kBetweenSamples) return;
  if (!(watts > 0) || !std::isfinite(watts)) return;
  lastAdded_ = time;
  constexpr double kLargest = std::numeric_limits<float>::max();
  const auto sample = static_cast<float>(std::min(watts, kLargest));
  samples_.push_back(sample);
  appendText(sample);
  sorted_.insert(std::upper_bound(sorted_.begin(), sorted_.end(), sample), sample);
  if (samples_.size() > kMostSamples) removeExcess();
}

// One sample as a rule; a file may have held any number.
void PowerBaseline::removeExcess() {
  const auto end = samples_.end() - static_cast<std::ptrdiff_t>(kMostSamples);
  std::size_t textEnd = 0;
  for (auto sample = samples_.begin(); sample != end; ++sample) {
    textEnd = text_.find(',', textEnd) + 1;
  }
  text_.erase(0, textEnd);
  if (end - samples_.begin() == 1) {
    sorted_.erase(std::lower_bound(sorted_.begin(), sorted_.end(), samples_.front()));
    samples_.erase(samples_.begin());
  } else {
    samples_.erase(samples_.begin(), end);
    sorted_ = samples_;
    std::sort(sorted_.begin(), sorted_.end());
  }
}

void PowerBaseline::appendText(float sample) {
  if (!text_.empty()) text_ += ',';
  JsonWriter::append(text_, sample);
}

std::optional<double> PowerBaseline::median() const {
  if (sorted_.size() < kLeastToJudge) return std::nullopt;
  return sorted_[sorted_.size() / 2];
}

}  // namespace embrix
