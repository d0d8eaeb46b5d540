#include "entry/report_figures.h"

namespace embrix {

double processWatts(const Frame& frame) {
  double sum = 0;
  for (const AppGroup& group : frame.groups) sum += group.watts;
  return sum;
}

std::optional<double> systemWatts(const Frame& frame) {
  return frame.battery ? frame.battery->systemWatts : std::nullopt;
}

bool isWorthALine(const ProcessRow& row) {
  return row.watts >= 0.01;
}

}  // namespace embrix
