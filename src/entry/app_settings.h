// The defaults of the user's settings, which hold until the user changes them. Their keys stand in
// SettingKeys and SurfaceSettings.
#pragma once

#include <string_view>

#include "host/settings.h"

namespace embrix {

struct AppSettings {
  // Lays the defaults below what the user set. They are never written to disk.
  static void registerInto(Settings& settings);
};

}  // namespace embrix
