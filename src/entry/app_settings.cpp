#include "entry/app_settings.h"

#include <string>

#include "entry/appearance_mode.h"
#include "model/setting_keys.h"

namespace embrix {

void AppSettings::registerInto(Settings& settings) {
  settings.registerDefault(SettingKeys::kSampleInterval, 2.0);
  settings.registerDefault(SettingKeys::kShowWattsInMenuBar, true);
  settings.registerDefault(SettingKeys::kWarmWatts, 8.0);
  settings.registerDefault(SettingKeys::kHotWatts, 15.0);
  settings.registerDefault(SettingKeys::kRunawayNotifications, false);
  settings.registerDefault(SettingKeys::kAlertWatts, 3.0);
  settings.registerDefault(SettingKeys::kAlertMinutes, 5.0);
  settings.registerDefault(kAppearance, std::string(appearanceWord(AppearanceMode::system)));
  settings.registerDefault(SettingKeys::kAutomaticHeat, true);
  settings.registerDefault(kAnimateMenuBarFlame, false);
  settings.registerDefault(kHasSeenTour, false);
}

}  // namespace embrix
