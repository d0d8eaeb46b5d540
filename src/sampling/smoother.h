// Takes the jitter out of rates: exponential smoothing by elapsed time, so that the result does not
// depend on how the ticks fall. After one time constant a step has come 63.2 % of the way, whether
// in two ticks or in sixty. Belongs to one thread.
#pragma once

#include <array>
#include <cmath>
#include <cstddef>
#include <iterator>

#include "base/hash_map.h"
#include "base/shared_text.h"

namespace embrix {

// How far a value moves towards the newest one in `dt` seconds: 0 (not at all) to 1. A tick asks
// for the same `dt` with every process, and the exponential is worked out once.
class SmoothingStep {
 public:
  // `timeConstant` in seconds, above 0.
  explicit SmoothingStep(double timeConstant) : timeConstant_(timeConstant) {}

  double operator()(double dt) {
    if (dt != lastDT_) remember(dt);
    return step_;
  }

 private:
  void remember(double dt);

  double timeConstant_;
  double lastDT_ = 0;
  double step_ = 0;
};

// Values that are always updated together under one key, at one look-up for all of them.
template <std::size_t Lanes>
class LaneSmoother {
 public:
  using Values = std::array<double, Lanes>;

  // `timeConstant` in seconds, above 0.
  explicit LaneSmoother(double timeConstant) : step_(timeConstant) {}

  // The smoothed values. The first of a key are taken as they are, with no ramp from zero; a `dt`
  // (seconds) of 0 or less does not move a value, and neither does one that is not finite. The
  // reference is valid until the next call.
  const Values& update(const SharedText& key, const Values& values, double dt) {
    const auto [entry, isFirst] = values_.try_emplace(key, values);
    Values& smoothed = entry.value();
    if (isFirst) return smoothed;
    const double step = step_(dt);
    for (std::size_t lane = 0; lane < Lanes; ++lane) move(smoothed[lane], values[lane], step);
    return smoothed;
  }

  // Drops every key that is not in the set.
  void prune(const HashSet<SharedText>& keep) {
    for (auto entry = values_.begin(); entry != values_.end();) {
      entry = keep.contains(entry->first) ? std::next(entry) : values_.erase(entry);
    }
  }

  std::size_t size() const { return values_.size(); }

 private:
  // What is not finite never gets in, or it would stay for the life of the key.
  static void move(double& smoothed, double value, double step) {
    if (!std::isfinite(value)) return;
    smoothed = std::isfinite(smoothed) ? smoothed + (value - smoothed) * step : value;
  }

  SmoothingStep step_;
  HashMap<SharedText, Values> values_;
};

// One value under each key.
class Smoother {
 public:
  explicit Smoother(double timeConstant) : lanes_(timeConstant) {}

  double update(const SharedText& key, double value, double dt) {
    return lanes_.update(key, {value}, dt)[0];
  }
  void prune(const HashSet<SharedText>& keep) { lanes_.prune(keep); }
  std::size_t size() const { return lanes_.size(); }

 private:
  LaneSmoother<1> lanes_;
};

}  // namespace embrix
