#include "model/control_state.h"

#include <cmath>
#include <variant>

#include <fmt/format.h>

#include "base/json.h"

namespace embrix {

namespace {

std::optional<ControlState> decode(std::string_view bytes) {
  const auto json = parseJson(bytes);
  if (!json) return std::nullopt;
  const Json* watts = jsonAt(*json, "watts");
  const Json* hot = jsonAt(*json, "hot");
  const Json* throttling = jsonAt(*json, "throttling");
  if (watts == nullptr || hot == nullptr || throttling == nullptr) return std::nullopt;
  const auto wattsValue = jsonDouble(*watts);
  const auto hotValue = jsonBool(*hot);
  const auto throttlingValue = jsonBool(*throttling);
  if (!wattsValue || !hotValue || !throttlingValue) return std::nullopt;
  ControlState state{
      .watts = *wattsValue, .subject = {}, .hot = *hotValue, .throttling = *throttlingValue};
  const Json* subject = jsonAt(*json, "subject");
  if (subject != nullptr && !subject->is_null()) {
    state.subject = jsonText(*subject);
    if (!state.subject) return std::nullopt;
  }
  return state;
}

}  // namespace

void ControlState::save(SettingsStore* suite) const {
  if (suite == nullptr || !std::isfinite(watts)) return;
  Json json = {{"watts", watts}, {"hot", hot}, {"throttling", throttling}};
  if (subject) json["subject"] = *subject;
  suite->set(kKey, SettingData{dumpJson(json)});
}

std::optional<ControlState> ControlState::load(const SettingsStore* suite) {
  if (suite == nullptr) return std::nullopt;
  const auto stored = suite->stored(kKey);
  if (!stored) return std::nullopt;
  const auto* data = std::get_if<SettingData>(&*stored);
  return data == nullptr ? std::nullopt : decode(data->bytes);
}

std::string ControlState::title() const {
  const std::string_view state = throttling ? "Throttling"
                                 : subject  ? std::string_view(*subject)
                                 : hot      ? "Warm"
                                            : "Cool";
  return fmt::format("{:.0f} W · {}", watts, state);
}

}  // namespace embrix
