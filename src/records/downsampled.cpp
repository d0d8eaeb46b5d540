#include "records/downsampled.h"

#include <algorithm>
#include <numeric>

namespace embrix {

std::vector<double> downsampled(std::span<const double> values, int count) {
  if (count < 1 || values.size() <= static_cast<std::size_t>(count)) {
    return {values.begin(), values.end()};
  }
  const double stride = static_cast<double>(values.size()) / count;
  std::vector<double> means;
  means.reserve(static_cast<std::size_t>(count));
  for (int i = 0; i < count; ++i) {
    const auto begin = static_cast<std::size_t>(stride * i);
    const auto end = std::min(values.size(), static_cast<std::size_t>(stride * (i + 1)));
    double sum = 0;
    for (std::size_t at = begin; at < end; ++at) sum += values[at];
    means.push_back(sum / static_cast<double>(std::max<std::size_t>(end - begin, 1)));
  }
  return means;
}

}  // namespace embrix
