#include "hosts/linux/gpu_busy.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

namespace embrix {

namespace {

// "card0", and not its connectors "card0-eDP-1".
bool isCard(const std::string& name) {
  return name.starts_with("card") && name.size() > 4 &&
         name.find_first_not_of("0123456789", 4) == std::string::npos;
}

}  // namespace

GpuBusy::GpuBusy(const std::string& root) {
  const std::string drm = belowRoot(root, "/sys/class/drm");
  bool isFound = false;
  for (const std::string& name : namesIn(drm)) {
    hasDevice_ = hasDevice_ || isCard(name) || name.starts_with("renderD");
    if (isCard(name) && !isFound) isFound = addCard(drm + "/" + name);
  }
}

bool GpuBusy::addCard(const std::string& card) {
  HeldFile percent(card + "/device/gpu_busy_percent");
  HeldFile powerState(card + "/device/power/runtime_status");
  std::array<char, 32> buffer;
  const auto state = powerState.read(buffer);
  const bool isAsleep = state && state->starts_with("suspended");
  // A card that sleeps is not asked; its file is there all the same.
  const auto names = isAsleep ? namesIn(card + "/device") : std::vector<std::string>{};
  if (isAsleep ? std::find(names.begin(), names.end(), "gpu_busy_percent") != names.end()
               : percent.integer().has_value()) {
    percent_ = std::move(percent);
    powerState_ = std::move(powerState);
    return true;
  }
  std::vector<std::string> files;
  for (const std::string& part : namesIn(card + "/gt")) {
    files.push_back(card + "/gt/" + part + "/rc6_residency_ms");
  }
  for (const std::string& tile : namesIn(card + "/device")) {
    if (!tile.starts_with("tile")) continue;
    for (const std::string& part : namesIn(card + "/device/" + tile)) {
      if (!part.starts_with("gt")) continue;
      files.push_back(card + "/device/" + tile + "/" + part + "/gtidle/idle_residency_ms");
    }
  }
  for (std::string& file : files) {
    Residency residency{HeldFile(std::move(file)), std::nullopt};
    if (residency.milliseconds.integer()) residencies_.push_back(std::move(residency));
  }
  return !residencies_.empty();
}

std::optional<int> GpuBusy::read(double uptime) {
  if (!percent_) return readResidencies(uptime);
  std::array<char, 32> buffer;
  const auto state = powerState_->read(buffer);
  if (state && state->starts_with("suspended")) return std::nullopt;
  const auto percent = percent_->integer();
  if (!percent || *percent < 0 || *percent > 100) return std::nullopt;
  return static_cast<int>(*percent);
}

std::optional<int> GpuBusy::readResidencies(double uptime) {
  const auto before = std::exchange(previousUptime_, uptime);
  std::optional<double> busiest;
  for (Residency& residency : residencies_) {
    const auto now = residency.milliseconds.integer();
    const auto previous = std::exchange(residency.previous, now);
    if (!now || !previous || *now < *previous || !before || !(uptime > *before)) continue;
    const double asleep = static_cast<double>(*now - *previous) / 1000 / (uptime - *before);
    busiest = std::max(busiest.value_or(0), 1 - std::min(asleep, 1.0));
  }
  if (!busiest) return std::nullopt;
  return static_cast<int>(std::lround(*busiest * 100));
}

}  // namespace embrix
