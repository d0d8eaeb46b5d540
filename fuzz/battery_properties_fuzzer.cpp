// Any values under the keys that the battery is read by, of any type.
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <fuzzer/FuzzedDataProvider.h>

#include "host/battery_source.h"
#include "sampling/battery_reader.h"

namespace {

using embrix::Property;
using embrix::PropertyMap;

constexpr std::array<const char*, 16> kKeys = {"AppleRawMaxCapacity",
                                               "DesignCapacity",
                                               "AppleRawCurrentCapacity",
                                               "Voltage",
                                               "CycleCount",
                                               "InstantAmperage",
                                               "Amperage",
                                               "ExternalConnected",
                                               "PowerTelemetryData",
                                               "SystemPowerIn",
                                               "SystemLoad",
                                               "Type",
                                               "Time to Empty",
                                               "Power Source State",
                                               "Current Capacity",
                                               "Is Charging"};

PropertyMap mapOf(FuzzedDataProvider& data, int depth);

Property valueOf(FuzzedDataProvider& data, int depth) {
  switch (data.ConsumeIntegralInRange(0, 9)) {
    case 0:
      return data.ConsumeBool();
    case 1:
      return data.ConsumeIntegral<std::int64_t>();
    case 2:
      return std::int64_t{data.ConsumeIntegral<std::int16_t>()};
    case 3: {
      double number = 0;
      data.ConsumeData(&number, sizeof number);
      return number;
    }
    case 4:
      return "AC Power";
    case 5:
      return "InternalBattery";
    case 6:
      return data.ConsumeRandomLengthString(8);
    case 7:
      return embrix::PropertyDate{data.ConsumeFloatingPoint<double>()};
    case 8:
      return depth > 0 ? Property(mapOf(data, depth - 1)) : Property(embrix::PropertyList{});
    default:
      return {};
  }
}

PropertyMap mapOf(FuzzedDataProvider& data, int depth) {
  PropertyMap map;
  for (int i = data.ConsumeIntegralInRange(0, 12); i > 0; --i) {
    map[data.PickValueInArray(kKeys)] = valueOf(data, depth);
  }
  return map;
}

struct Battery final : embrix::BatterySource {
  bool hasService() override { return true; }
  std::optional<PropertyMap> registry() override { return properties; }
  std::vector<PropertyMap> powerSources() override { return sources; }
  PropertyMap properties;
  std::vector<PropertyMap> sources;
};

void require(bool holds) {
  if (!holds) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  FuzzedDataProvider data(bytes, size);
  Battery battery;
  battery.properties = mapOf(data, 2);
  for (int i = data.ConsumeIntegralInRange(0, 3); i > 0; --i) {
    battery.sources.push_back(mapOf(data, 1));
  }
  const auto reading = embrix::BatteryReader(battery).read();
  require(reading.has_value());
  for (const auto figure : {reading->systemWatts, reading->remainingWh, reading->fullWh}) {
    require(!figure || (std::isfinite(*figure) && *figure >= 0));
  }
  require(!reading->percent || (*reading->percent >= 0 && *reading->percent <= 100));
  require(!reading->minutesRemaining || *reading->minutesRemaining >= 1);
  require(!reading->minutesRemaining || (!reading->isCharging && !reading->externalConnected));
  require(!reading->healthPercent || *reading->healthPercent >= 0);
  require(!reading->cycleCount || *reading->cycleCount >= 0);
  return 0;
}
