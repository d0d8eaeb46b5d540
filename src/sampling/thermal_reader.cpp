#include "sampling/thermal_reader.h"

#include <algorithm>
#include <numeric>
#include <string>

namespace embrix {

namespace {

// What lies outside is a sensor that is not wired up or has not woken.
constexpr double kLowest = 0;
constexpr double kHighest = 150;

constexpr std::size_t kReadsPerTick = 2;

std::vector<std::size_t> chosenSensors(const std::vector<std::string>& names) {
  std::vector<std::size_t> chosen;
  for (std::size_t i = 0; i < names.size(); ++i) {
    if (names[i].find("tdie") != std::string::npos) chosen.push_back(i);
  }
  if (chosen.empty()) {
    chosen.resize(names.size());
    std::iota(chosen.begin(), chosen.end(), std::size_t{0});
  }
  return chosen;
}

}  // namespace

ThermalReader::ThermalReader(TemperatureSource& source)
    : source_(source), sensors_(chosenSensors(source.sensors())), latest_(sensors_.size()) {}

std::optional<double> ThermalReader::cpuTemperature() {
  const std::size_t wanted = shouldReadAll() ? sensors_.size() : kReadsPerTick;
  for (std::size_t i = 0; i < std::min(wanted, sensors_.size()); ++i) readNext();
  // An absent entry is less than any number.
  return latest_.empty() ? std::nullopt : *std::max_element(latest_.begin(), latest_.end());
}

bool ThermalReader::shouldReadAll() const {
  return cursor_ == 0 && std::find(latest_.begin(), latest_.end(), std::nullopt) != latest_.end();
}

void ThermalReader::readNext() {
  const auto celsius = source_.read(sensors_[cursor_]);
  // A sensor without an event keeps its last word; one that answers nonsense loses it.
  if (celsius) {
    const bool isValid = *celsius >= kLowest && *celsius <= kHighest;
    latest_[cursor_] = isValid ? celsius : std::nullopt;
  }
  cursor_ = (cursor_ + 1) % sensors_.size();
}

}  // namespace embrix
