#include "model/load_level.h"

#include <algorithm>
#include <cmath>

namespace embrix {

namespace {

// The heat that a chip sheds without effort grows with the size of the machine around it.
constexpr int kMediumCores = 6;
constexpr int kLargeCores = 8;
constexpr LoadThresholds kSmallFloors{.warm = 10, .hot = 18};
constexpr LoadThresholds kMediumFloors{.warm = 14, .hot = 25};
constexpr LoadThresholds kLargeFloors{.warm = 20, .hot = 35};

constexpr double kWarmOverMedian = 1.6;
constexpr double kHotOverWarm = 1.7;

LoadThresholds floors(int performanceCores) {
  if (performanceCores >= kLargeCores) return kLargeFloors;
  return performanceCores >= kMediumCores ? kMediumFloors : kSmallFloors;
}

}  // namespace

LoadThresholds LoadThresholds::automatic(int performanceCores, std::optional<double> median) {
  const LoadThresholds least = floors(performanceCores);
  if (!median) return least;
  // `hot` follows the `warm` just found, so a floor that wins there lifts it too.
  const double warm = std::max(least.warm, std::round(*median * kWarmOverMedian));
  return {.warm = warm, .hot = std::max(least.hot, std::round(warm * kHotOverWarm))};
}

LoadLevel LoadThresholds::levelAt(double watts) const {
  if (hot <= watts) return LoadLevel::hot;
  return warm <= watts ? LoadLevel::warm : LoadLevel::calm;
}

}  // namespace embrix
