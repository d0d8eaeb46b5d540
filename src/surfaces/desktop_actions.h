// What a surface asks of the desktop around it. A plain record of functions, none of them empty.
// Main thread only.
#pragma once

#include <functional>
#include <string>

#include "model/dashboard_section.h"

namespace embrix {

struct DesktopActions {
  std::function<void(DashboardSection)> openDashboard = [](DashboardSection) {};
  std::function<void()> dismiss = [] {};  // closes the popover
  std::function<void(const std::string& url)> openURL = [](const std::string&) {};
  std::function<void(const std::string& folder)> reveal = [](const std::string&) {};
  std::function<void(const std::string& text)> copy = [](const std::string&) {};
  std::function<void()> checkForUpdates = [] {};
  std::function<void()> terminate = [] {};  // ends the program
};

}  // namespace embrix
