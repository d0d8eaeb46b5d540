#include "hosts/linux/power_supply.h"

#include <array>
#include <cmath>
#include <string_view>

namespace embrix {

namespace {

// Millionths as the kernel writes them. A thousand of anything here (volts, amperes, hours of them)
// is more than a machine that a person carries can hold.
constexpr double kMostMillionths = 1e9;

BatteryStatus statusOf(std::string_view text) {
  if (text.starts_with("Charging")) return BatteryStatus::charging;
  if (text.starts_with("Discharging")) return BatteryStatus::discharging;
  if (text.starts_with("Full")) return BatteryStatus::full;
  if (text.starts_with("Not charging")) return BatteryStatus::notCharging;
  return BatteryStatus::unknown;
}

// Drivers disagree on the sign, so the status decides where it says anything. Else the driver's own
// sign stands.
double signedBy(BatteryStatus status, double milliamperes) {
  if (status == BatteryStatus::charging) return std::abs(milliamperes);
  if (status == BatteryStatus::discharging) return -std::abs(milliamperes);
  return milliamperes;
}

}  // namespace

SupplyKind supplyKind(const std::string& directory) {
  if (readSystemLine(directory + "/scope") == "Device") return SupplyKind::other;
  const auto type = readSystemLine(directory + "/type");
  if (!type) return SupplyKind::other;
  if (*type == "Battery") return SupplyKind::battery;
  // "USB", "USB_PD", "USB_C", ... on older kernels each kind of plug had a type of its own.
  if (*type == "Mains" || *type == "Wireless" || type->starts_with("USB")) return SupplyKind::plug;
  return SupplyKind::other;
}

BatteryEntry::BatteryEntry(const std::string& directory)
    : present_(directory + "/present"),
      status_(directory + "/status"),
      capacity_(directory + "/capacity"),
      cycles_(directory + "/cycle_count"),
      voltage_(directory + "/voltage_now"),
      timeToEmpty_(directory + "/time_to_empty_now"),
      currentNow_(directory + "/current_now"),
      currentAverage_(directory + "/current_avg"),
      powerNow_(directory + "/power_now"),
      chargeFull_(directory + "/charge_full"),
      chargeDesign_(directory + "/charge_full_design"),
      chargeNow_(directory + "/charge_now"),
      energyFull_(directory + "/energy_full"),
      energyDesign_(directory + "/energy_full_design"),
      energyNow_(directory + "/energy_now") {}

std::optional<double> BatteryEntry::thousandths(HeldFile& file) {
  const auto millionths = file.integer();
  if (!millionths) return std::nullopt;
  const auto number = static_cast<double>(*millionths);
  if (std::abs(number) > kMostMillionths) return std::nullopt;
  return number / 1000;
}

std::optional<double> BatteryEntry::magnitude(HeldFile& file) {
  const auto number = thousandths(file);
  return number && *number >= 0 ? number : std::nullopt;
}

std::optional<BatteryState> BatteryEntry::read() {
  if (present_.integer() == 0) return std::nullopt;
  BatteryState state;
  std::array<char, 64> buffer;
  const auto status = status_.read(buffer);
  if (status) state.status = statusOf(*status);
  const auto percent = capacity_.integer();
  if (percent && *percent >= 0 && *percent <= 100) state.percent = static_cast<int>(*percent);
  if (const auto cycles = cycles_.integer(); cycles && *cycles >= 1 && *cycles <= 100'000) {
    state.cycles = static_cast<int>(*cycles);
  }
  if (const auto millivolts = magnitude(voltage_); millivolts && *millivolts > 0) {
    state.millivolts = millivolts;
  }
  readCapacities(state);
  readCurrents(state);
  const auto seconds = timeToEmpty_.integer();
  constexpr std::int64_t kMostSeconds = 30 * 86400;
  if (seconds && *seconds > 0 && *seconds <= kMostSeconds) {
    state.secondsToEmpty = static_cast<double>(*seconds);
  }
  const bool tellsAnything = status || state.percent || state.now || state.full;
  return tellsAnything ? std::optional(state) : std::nullopt;
}

void BatteryEntry::readCapacities(BatteryState& state) {
  state.full = magnitude(chargeFull_);
  state.now = magnitude(chargeNow_);
  if (state.full || state.now) {
    state.design = magnitude(chargeDesign_);
    return;
  }
  state.isEnergy = true;
  state.full = magnitude(energyFull_);
  state.now = magnitude(energyNow_);
  state.design = magnitude(energyDesign_);
}

void BatteryEntry::readCurrents(BatteryState& state) {
  auto milliamperes = thousandths(currentNow_);
  if (!milliamperes && state.millivolts) {
    if (const auto milliwatts = thousandths(powerNow_)) {
      milliamperes = *milliwatts / *state.millivolts * 1000;
    }
  }
  if (milliamperes) state.milliamperes = signedBy(state.status, *milliamperes);
  if (const auto average = thousandths(currentAverage_)) {
    state.averageMilliamperes = signedBy(state.status, *average);
  }
}

}  // namespace embrix
