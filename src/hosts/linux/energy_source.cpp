#include "hosts/linux/energy_source.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

namespace embrix {

LinuxEnergySource::LinuxEnergySource(const std::string& root) {
  const std::string zones = belowRoot(root, "/sys/class/powercap");
  for (const std::string& name : namesIn(zones)) {
    if (name.starts_with("intel-rapl:")) addZone(zones + "/" + name);
  }
}

void LinuxEnergySource::addZone(const std::string& directory) {
  const auto name = readSystemLine(directory + "/name");
  if (!name) return;
  Part part;
  if (name->starts_with("package")) {
    part = Part::package;  // "package-0"; "package-0-die-1" where a package has several
  } else if (*name == "core") {
    part = Part::core;
  } else if (*name == "uncore") {
    part = Part::uncore;
  } else if (*name == "dram") {
    part = Part::dram;
  } else {
    return;
  }
  Zone zone{.part = part, .counter = HeldFile(directory + "/energy_uj")};
  const auto counter = zone.counter.integer();
  if (!counter || *counter < 0) return;
  zone.range =
      std::max<std::int64_t>(readInteger(directory + "/max_energy_range_uj").value_or(0), 0);
  zones_.push_back(std::move(zone));
}

bool LinuxEnergySource::sample() {
  for (Zone& zone : zones_) {
    const auto counter = zone.counter.integer();
    if (!counter || *counter < 0) return false;
    zone.candidate = *counter;
  }
  if (zones_.empty()) return false;
  for (Zone& zone : zones_) {
    zone.previous = std::exchange(zone.newest, zone.candidate);
  }
  samples_ = std::min(samples_ + 1, 2);
  return true;
}

std::optional<std::int64_t> LinuxEnergySource::difference(const Zone& zone) {
  if (zone.newest >= zone.previous) return zone.newest - zone.previous;
  // The counter began again. At the end of its range that is a small step; after a deep sleep it is
  // a reset, and what was used in between is not known.
  if (zone.previous > zone.range) return std::nullopt;
  const std::int64_t step = zone.range - zone.previous + zone.newest;
  return step <= zone.range / 2 ? std::optional(step) : std::nullopt;
}

std::optional<EnergyInterval> LinuxEnergySource::interval() {
  if (samples_ < 2) return std::nullopt;
  std::array<std::optional<std::int64_t>, 4> sums;
  for (const Zone& zone : zones_) {
    const auto step = difference(zone);
    auto& sum = sums[static_cast<std::size_t>(zone.part)];
    // 281 megajoules: hours of what no machine of this kind draws. It keeps the sums in range.
    constexpr std::int64_t kMostPerZone = std::int64_t{1} << 48;
    if (!step || *step > kMostPerZone) return std::nullopt;
    sum = sum.value_or(0) + *step;
  }
  const auto sumOf = [&](Part part) { return sums[static_cast<std::size_t>(part)]; };
  const auto graphics = sumOf(Part::uncore);
  EnergyInterval interval;
  const auto add = [&](std::string_view name, std::optional<std::int64_t> microjoules) {
    if (microjoules) interval.channels.push_back({std::string(name), "uJ", *microjoules});
  };
  if (const auto package = sumOf(Part::package)) {
    add("CPU Energy", std::max<std::int64_t>(*package - graphics.value_or(0), 0));
  } else {
    add("CPU Energy", sumOf(Part::core));
  }
  add("GPU Energy", graphics);
  add("DRAM", sumOf(Part::dram));
  return interval;
}

}  // namespace embrix
