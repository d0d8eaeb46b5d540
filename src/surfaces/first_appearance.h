// What the program does once, as soon as its label stands in the menu bar: it tells the model how a
// page of the dashboard is opened, welcomes a new user, and opens the page that the command line
// asks for. Main thread only.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "base/scheduler.h"
#include "model/dashboard_section.h"
#include "model/power_model.h"

namespace embrix {

class FirstAppearance {
 public:
  static constexpr double kWelcomeDelay = 3;  // seconds

  // Opens the dashboard's window, or shows the one that is open; in front of everything only where
  // it `activates`.
  using OpenWindow = std::function<void(bool activates)>;

  // Does it all. The model and the scheduler outlive this. A run that takes pictures welcomes
  // nobody.
  FirstAppearance(PowerModel& model, Scheduler& scheduler,
                  const std::vector<std::string>& arguments, bool isSnapshotRun,
                  OpenWindow openWindow);
  FirstAppearance(const FirstAppearance&) = delete;
  FirstAppearance& operator=(const FirstAppearance&) = delete;
  ~FirstAppearance();

  // The page that --dashboard asks for: absent without the option, the overview for a word that is
  // missing or names no page.
  static std::optional<DashboardSection> requestedSection(
      const std::vector<std::string>& arguments);

 private:
  void open(DashboardSection section, bool activates);

  PowerModel& model_;
  OpenWindow openWindow_;
  Scheduled welcome_;
};

}  // namespace embrix
