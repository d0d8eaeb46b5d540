#include "entry/app_settings.h"

#include <string>

#include "model/setting_keys.h"
#include "surfaces/appearance_mode.h"
#include "surfaces/surface_settings.h"

namespace embrix {

void AppSettings::registerInto(Settings& settings) {
  settings.registerDefault(SettingKeys::kSampleInterval, 2.0);
  settings.registerDefault(SettingKeys::kShowWattsInMenuBar, true);
  settings.registerDefault(SettingKeys::kWarmWatts, 8.0);
  settings.registerDefault(SettingKeys::kHotWatts, 15.0);
  settings.registerDefault(SettingKeys::kRunawayNotifications, false);
  settings.registerDefault(SettingKeys::kAlertWatts, 3.0);
  settings.registerDefault(SettingKeys::kAlertMinutes, 5.0);
  settings.registerDefault(SurfaceSettings::kAppearance,
                           std::string(appearanceWord(AppearanceMode::system)));
  settings.registerDefault(SettingKeys::kAutomaticHeat, true);
  settings.registerDefault(SurfaceSettings::kAnimateMenuBarFlame, false);
  settings.registerDefault(SurfaceSettings::kHasSeenTour, false);
}

}  // namespace embrix
