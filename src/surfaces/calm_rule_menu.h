// The submenu by which an app gets an Auto-Calm rule. Main thread only, as the model is.
#pragma once

#include <string>
#include <string_view>

#include "model/power_model.h"
#include "surfaces/menu_item.h"

namespace embrix {

struct CalmRuleMenu {
  // "Auto-Calm <appName>" with a toggle for each condition.
  static MenuItem make(const PowerModel& model, const std::string& appName);

  // Switches the toggle of that action: on takes the place of what was on. False for an action of
  // another menu.
  static bool choose(PowerModel& model, const std::string& appName, std::string_view action);
};

}  // namespace embrix
