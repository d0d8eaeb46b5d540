#include "surfaces/appearance_mode.h"

#include "surfaces/surface_settings.h"

namespace embrix {

std::string_view appearanceWord(AppearanceMode mode) {
  switch (mode) {
    case AppearanceMode::system:
      return "system";
    case AppearanceMode::light:
      return "light";
    case AppearanceMode::dark:
      return "dark";
  }
  return "system";
}

AppearanceMode currentAppearance(const Settings& settings) {
  const auto word = settings.stringFor(SurfaceSettings::kAppearance);
  for (const AppearanceMode mode : kAppearanceModes) {
    if (word == appearanceWord(mode)) return mode;
  }
  return AppearanceMode::system;
}

}  // namespace embrix
