// What this machine draws as a rule: a sample every half minute of the last day awake. Main thread.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace embrix {

class PowerBaseline {
 public:
  static constexpr double kBetweenSamples = 30;      // seconds
  static constexpr std::size_t kMostSamples = 2880;  // 24 hours awake
  static constexpr std::size_t kLeastToJudge = 60;   // half an hour awake

  PowerBaseline() = default;
  PowerBaseline(std::vector<float> samples, double lastAdded);

  // Whole-machine watts, oldest first.
  const std::vector<float>& samples() const { return samples_; }
  // The same as JSON, the numbers with commas between them. A sample never changes, so that its
  // digits are made once and not at every save.
  const std::string& samplesText() const { return text_; }
  // Seconds since 1970 of the newest sample; 0 at first.
  double lastAdded() const { return lastAdded_; }

  // Takes the sample unless the last one is less than 30 seconds old, or unless it is not a finite
  // number above 0. `time` is in seconds since 1970.
  void add(double watts, double time);

  // The upper of the two middle samples when their number is even. Absent while the machine is
  // still being learned. Costs nothing to ask for.
  std::optional<double> median() const;

  bool operator==(const PowerBaseline&) const = default;

 private:
  void appendText(float sample);
  void removeExcess();

  std::vector<float> samples_;
  std::string text_;
  double lastAdded_ = 0;
  std::vector<float> sorted_;  // the same samples ascending
};

}  // namespace embrix
