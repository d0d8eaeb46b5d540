// The processor's running energy counters (powercap's RAPL zones, Intel and AMD alike) as channels.
//
//   package − uncore  →  "CPU Energy"   cores, caches, memory controller of every package. Where a
//                                       machine has no package zone, its core zone.
//   uncore            →  "GPU Energy"   the graphics processor on the package (Intel's client
//   chips) dram              →  "DRAM"         beside the package, not a part of it
//
// A zone of several packages is their sum. The platform zone ("psys") holds all of these and more,
// and intel-rapl-mmio counts the package a second time: neither is read. Most distributions let
// root alone read the counters; then sample() answers false. Sampling thread only.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "host/energy_source.h"
#include "hosts/linux/system_file.h"

namespace embrix {

class LinuxEnergySource final : public EnergySource {
 public:
  // The zones that can be read now are the ones that are read from now on.
  explicit LinuxEnergySource(const std::string& root = "/");

  bool sample() override;
  std::optional<EnergyInterval> interval() override;

 private:
  enum class Part { package, core, uncore, dram };
  struct Zone {
    Part part;
    HeldFile counter;            // microjoules so far
    std::int64_t range = 0;      // the counter starts at 0 again behind this; 0 when unknown
    std::int64_t previous = 0;   // of the sample before
    std::int64_t newest = 0;     // of the newest sample
    std::int64_t candidate = 0;  // of a sample that is being taken
  };

  void addZone(const std::string& directory);
  static std::optional<std::int64_t> difference(const Zone& zone);

  std::vector<Zone> zones_;
  int samples_ = 0;  // 0, 1 or 2: how many stand in the zones
};

}  // namespace embrix
