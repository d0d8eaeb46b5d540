// The user's settings: their keys, and the defaults that hold until the user changes them.
#pragma once

#include <string_view>

#include "host/settings.h"

namespace embrix {

struct AppSettings {
  static constexpr std::string_view kSampleInterval = "sampleInterval";  // seconds between ticks
  static constexpr std::string_view kShowWattsInMenuBar = "showWattsInMenuBar";
  static constexpr std::string_view kWarmWatts = "warmWatts";  // load threshold
  static constexpr std::string_view kHotWatts = "hotWatts";    // load threshold
  static constexpr std::string_view kRunawayNotifications = "runawayNotifications";
  static constexpr std::string_view kAlertWatts = "alertWatts";
  static constexpr std::string_view kAlertMinutes = "alertMinutes";
  static constexpr std::string_view kAppearance = "appearance";        // word of an AppearanceMode
  static constexpr std::string_view kAutomaticHeat = "automaticHeat";  // thresholds are learnt
  static constexpr std::string_view kAnimateMenuBarFlame = "animateMenuBarFlame";
  static constexpr std::string_view kHasSeenTour = "hasSeenTour";

  // Has no registered default: false until it is set.
  static constexpr std::string_view kHasSeenWelcome = "hasSeenWelcome";

  // Lays the defaults below what the user set. They are never written to disk.
  static void registerInto(Settings& settings);
};

}  // namespace embrix
