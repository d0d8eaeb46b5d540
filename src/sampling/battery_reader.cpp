#include "sampling/battery_reader.h"

#include <cmath>
#include <cstdint>
#include <limits>

#include "sampling/system_power.h"

namespace embrix {

namespace {

// An integer that is at least `low` and at most `high`, or absent.
std::optional<int> integerWithin(const PropertyMap& map, std::string_view key, int low, int high) {
  const auto number = integerAt(map, key);
  if (!number || *number < low || *number > high) return std::nullopt;
  return static_cast<int>(*number);
}

constexpr int kMost = std::numeric_limits<int>::max();

void readDescription(const PropertyMap& description, BatteryReading& reading) {
  reading.isCharging = booleanAt(description, "Is Charging").value_or(false);
  reading.externalConnected = textAt(description, "Power Source State") == "AC Power";
  reading.percent = integerWithin(description, "Current Capacity", 0, 100);
  // While the system still works the time out it says -1; while charging it is time to full that
  // counts, and on the adapter neither.
  if (!reading.isCharging && !reading.externalConnected) {
    reading.minutesRemaining = integerWithin(description, "Time to Empty", 1, kMost);
  }
}

std::optional<int> healthPercent(const PropertyMap& registry) {
  const auto maximum = electricalAt(registry, "AppleRawMaxCapacity");
  const auto design = electricalAt(registry, "DesignCapacity");
  if (!maximum || *maximum < 0 || !design || *design <= 0) return std::nullopt;
  // std::round takes halves away from zero, whatever the rounding mode.
  const double percent =
      std::round(static_cast<double>(*maximum) / static_cast<double>(*design) * 100);
  if (percent > kMost) return std::nullopt;
  return static_cast<int>(percent);
}

// Watt-hours in the capacity under that key.
std::optional<double> wattHours(const PropertyMap& registry, std::string_view capacityKey) {
  const auto millivolts = voltageAt(registry);
  const auto capacity = electricalAt(registry, capacityKey);
  if (!millivolts || !capacity || *capacity <= 0) return std::nullopt;
  return *capacity / 1000.0 * (*millivolts / 1000.0);
}

void readRegistry(const PropertyMap& registry, BatteryReading& reading) {
  reading.systemWatts = SystemPower::watts(registry);
  reading.healthPercent = healthPercent(registry);
  reading.cycleCount = integerWithin(registry, "CycleCount", 0, kMost);
  reading.remainingWh = wattHours(registry, "AppleRawCurrentCapacity");
  reading.fullWh = wattHours(registry, "AppleRawMaxCapacity");
}

}  // namespace

std::optional<BatteryReading> BatteryReader::read() {
  if (!source_.hasService()) return std::nullopt;
  BatteryReading reading;
  if (const auto registry = source_.registry()) readRegistry(*registry, reading);
  for (const PropertyMap& description : source_.powerSources()) {
    if (textAt(description, "Type") != "InternalBattery") continue;
    readDescription(description, reading);
    break;
  }
  return reading;
}

}  // namespace embrix
