// How hard the kernel holds the processor back because of heat. Linux has no one figure for it;
// this is what stands for it, the worst of:
//
//   a throttle counter of a processor has risen since the last read       fair
//   a thermal zone is at or above its passive trip point (slow down)      fair
//   ... its hot trip point (save your work)                               serious
//   ... its critical trip point (power off)                               critical
//
// A zone is firmware to ask, which can take longer than all else in a tick: the first read asks all
// of them, each later one asks one in turn, and a zone's last answer stands until its next turn.
// Sampling thread only.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "host/thermal_state_source.h"
#include "hosts/linux/system_file.h"

namespace embrix {

class LinuxThermalStateSource final : public ThermalStateSource {
 public:
  explicit LinuxThermalStateSource(const std::string& root = "/");

  ThermalState read() override;

 private:
  struct Zone {
    HeldFile temperature;  // thousandths of a degree, as the trip points
    std::optional<std::int64_t> passive;
    std::optional<std::int64_t> hot;
    std::optional<std::int64_t> critical;
    ThermalState latest = ThermalState::nominal;
  };
  struct Counter {
    HeldFile events;
    std::optional<std::int64_t> previous;
  };

  void addZone(const std::string& directory);
  void addCounters(const std::string& cpus);
  bool hasThrottled();
  static void look(Zone& zone);

  std::vector<Zone> zones_;
  std::vector<Counter> counters_;
  std::size_t turn_ = 0;
  bool hasRead_ = false;
};

}  // namespace embrix
