#include "model/wording.h"

#include <limits>

#include <fmt/format.h>

namespace embrix {

std::string Wording::watts(double watts) {
  constexpr double kLeastShown = 0.05;
  return watts >= kLeastShown ? fmt::format("{:.1f} W", watts) : "0 W";
}

std::int64_t Wording::wholeMinutes(double minutes) {
  constexpr double kLimit = 9e18;  // below the largest whole number, and a double
  if (minutes >= kLimit) return std::numeric_limits<std::int64_t>::max();
  if (minutes <= -kLimit) return std::numeric_limits<std::int64_t>::min();
  return minutes == minutes ? static_cast<std::int64_t>(minutes) : 0;
}

}  // namespace embrix
