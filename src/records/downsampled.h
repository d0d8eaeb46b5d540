// A long series as a short one, for the small charts. Any thread.
#pragma once

#include <span>
#include <vector>

namespace embrix {

// Exactly `count` values, each the mean of its stretch of `values`, so short spikes are flattened.
// The values unchanged when there are no more than `count` of them, or when `count` is below 1.
std::vector<double> downsampled(std::span<const double> values, int count);

}  // namespace embrix
