// The names under which the settings keep what surfaces read.
#pragma once

#include <string_view>

namespace embrix {

struct SurfaceSettings {
  static constexpr std::string_view kAppearance = "appearance";  // word of an AppearanceMode
  static constexpr std::string_view kAnimateMenuBarFlame = "animateMenuBarFlame";
  static constexpr std::string_view kHasSeenTour = "hasSeenTour";

  // Has no registered default: false until it is set.
  static constexpr std::string_view kHasSeenWelcome = "hasSeenWelcome";
};

}  // namespace embrix
