#include "sampling/system_power.h"

#include <algorithm>
#include <limits>

namespace embrix {

std::optional<std::int32_t> electricalAt(const PropertyMap& properties, std::string_view key) {
  const auto number = integerAt(properties, key);
  if (!number || *number < std::numeric_limits<std::int32_t>::min() ||
      *number > std::numeric_limits<std::uint32_t>::max()) {
    return std::nullopt;
  }
  return static_cast<std::int32_t>(*number);
}

std::optional<std::int32_t> voltageAt(const PropertyMap& properties) {
  const auto millivolts = electricalAt(properties, "Voltage");
  return millivolts && *millivolts >= 0 ? millivolts : std::nullopt;
}

namespace {

// Positive while the battery charges, negative while it drains. Millivolts times milliamperes pass
// 32 bits at once; as doubles they are exact far beyond.
std::optional<double> batteryWatts(const PropertyMap& properties) {
  const auto millivolts = voltageAt(properties);
  auto milliamperes = electricalAt(properties, "InstantAmperage");
  if (!milliamperes) milliamperes = electricalAt(properties, "Amperage");
  if (!millivolts || !milliamperes) return std::nullopt;
  return static_cast<double>(*millivolts) * static_cast<double>(*milliamperes) / 1e6;
}

// A figure of the power telemetry, in watts. Telemetry that stands at 0 or below is not running.
std::optional<double> telemetryWatts(const PropertyMap& properties, std::string_view key) {
  const PropertyMap* telemetry = mapAt(properties, "PowerTelemetryData");
  if (telemetry == nullptr) return std::nullopt;
  const auto milliwatts = electricalAt(*telemetry, key);
  if (!milliwatts || *milliwatts < 1) return std::nullopt;
  return *milliwatts / 1000.0;
}

}  // namespace

std::optional<double> SystemPower::watts(const PropertyMap& properties) {
  const auto battery = batteryWatts(properties);
  if (booleanAt(properties, "ExternalConnected").value_or(false)) {
    if (const auto in = telemetryWatts(properties, "SystemPowerIn")) {
      return std::max(*in - battery.value_or(0), 0.0);
    }
  }
  if (const auto load = telemetryWatts(properties, "SystemLoad")) return load;
  if (battery && *battery < 0) return -*battery;
  return std::nullopt;
}

}  // namespace embrix
