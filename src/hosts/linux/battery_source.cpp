#include "hosts/linux/battery_source.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <string_view>
#include <utility>

namespace embrix {

namespace {

// Plugs come and go with docks, second batteries with their bays. At a read every two seconds this
// is a look into the folder once a minute.
constexpr int kReadsBetweenDiscoveries = 30;

using Batteries = std::vector<BatteryState>;
using Field = std::optional<double> BatteryState::*;

// The field summed over all batteries at the first one's voltage; see the header. Capacities told
// in energy are divided by that voltage, charges and currents scaled to it.
std::optional<double> sum(const Batteries& batteries, Field field, bool isCapacity) {
  if (batteries.empty()) return std::nullopt;
  const auto reference = batteries.front().millivolts;
  double total = 0;
  for (const BatteryState& battery : batteries) {
    const auto value = battery.*field;
    if (!value) return std::nullopt;
    const bool isEnergy = isCapacity && battery.isEnergy;
    if (!isEnergy && batteries.size() == 1) return value;
    if (!reference || (!isEnergy && !battery.millivolts)) return std::nullopt;
    total += *value * (isEnergy ? 1000 : *battery.millivolts) / *reference;
  }
  return total;
}

std::optional<double> capacity(const Batteries& batteries, Field field) {
  return sum(batteries, field, true);
}

std::optional<double> current(const Batteries& batteries, Field field) {
  return sum(batteries, field, false);
}

void put(PropertyMap& map, std::string_view key, std::optional<double> number) {
  if (number) map.emplace(key, static_cast<std::int64_t>(std::llround(*number)));
}

bool any(const Batteries& batteries, BatteryStatus status) {
  return std::any_of(batteries.begin(), batteries.end(),
                     [=](const BatteryState& battery) { return battery.status == status; });
}

std::optional<int> percent(const Batteries& batteries) {
  if (batteries.size() == 1) return batteries.front().percent;
  const auto now = capacity(batteries, &BatteryState::now);
  const auto full = capacity(batteries, &BatteryState::full);
  if (!now || !full || *full <= 0) return std::nullopt;
  return static_cast<int>(std::clamp(std::round(*now / *full * 100), 0.0, 100.0));
}

// Minutes until empty at the present current, or as the one battery's own gauge says.
std::optional<double> minutesToEmpty(const Batteries& batteries) {
  if (!any(batteries, BatteryStatus::discharging)) return std::nullopt;
  if (batteries.size() == 1 && batteries.front().secondsToEmpty) {
    return std::floor(*batteries.front().secondsToEmpty / 60);
  }
  auto milliamperes = current(batteries, &BatteryState::averageMilliamperes);
  if (!milliamperes) milliamperes = current(batteries, &BatteryState::milliamperes);
  const auto now = capacity(batteries, &BatteryState::now);
  // Under ten milliamperes a gauge that has not settled is likelier than a year of battery.
  if (!now || !milliamperes || *milliamperes > -10) return std::nullopt;
  return std::floor(*now / -*milliamperes * 60);
}

}  // namespace

LinuxBatterySource::LinuxBatterySource(const std::string& root)
    : directory_(belowRoot(root, "/sys/class/power_supply")) {
  discover();
  hasService_ = !batteries_.empty();
}

void LinuxBatterySource::discover() {
  readsSinceDiscovery_ = 0;
  batteries_.clear();
  plugs_.clear();
  for (const std::string& name : namesIn(directory_)) {
    const std::string entry = directory_ + "/" + name;
    switch (supplyKind(entry)) {
      case SupplyKind::battery:
        batteries_.emplace_back(entry);
        break;
      case SupplyKind::plug:
        plugs_.emplace_back(entry + "/online");
        break;
      case SupplyKind::other:
        break;
    }
  }
}

LinuxBatterySource::Reading LinuxBatterySource::read() {
  if (++readsSinceDiscovery_ > kReadsBetweenDiscoveries) discover();
  Reading reading;
  for (BatteryEntry& entry : batteries_) {
    if (auto state = entry.read()) reading.batteries.push_back(*state);
  }
  for (HeldFile& plug : plugs_) {
    const auto online = plug.integer();  // 0 off, 1 on, 2 on with a voltage that was agreed upon
    if (online)
      reading.isExternalConnected = reading.isExternalConnected.value_or(false) || *online > 0;
  }
  if (!reading.isExternalConnected) {
    // A machine whose plug has no driver: a battery that charges or drains tells as much.
    if (any(reading.batteries, BatteryStatus::charging)) {
      reading.isExternalConnected = true;
    } else if (any(reading.batteries, BatteryStatus::discharging)) {
      reading.isExternalConnected = false;
    }
  }
  return reading;
}

std::optional<PropertyMap> LinuxBatterySource::registry() {
  if (!hasService_) return std::nullopt;
  fresh_ = read();
  const Batteries& batteries = fresh_->batteries;
  if (batteries.empty()) return std::nullopt;
  PropertyMap map;
  put(map, "AppleRawMaxCapacity", capacity(batteries, &BatteryState::full));
  put(map, "DesignCapacity", capacity(batteries, &BatteryState::design));
  put(map, "AppleRawCurrentCapacity", capacity(batteries, &BatteryState::now));
  put(map, "Voltage", batteries.front().millivolts);
  put(map, "InstantAmperage", current(batteries, &BatteryState::milliamperes));
  put(map, "Amperage", current(batteries, &BatteryState::averageMilliamperes));
  std::optional<int> cycles;
  for (const BatteryState& battery : batteries) cycles = std::max(cycles, battery.cycles);
  if (cycles) map.emplace("CycleCount", *cycles);
  if (fresh_->isExternalConnected) map.emplace("ExternalConnected", *fresh_->isExternalConnected);
  return map;
}

std::vector<PropertyMap> LinuxBatterySource::powerSources() {
  if (!hasService_) return {};
  const Reading reading = fresh_ ? *std::exchange(fresh_, std::nullopt) : read();
  const Batteries& batteries = reading.batteries;
  if (batteries.empty()) return {};
  PropertyMap map;
  map.emplace("Type", "InternalBattery");
  const bool isCharging = any(batteries, BatteryStatus::charging);
  map.emplace("Is Charging", isCharging);
  if (reading.isExternalConnected) {
    map.emplace("Power Source State", *reading.isExternalConnected ? "AC Power" : "Battery Power");
  }
  if (const auto charge = percent(batteries)) map.emplace("Current Capacity", *charge);
  put(map, "Time to Empty", minutesToEmpty(batteries));
  return {std::move(map)};
}

}  // namespace embrix
