// Figures in the words of the program's sentences. Any thread.
#pragma once

#include <cstdint>
#include <string>

namespace embrix {

struct Wording {
  // "0 W" below a twentieth, else "12.3 W".
  static std::string watts(double watts);

  // The whole part of so many minutes; the largest number for what does not fit, 0 for what is no
  // number.
  static std::int64_t wholeMinutes(double minutes);
};

}  // namespace embrix
