// Hands the graphics processor's power out among the processes that used it. Pure.
#pragma once

#include <cstdint>

#include "base/hash_map.h"

namespace embrix {

struct GPUAttribution {
  // Watts by pid, in proportion to the GPU time of each over the interval, in any one unit; they
  // sum to `gpuWatts`, so nothing is kept back for the window server. Empty when there is no power
  // to hand out, when nobody used any time, and when the times sum to 2^64 or more: no driver has
  // counted that, and a sum that wrapped would hand out more power than there is.
  static void split(double gpuWatts, const HashMap<std::int32_t, std::uint64_t>& deltas,
                    HashMap<std::int32_t, double>& shares);

  static HashMap<std::int32_t, double> split(double gpuWatts,
                                             const HashMap<std::int32_t, std::uint64_t>& deltas);
};

}  // namespace embrix
