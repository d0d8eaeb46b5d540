// The user's settings: the keys that the model does not know (those are SettingKeys), and all
// defaults that hold until the user changes them.
#pragma once

#include <string_view>

#include "host/settings.h"

namespace embrix {

struct AppSettings {
  static constexpr std::string_view kAppearance = "appearance";  // word of an AppearanceMode
  static constexpr std::string_view kAnimateMenuBarFlame = "animateMenuBarFlame";
  static constexpr std::string_view kHasSeenTour = "hasSeenTour";

  // Has no registered default: false until it is set.
  static constexpr std::string_view kHasSeenWelcome = "hasSeenWelcome";

  // Lays the defaults below what the user set. They are never written to disk.
  static void registerInto(Settings& settings);
};

}  // namespace embrix
