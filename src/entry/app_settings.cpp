#include "entry/app_settings.h"

#include <string>

#include "entry/appearance_mode.h"

namespace embrix {

void AppSettings::registerInto(Settings& settings) {
  settings.registerDefault(kSampleInterval, 2.0);
  settings.registerDefault(kShowWattsInMenuBar, true);
  settings.registerDefault(kWarmWatts, 8.0);
  settings.registerDefault(kHotWatts, 15.0);
  settings.registerDefault(kRunawayNotifications, false);
  settings.registerDefault(kAlertWatts, 3.0);
  settings.registerDefault(kAlertMinutes, 5.0);
  settings.registerDefault(kAppearance, std::string(appearanceWord(AppearanceMode::system)));
  settings.registerDefault(kAutomaticHeat, true);
  settings.registerDefault(kAnimateMenuBarFlame, false);
  settings.registerDefault(kHasSeenTour, false);
}

}  // namespace embrix
