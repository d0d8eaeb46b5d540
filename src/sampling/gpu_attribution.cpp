#include "sampling/gpu_attribution.h"

#include <cmath>
#include <limits>
#include <optional>

namespace embrix {
namespace {

std::optional<std::uint64_t> sumOf(const HashMap<std::int32_t, std::uint64_t>& deltas) {
  std::uint64_t total = 0;
  for (const auto& [pid, delta] : deltas) {
    if (delta > std::numeric_limits<std::uint64_t>::max() - total) return std::nullopt;
    total += delta;
  }
  return total;
}

}  // namespace

void GPUAttribution::split(double gpuWatts, const HashMap<std::int32_t, std::uint64_t>& deltas,
                           HashMap<std::int32_t, double>& shares) {
  shares.clear();
  const std::optional<std::uint64_t> total = sumOf(deltas);
  if (!(gpuWatts > 0) || !std::isfinite(gpuWatts) || total.value_or(0) == 0) return;
  for (const auto& [pid, delta] : deltas) {
    const double part = static_cast<double>(delta) / static_cast<double>(*total);
    shares.try_emplace(pid, gpuWatts * part);
  }
}

HashMap<std::int32_t, double> GPUAttribution::split(
    double gpuWatts, const HashMap<std::int32_t, std::uint64_t>& deltas) {
  HashMap<std::int32_t, double> shares;
  split(gpuWatts, deltas, shares);
  return shares;
}

}  // namespace embrix
