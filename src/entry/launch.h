// The few facts of this launch that the rest of the program asks for. One for each run.
// Main thread only.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "host/settings.h"

namespace embrix {

class Launch {
 public:
  // `arguments` as the process got them, its own name first. `stores` must outlive this.
  Launch(std::vector<std::string> arguments, SettingsStores& stores);

  const std::vector<std::string>& arguments() const { return arguments_; }

  // A test run: settings that start empty, no updates, no animation.
  bool isUITesting() const { return isUITesting_; }

  // A test run on demo data.
  bool usesFixture() const { return usesFixture_; }

  // The user's settings, or those of the test run. Opened at the first call, so a run that only
  // prints a report touches no settings. A test run empties its own first and then takes the --set
  // pairs; if it cannot have its own it reads the user's and sets nothing there.
  Settings& defaults();

 private:
  Settings openDefaults() const;

  std::vector<std::string> arguments_;
  SettingsStores& stores_;
  bool isUITesting_;
  bool usesFixture_;
  std::optional<Settings> defaults_;
};

}  // namespace embrix
