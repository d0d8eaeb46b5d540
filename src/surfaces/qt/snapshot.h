// Pictures of the surfaces, taken off screen of the real views. Main thread only.
#pragma once

#include <string>

#include "model/power_model.h"
#include "surfaces/qt/surface_engine.h"

namespace embrix {

struct Snapshot {
  static constexpr double kWait = 1.5;  // seconds that a surface has to come to rest

  // Every picture of the list, in both appearances, of a model that shows demo data. The folder is
  // made if it is missing. False when a picture could not be written.
  static bool render(SurfaceEngine& engine, PowerModel& model, Scheduler& scheduler,
                     const std::string& folder);

  // The application's icon.
  static bool renderIcon(const std::string& path);
};

}  // namespace embrix
