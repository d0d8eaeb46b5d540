#include "hosts/linux/thermal_state_source.h"

#include <algorithm>
#include <set>
#include <string_view>
#include <utility>

namespace embrix {

LinuxThermalStateSource::LinuxThermalStateSource(const std::string& root) {
  const std::string thermal = belowRoot(root, "/sys/class/thermal");
  for (const std::string& name : namesIn(thermal)) {
    if (name.starts_with("thermal_zone")) addZone(thermal + "/" + name);
  }
  addCounters(belowRoot(root, "/sys/devices/system/cpu"));
}

void LinuxThermalStateSource::addZone(const std::string& directory) {
  Zone zone{.temperature = HeldFile(directory + "/temp"), .passive = {}, .hot = {}, .critical = {}};
  for (const std::string& name : namesIn(directory)) {
    constexpr std::string_view kType = "_type";
    if (!name.starts_with("trip_point_") || !name.ends_with(kType)) continue;
    const auto type = readSystemLine(directory + "/" + name);
    const auto temperature =
        readInteger(directory + "/" + name.substr(0, name.size() - kType.size()) + "_temp");
    // Firmware says 0 or less for a trip point that it does not use.
    if (!type || !temperature || *temperature <= 0) continue;
    const auto lower = [&](std::optional<std::int64_t>& point) {
      point = std::min(point.value_or(*temperature), *temperature);
    };
    if (*type == "passive") lower(zone.passive);
    if (*type == "hot") lower(zone.hot);
    if (*type == "critical") lower(zone.critical);
  }
  if (zone.passive || zone.hot || zone.critical) zones_.push_back(std::move(zone));
}

// One counter for each package: the package's own, else that of its first core.
void LinuxThermalStateSource::addCounters(const std::string& cpus) {
  std::set<std::string> packages;
  for (const std::string& name : namesIn(cpus)) {
    if (!name.starts_with("cpu")) continue;
    const std::string cpu = cpus + "/" + name;
    const auto package = readSystemLine(cpu + "/topology/physical_package_id");
    if (!package || packages.count(*package) != 0) continue;
    for (const std::string_view file : {"package_throttle_count", "core_throttle_count"}) {
      Counter counter{HeldFile(cpu + "/thermal_throttle/" + std::string(file)), std::nullopt};
      if (!counter.events.integer()) continue;
      counters_.push_back(std::move(counter));
      packages.insert(*package);
      break;
    }
  }
}

bool LinuxThermalStateSource::hasThrottled() {
  bool hasRisen = false;
  for (Counter& counter : counters_) {
    const auto events = counter.events.integer();
    if (events && counter.previous && *events > *counter.previous) hasRisen = true;
    counter.previous = events;
  }
  return hasRisen;
}

void LinuxThermalStateSource::look(Zone& zone) {
  zone.latest = ThermalState::nominal;
  const auto temperature = zone.temperature.integer();
  if (!temperature) return;
  const auto reaches = [&](std::optional<std::int64_t> point) {
    return point && *temperature >= *point;
  };
  if (reaches(zone.passive)) zone.latest = ThermalState::fair;
  if (reaches(zone.hot)) zone.latest = ThermalState::serious;
  if (reaches(zone.critical)) zone.latest = ThermalState::critical;
}

ThermalState LinuxThermalStateSource::read() {
  ThermalState state = hasThrottled() ? ThermalState::fair : ThermalState::nominal;
  if (!hasRead_) {
    for (Zone& zone : zones_) look(zone);
  } else if (!zones_.empty()) {
    look(zones_[turn_]);
    turn_ = (turn_ + 1) % zones_.size();
  }
  hasRead_ = true;
  for (const Zone& zone : zones_) state = std::max(state, zone.latest);
  return state;
}

}  // namespace embrix
