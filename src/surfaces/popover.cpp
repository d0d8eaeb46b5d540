#include "surfaces/popover.h"

#include <algorithm>
#include <utility>

#include <fmt/format.h>

#include "base/format.h"
#include "model/left_running.h"
#include "running/stop_message.h"
#include "surfaces/calm_rule_menu.h"

namespace embrix {

Popover::Popover(PowerModel& model, DesktopActions desktop)
    : model_(model), desktop_(std::move(desktop)), visible_(model) {
  const auto whenChanged = [this](const auto& observed) {
    subscriptions_.push_back(observed.subscribe([this](const auto&) { refresh(); }));
  };
  whenChanged(model_.frame());
  whenChanged(model_.baseline());
  whenChanged(model_.calmed());
  whenChanged(model_.calmRules());
  whenChanged(model_.kept());
  whenChanged(model_.lastFreed());
  refresh();
}

double Popover::now() const {
  return *model_.frame() ? (*model_.frame())->date : 0;
}

void Popover::refresh() {
  // A row is known to have been stopped until it is gone.
  const auto rows = model_.forgottenRows();
  std::erase_if(stopping_, [&](const std::string& id) {
    return std::none_of(rows.begin(), rows.end(),
                        [&](const ForgottenRow& row) { return row.id() == id; });
  });
  hero_ = HeroContent::of(model_);
  facts_ = FactsContent::of(model_);
  leftRunning_ = LeftRunningContent::of(model_, stopping_);
  awake_ = AwakeContent::of(model_, now());
  servers_ = *model_.frame() ? ServersContent::of((*model_.frame())->servers) : std::nullopt;
}

void Popover::open(DashboardSection section) {
  model_.showSection(section);
  // The panel, and this with it, may be gone when it is dismissed.
  const auto openDashboard = desktop_.openDashboard;
  desktop_.dismiss();
  openDashboard(section);
}

void Popover::calmOrRestoreCulprit() {
  const auto culprit = hero_->culprit;
  if (!culprit) return;
  const auto targets = model_.targetsInGroup(culprit->groupKey);
  culprit->isCalmed ? model_.restore(targets) : model_.calm(targets);
}

void Popover::chooseForCulprit(std::string_view action) {
  const auto culprit = hero_->culprit;
  if (!culprit || !*model_.frame()) return;
  if (action == "quit") {
    confirmation_.ask(fmt::format("Quit {}?", culprit->name), "Anything unsaved in it is lost.",
                      "Quit", [this, key = culprit->groupKey] {
                        for (const ProcessRow& row : model_.targetsInGroup(key)) model_.quit(row);
                      });
    return;
  }
  for (const AppGroup& group : (*model_.frame())->groups) {
    if (group.identity.key != culprit->groupKey) continue;
    CalmRuleMenu::choose(model_, group.identity.name.string(), action);
    return;
  }
}

std::optional<ForgottenRow> Popover::rowOf(const std::string& id) const {
  for (ForgottenRow& row : model_.forgottenRows()) {
    if (row.id() == id) return std::move(row);
  }
  return std::nullopt;
}

void Popover::askToStopRow(const std::string& id) {
  const auto row = rowOf(id);
  if (!row) return;
  const std::string& title = row->item.title;
  const bool isSimulator = row->item.simulatorUDID.has_value();
  confirmation_.ask(fmt::format("{} {}?", isSimulator ? "Shut down" : "Stop", title),
                    StopMessage::forgotten(*row), isSimulator ? "Shut Down" : "Stop",
                    [this, row = *row] { stopRow(row); });
}

void Popover::stopRow(const ForgottenRow& row) {
  const std::string id = row.id().string();
  stopping_.insert(id);
  floatAway_(id, fmt::format("+{}", Format::memoryShort(row.memoryBytes())));
  refresh();
  model_.stop(row);
}

void Popover::askToStopAll() {
  const auto rows = model_.forgottenRows();
  if (rows.empty()) return;
  confirmation_.ask(fmt::format("Stop all {} things left running?", rows.size()),
                    StopMessage::all(rows), "Stop All", [this] { model_.stopAllForgotten(); });
}

void Popover::chooseForRow(const std::string& id, std::string_view action) {
  const auto row = rowOf(id);
  if (!row) return;
  if (action == "stop") askToStopRow(id);
  if (action == "calm") model_.calm(row->processes);
  if (action == "restore") model_.restore(row->processes);
  if (action == "keep") model_.keep(row->item);
  if (action == "reveal" && row->item.root.directory) {
    desktop_.reveal(row->item.root.directory->string());
  }
}

void Popover::askToStopBlocker(const std::string& id) {
  for (const SleepBlocker& blocker : AwakeContent::awakeBlockers(model_, now())) {
    if (fmt::format("{}", blocker.pid) != id) continue;
    confirmation_.ask(fmt::format("Stop {}?", BlockerContent::nameOf(blocker)),
                      "Your Mac can sleep again once it quits. Anything unsaved in it is lost.",
                      "Stop", [this, pid = blocker.pid] { model_.stop(pid); });
    return;
  }
}

std::optional<LocalServer> Popover::serverOf(const std::string& id) const {
  if (!*model_.frame()) return std::nullopt;
  for (const LocalServer& server : (*model_.frame())->servers) {
    if (server.id() == id) return server;
  }
  return std::nullopt;
}

void Popover::openServer(const std::string& id) {
  const auto server = serverOf(id);
  if (!server) return;
  if (const auto url = server->url()) desktop_.openURL(*url);
}

void Popover::chooseForServer(const std::string& id, std::string_view action) {
  const auto server = serverOf(id);
  if (!server) return;
  const auto url = server->url();
  if (action == "copy" && url) desktop_.copy(*url);
  if (action == "reveal" && server->process.directory) {
    desktop_.reveal(server->process.directory->string());
  }
}

std::vector<MenuItem> Popover::settingsMenu() {
  return {
      {.action = "settings", .label = "Settings…", .shortcut = "Ctrl+,", .isOn = {}, .items = {}},
      {.action = "update", .label = "Check for Updates…"},
      MenuItem::divider(),
      {.action = "quit", .label = "Quit Embrix", .shortcut = "Ctrl+Q", .isOn = {}, .items = {}}};
}

void Popover::chooseSetting(std::string_view action) {
  if (action == "settings") open(DashboardSection::settings);
  if (action == "update") desktop_.checkForUpdates();
  if (action == "quit") desktop_.terminate();
}

}  // namespace embrix
