#include "surfaces/facts_content.h"

#include <algorithm>

#include <fmt/format.h>

#include "base/format.h"
#include "model/wording.h"

namespace embrix {

namespace {

std::string batteryText(const PowerModel& model, const BatteryReading& battery) {
  std::string text = battery.percent ? fmt::format("{}%", *battery.percent) : "–";
  if (battery.isCharging) return text + " · Charging";
  if (battery.externalConnected) return text + " · Plugged in";
  if (const auto minutes = model.runtimeAtWatts(model.totalWatts())) {
    text += " · " + Format::durationMinutes(Wording::wholeMinutes(*minutes));
  }
  return text;
}

}  // namespace

std::string FactsContent::fansText(const std::vector<Fan>& fans) {
  constexpr double kTurning = 100;  // rpm
  if (fans.empty()) return "No fans";
  const double fastest = std::max_element(fans.begin(), fans.end(), [](const Fan& a, const Fan& b) {
                           return a.rpm < b.rpm;
                         })->rpm;
  if (fastest < kTurning) return "Fans off";
  return fmt::format("Fans {:.0f} rpm", fastest);
}

FactsContent FactsContent::of(const PowerModel& model) {
  FactsContent content;
  content.fans = fansText({});
  if (!*model.frame()) return content;
  const Frame& frame = **model.frame();
  if (frame.battery) {
    content.battery = {.fraction = frame.battery->percent.value_or(0) / 100.0,
                       .text = batteryText(model, *frame.battery)};
  }
  if (frame.temperature) content.temperature = fmt::format("{:.0f}°C chip", *frame.temperature);
  content.fans = fansText(frame.fans);
  return content;
}

}  // namespace embrix
