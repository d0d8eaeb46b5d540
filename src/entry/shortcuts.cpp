#include "entry/shortcuts.h"

#include <cmath>
#include <functional>
#include <utility>

#include <fmt/format.h>

#include "model/power_model.h"
#include "model/total_watts.h"
#include "model/wording.h"

namespace embrix {

namespace {

using Perform = std::function<ActionOutcome(PowerModel& model, const Frame& frame)>;

void whenReady(ActionReply reply, Perform perform) {
  PowerModel* const model = PowerModel::shared();
  if (model == nullptr) {
    reply(Shortcuts::notReady());
    return;
  }
  model->waitForFrame(Shortcuts::kLongestWait,
                      [model, reply = std::move(reply),
                       perform = std::move(perform)](const std::optional<Frame>& frame) {
                        reply(frame ? perform(*model, *frame) : Shortcuts::notReady());
                      });
}

ActionOutcome said(std::string dialog) {
  return ActionResult{.value = {}, .dialog = std::move(dialog)};
}

ActionOutcome systemPower(const Frame& frame) {
  constexpr double kTenths = 10;
  const double watts = std::round(totalWatts(frame) * kTenths) / kTenths;
  return ActionResult{.value = watts,
                      .dialog = fmt::format("Your Mac is drawing {}.", Wording::watts(watts))};
}

ActionOutcome hottestApp(const PowerModel& model, const Frame& frame) {
  if (frame.groups.empty()) {
    return ActionResult{.value = std::string(), .dialog = "Nothing is running."};
  }
  const AppGroup& hottest = frame.groups.front();
  const std::string told = fmt::format("{} · {}", model.subjectForGroup(hottest.identity.key),
                                       Wording::watts(hottest.watts));
  return ActionResult{.value = told, .dialog = told};
}

std::vector<ProcessRow> ownTargets(const PowerModel& model, const AppGroup& group) {
  auto targets = model.targetsInGroup(group.identity.key);
  std::erase_if(targets, [&](const ProcessRow& row) { return row.uid != model.uid(); });
  return targets;
}

std::string belongsToSystem(const AppGroup& group, std::string_view done) {
  return fmt::format("{} belongs to the system and can't be {}.", group.identity.name.view(), done);
}

ActionOutcome calmHottest(PowerModel& model, const Frame& frame) {
  if (frame.groups.empty()) return said("Nothing to calm.");
  const AppGroup& hottest = frame.groups.front();
  const auto targets = ownTargets(model, hottest);
  if (targets.empty()) return said(belongsToSystem(hottest, "calmed"));
  const std::string subject = model.subjectForGroup(hottest.identity.key);
  model.calm(targets);
  return said(fmt::format("Calmed {}.", subject));
}

ActionOutcome stopHottest(PowerModel& model, const Frame& frame) {
  if (frame.groups.empty()) return said("Nothing to stop.");
  const AppGroup& hottest = frame.groups.front();
  const auto targets = ownTargets(model, hottest);
  if (targets.empty()) return said(belongsToSystem(hottest, "stopped"));
  // First, while it still runs.
  const std::string subject = model.subjectForGroup(hottest.identity.key);
  for (const ProcessRow& row : targets) model.quit(row);
  return said(fmt::format("Stopped {}.", subject));
}

}  // namespace

ActionError Shortcuts::notReady() {
  return {.text = "Embrix is still measuring. Try again in a moment."};
}

void Shortcuts::getHottestApp(ActionReply reply) {
  whenReady(std::move(reply), hottestApp);
}

void Shortcuts::getSystemPower(ActionReply reply) {
  whenReady(std::move(reply),
            [](const PowerModel&, const Frame& frame) { return systemPower(frame); });
}

void Shortcuts::calmHottestApp(ActionReply reply) {
  whenReady(std::move(reply), calmHottest);
}

void Shortcuts::stopHottestApp(ActionReply reply) {
  whenReady(std::move(reply), stopHottest);
}

void Shortcuts::openConsole(const ActionReply& reply) {
  if (PowerModel* model = PowerModel::shared()) model->openConsole();
  reply(ActionResult{});
}

std::vector<PublishedAction> Shortcuts::actions() {
  using Value = PublishedAction::Value;
  return {{.name = "GetHottestAppIntent",
           .title = "Get Hottest App",
           .value = Value::text,
           .perform = getHottestApp},
          {.name = "GetSystemPowerIntent",
           .title = "Get Mac Power Draw",
           .value = Value::number,
           .perform = getSystemPower},
          {.name = "CalmHottestAppIntent",
           .title = "Calm Hottest App",
           .value = Value::none,
           .perform = calmHottestApp},
          {.name = "StopHottestAppIntent",
           .title = "Stop Hottest App",
           .value = Value::none,
           .perform = stopHottestApp},
          {.name = "OpenConsoleIntent",
           .title = "Open Embrix",
           .value = Value::none,
           .perform = openConsole}};
}

std::vector<EmbrixShortcuts::Suggestion> EmbrixShortcuts::suggestions() {
  return {{.action = "GetHottestAppIntent",
           .phrase = "What is heating my Mac in",
           .shortTitle = "Hottest App",
           .systemImage = "flame"},
          {.action = "CalmHottestAppIntent",
           .phrase = "Calm the hottest app with",
           .shortTitle = "Calm Hottest App",
           .systemImage = "snowflake"},
          {.action = "GetSystemPowerIntent",
           .phrase = "Get power draw from",
           .shortTitle = "Power Draw",
           .systemImage = "bolt"},
          {.action = "OpenConsoleIntent",
           .phrase = "Open",
           .shortTitle = "Open Embrix",
           .systemImage = "flame"}};
}

}  // namespace embrix
