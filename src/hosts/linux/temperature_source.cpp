#include "hosts/linux/temperature_source.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

namespace embrix {

namespace {

// Drivers whose every sensor lies on the processor's die; "cpu_thermal" and its numbered kin are
// named by boards' device trees.
constexpr std::array<std::string_view, 6> kDieDrivers = {
    "coretemp", "k10temp", "zenpower", "k8temp", "via_cputemp", "soc_thermal",
};
constexpr std::array<std::string_view, 2> kDiskDrivers = {"nvme", "drivetemp"};
constexpr std::string_view kDieMark = " tdie";

template <std::size_t N>
bool isOneOf(const std::array<std::string_view, N>& list, std::string_view name) {
  return std::find(list.begin(), list.end(), name) != list.end();
}

// "cpu_thermal", "cpu-thermal", "cpu0-thermal", "cpu-1-2-thermal", "cpuss0-thermal".
bool isBoardsCPU(std::string_view name) {
  return name.starts_with("cpu") && name.ends_with("thermal");
}

bool isDieZone(std::string_view type) {
  return type == "x86_pkg_temp" || type == "soc_thermal" || type == "soc-thermal" ||
         isBoardsCPU(type);
}

}  // namespace

LinuxTemperatureSource::LinuxTemperatureSource(const std::string& root) {
  const std::string monitors = belowRoot(root, "/sys/class/hwmon");
  for (const std::string& name : namesIn(monitors)) addMonitor(monitors + "/" + name);
  if (!hasDie_) addZones(belowRoot(root, "/sys/class/thermal"));
}

void LinuxTemperatureSource::addMonitor(const std::string& directory) {
  const std::string driver = readSystemLine(directory + "/name").value_or("");
  if (isOneOf(kDiskDrivers, driver)) return;
  const bool isDie = isOneOf(kDieDrivers, driver) || isBoardsCPU(driver);

  std::vector<std::pair<std::string, std::string>> found;  // label, file
  for (const std::string& name : namesIn(directory)) {
    constexpr std::string_view kInput = "_input";
    if (!name.starts_with("temp") || !name.ends_with(kInput)) continue;
    const std::string stem = directory + "/" + name.substr(0, name.size() - kInput.size());
    found.emplace_back(readSystemLine(stem + "_label").value_or(""), directory + "/" + name);
  }
  const bool hasTdie = std::any_of(found.begin(), found.end(),
                                   [](const auto& sensor) { return sensor.first == "Tdie"; });
  for (auto& [label, file] : found) {
    std::string product = driver;
    if (!label.empty()) product.append(product.empty() ? "" : " ").append(label);
    const bool isOnDie = isDie && !(hasTdie && label == "Tctl");
    if (isOnDie) product.append(kDieMark);
    hasDie_ = hasDie_ || isOnDie;
    sensors_.push_back({std::move(product), HeldFile(std::move(file))});
  }
}

void LinuxTemperatureSource::addZones(const std::string& directory) {
  for (const std::string& name : namesIn(directory)) {
    if (!name.starts_with("thermal_zone")) continue;
    const std::string zone = directory + "/" + name;
    auto type = readSystemLine(zone + "/type");
    if (!type || !isDieZone(*type)) continue;
    sensors_.push_back({type->append(kDieMark), HeldFile(zone + "/temp")});
  }
}

std::vector<std::string> LinuxTemperatureSource::sensors() {
  std::vector<std::string> products;
  for (const Sensor& sensor : sensors_) products.push_back(sensor.product);
  return products;
}

std::optional<double> LinuxTemperatureSource::read(std::size_t index) {
  if (index >= sensors_.size()) return std::nullopt;
  const auto millidegrees = sensors_[index].millidegrees.integer();
  if (!millidegrees) return std::nullopt;
  return static_cast<double>(*millidegrees) / 1000;
}

}  // namespace embrix
