#include "records/calendar_day.h"

#include <time.h>
#include <cmath>

#include <fmt/format.h>

namespace embrix {

CivilDate localDate(double date) {
  // No calendar of the platform has a year for what is further away.
  constexpr double kFurthest = 1e17;
  if (!(std::abs(date) < kFurthest)) return {};
  const auto seconds = static_cast<time_t>(std::floor(date));
  tzset();  // the zone may have changed since the last call; localtime_r alone need not look
  tm parts = {};
  if (localtime_r(&seconds, &parts) == nullptr) return {};
  return {.year = parts.tm_year + 1900, .month = parts.tm_mon + 1, .day = parts.tm_mday};
}

std::string dayKey(const CivilDate& date) {
  return fmt::format("{:04d}-{:02d}-{:02d}", date.year, date.month, date.day);
}

}  // namespace embrix
