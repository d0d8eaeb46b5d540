// The machine's batteries and plugs, in the names of the platform that the readers know.
//
// Several batteries (laptops with a second one in a bay) are shown as one: their energies and
// powers add up, and are told as charge and current at the first one's voltage, so that capacity ×
// voltage and current × voltage are the sums again. A field that one of them lacks is absent for
// all. The cycle count is the most worn one's.
//
// There is no telemetry of the adapter's input: what the machine draws is known on battery alone.
// Sampling thread only.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "host/battery_source.h"
#include "hosts/linux/power_supply.h"

namespace embrix {

class LinuxBatterySource final : public BatterySource {
 public:
  explicit LinuxBatterySource(const std::string& root = "/");

  bool hasService() override { return hasService_; }

  // Absent when no battery is in the machine just now.
  std::optional<PropertyMap> registry() override;

  // One description for all batteries, or none. When called right behind registry(), it tells of
  // that same reading.
  std::vector<PropertyMap> powerSources() override;

 private:
  struct Reading {
    std::vector<BatteryState> batteries;      // those in the machine
    std::optional<bool> isExternalConnected;  // absent when neither a plug nor a battery tells
  };

  void discover();
  Reading read();

  std::string directory_;
  std::vector<BatteryEntry> batteries_;
  std::vector<HeldFile> plugs_;  // each plug's "online"
  bool hasService_ = false;
  int readsSinceDiscovery_ = 0;
  std::optional<Reading> fresh_;  // what registry() has read and powerSources() has not told yet
};

}  // namespace embrix
