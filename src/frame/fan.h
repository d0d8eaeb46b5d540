#pragma once

namespace embrix {

struct Fan {
  double rpm = 0;     // revolutions per minute
  double maxRPM = 0;  // 0 when the fan reports no maximum

  bool operator==(const Fan&) const = default;
};

}  // namespace embrix
