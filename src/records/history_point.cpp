#include "records/history_point.h"

namespace embrix {

double HistoryPoint::watts(std::string_view key) const {
  const double* const found = groupWatts.find(key);
  return found == nullptr ? 0 : *found;
}

double HistoryPoint::totalWatts() const {
  double sum = 0;
  for (const auto& [key, watts] : groupWatts) sum += watts;
  const double system = systemWatts.value_or(0);
  return system > sum ? system : sum;
}

}  // namespace embrix
