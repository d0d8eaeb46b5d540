// The panel that a click on the flame opens: its content, kept up with the model, and everything
// that can be done on it. It lives as long as the panel is open and keeps nothing of its own but
// the pending question and which rows were stopped. Knows no view. Main thread only.
#pragma once

#include <functional>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "base/observed.h"
#include "surfaces/awake_content.h"
#include "surfaces/confirmation.h"
#include "surfaces/desktop_actions.h"
#include "surfaces/facts_content.h"
#include "surfaces/hero_content.h"
#include "surfaces/left_running_content.h"
#include "surfaces/servers_content.h"
#include "surfaces/visible_surface.h"

namespace embrix {

class Popover {
 public:
  // What a row that was stopped lets rise: its id, and the memory that it gave back.
  using FloatAway = std::function<void(const std::string& row, const std::string& text)>;

  // The model outlives this.
  Popover(PowerModel& model, DesktopActions desktop);
  Popover(const Popover&) = delete;
  Popover& operator=(const Popover&) = delete;

  const Observed<HeroContent>& hero() const { return hero_; }
  const Observed<FactsContent>& facts() const { return facts_; }
  const Observed<LeftRunningContent>& leftRunning() const { return leftRunning_; }
  const Observed<std::vector<BlockerContent>>& awake() const { return awake_; }
  const Observed<std::optional<ServersContent>>& servers() const { return servers_; }
  Confirmation& confirmation() { return confirmation_; }
  void onFloatAway(FloatAway floatAway) { floatAway_ = std::move(floatAway); }

  // The menu behind the sliders.
  static std::vector<MenuItem> settingsMenu();

  // Closes this panel.
  void dismiss() { desktop_.dismiss(); }

  // Opens the dashboard on that page, in place of this panel.
  void open(DashboardSection section);

  void calmOrRestoreCulprit();
  void chooseForCulprit(std::string_view action);

  void askToStopRow(const std::string& id);
  void askToStopAll();
  void chooseForRow(const std::string& id, std::string_view action);

  void askToStopBlocker(const std::string& id);

  void openServer(const std::string& id);
  void chooseForServer(const std::string& id, std::string_view action);

  void chooseSetting(std::string_view action);

 private:
  void refresh();
  double now() const;  // of the frame that is shown, seconds since 1970
  std::optional<ForgottenRow> rowOf(const std::string& id) const;
  std::optional<LocalServer> serverOf(const std::string& id) const;
  void stopRow(const ForgottenRow& row);

  PowerModel& model_;
  DesktopActions desktop_;
  VisibleSurface visible_;
  Confirmation confirmation_;
  FloatAway floatAway_ = [](const std::string&, const std::string&) {};
  std::set<std::string> stopping_;  // ids of rows

  Observed<HeroContent> hero_;
  Observed<FactsContent> facts_;
  Observed<LeftRunningContent> leftRunning_;
  Observed<std::vector<BlockerContent>> awake_;
  Observed<std::optional<ServersContent>> servers_;
  std::vector<Subscription> subscriptions_;
};

}  // namespace embrix
