// The kernel's hardware-monitoring temperatures, and thermal zones where those lack the processor.
//
// A sensor's product name is the driver's name and the sensor's label. Sensors on the processor's
// die get " tdie" behind it, which is the word by which the reader picks them:
//
//   coretemp, zenpower, cpu_thermal and the like: all of them. k10temp, zenpower: not "Tctl" where
//   there is a "Tdie", for the control value of some chips stands 10 to 27 degrees above the die.
//
// Disks are left out altogether: asking one can wake it, and none of them is the chip.
// Sampling thread only.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "host/temperature_source.h"
#include "hosts/linux/system_file.h"

namespace embrix {

class LinuxTemperatureSource final : public TemperatureSource {
 public:
  // The sensors that are there now are the ones that there are.
  explicit LinuxTemperatureSource(const std::string& root = "/");

  std::vector<std::string> sensors() override;
  std::optional<double> read(std::size_t index) override;

 private:
  struct Sensor {
    std::string product;
    HeldFile millidegrees;
  };

  void addMonitor(const std::string& directory);
  void addZones(const std::string& directory);

  std::vector<Sensor> sensors_;
  bool hasDie_ = false;
};

}  // namespace embrix
