// One entry of /sys/class/power_supply: a battery that feeds the machine, or a plug. Reads, turns
// the driver's units into milliamperes, millivolts, milliwatts and hours of them, and combines
// nothing. What a driver leaves out or gives as nonsense is absent. Sampling thread only.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "hosts/linux/system_file.h"

namespace embrix {

enum class BatteryStatus { unknown, charging, discharging, full, notCharging };

// Capacities are told in charge by some drivers and in energy by others; `isEnergy` says which of
// the two units the three hold.
struct BatteryState {
  BatteryStatus status = BatteryStatus::unknown;
  bool isEnergy = false;               // capacities: milliwatt-hours, else milliampere-hours
  std::optional<double> full;          // what a full charge holds today
  std::optional<double> design;        // what it held when new
  std::optional<double> now;           // what is in it
  std::optional<double> millivolts;    // now
  std::optional<double> milliamperes;  // now; negative while discharging
  std::optional<double> averageMilliamperes;
  std::optional<double> secondsToEmpty;  // by the battery's own gauge
  std::optional<int> percent;            // 0 to 100
  std::optional<int>
      cycles;  // at least 1: drivers say 0 for a count that the battery does not keep

  bool operator==(const BatteryState&) const = default;
};

class BatteryEntry {
 public:
  explicit BatteryEntry(const std::string& directory);

  // Absent when the battery is not in its bay or tells nothing at all.
  std::optional<BatteryState> read();

 private:
  std::optional<double> thousandths(HeldFile& file);
  std::optional<double> magnitude(HeldFile& file);
  void readCapacities(BatteryState& state);
  void readCurrents(BatteryState& state);

  HeldFile present_, status_, capacity_, cycles_, voltage_, timeToEmpty_;
  HeldFile currentNow_, currentAverage_, powerNow_;
  HeldFile chargeFull_, chargeDesign_, chargeNow_;
  HeldFile energyFull_, energyDesign_, energyNow_;
};

// What an entry is to the machine. Batteries of mice, pens and phones (scope "Device") and
// uninterruptible supplies are `other`.
enum class SupplyKind { battery, plug, other };
SupplyKind supplyKind(const std::string& directory);

}  // namespace embrix
