// The names under which the settings keep what the model reads, and what it stores there itself.
#pragma once

#include <string_view>

namespace embrix {

struct SettingKeys {
  static constexpr std::string_view kSampleInterval = "sampleInterval";  // seconds between frames
  static constexpr std::string_view kShowWattsInMenuBar = "showWattsInMenuBar";
  static constexpr std::string_view kAutomaticHeat = "automaticHeat";  // thresholds are learnt
  static constexpr std::string_view kWarmWatts = "warmWatts";          // threshold set by hand
  static constexpr std::string_view kHotWatts = "hotWatts";            // threshold set by hand
  static constexpr std::string_view kRunawayNotifications = "runawayNotifications";
  static constexpr std::string_view kAlertWatts = "alertWatts";
  static constexpr std::string_view kAlertMinutes = "alertMinutes";

  // Stored by the model, without a registered default.
  static constexpr std::string_view kCalmRules = "calmRules";          // bytes of a JSON array
  static constexpr std::string_view kKeptForgotten = "keptForgotten";  // a list of texts
};

}  // namespace embrix
