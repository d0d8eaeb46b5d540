// Temperature sensors. Sampling thread only.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace embrix {

class TemperatureSource {
 public:
  virtual ~TemperatureSource() = default;

  // The product name of each sensor, empty for one without; repeats occur. Constant.
  virtual std::vector<std::string> sensors() = 0;

  // Degrees Celsius as the sensor says, nonsense included; absent when it gives no event. `index`
  // is a place in sensors().
  virtual std::optional<double> read(std::size_t index) = 0;
};

}  // namespace embrix
