// The rest of a login session: what it tells, what it shows, who asks for actions, and the log.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <fmt/format.h>

#include "host/action_service.h"
#include "host/control_center.h"
#include "host/log.h"
#include "host/session_events.h"

namespace embrix {

class ScriptedSessionEvents final : public SessionEvents {
 public:
  void listen(Listener listener) override { listener_ = std::move(listener); }

  void sleep() {
    if (listener_.willSleep) listener_.willSleep();
  }
  void wake() {
    if (listener_.didWake) listener_.didWake();
  }
  void terminate() {
    if (listener_.willTerminate) listener_.willTerminate();
  }
  void askForConsole() {
    if (listener_.openConsole) listener_.openConsole();
  }

 private:
  Listener listener_;
};

class ScriptedControlCenter final : public ControlCenter {
 public:
  int reloads = 0;

  void reloadAllControls() override { ++reloads; }
};

class ScriptedActionService final : public ActionService {
 public:
  std::vector<PublishedAction> actions;

  void publish(std::vector<PublishedAction> published) override { actions = std::move(published); }

  // Asks for the action; what it replies, at once or later, replaces `outcome`.
  void perform(std::string_view name) {
    outcome.reset();
    for (const PublishedAction& action : actions) {
      if (action.name != name) continue;
      action.perform([this](ActionOutcome told) { outcome = std::move(told); });
    }
  }
  std::optional<ActionOutcome> outcome;
};

class ScriptedLog final : public Log {
 public:
  std::vector<std::string> lines;  // "PowerModel: Calm 5 failed: 1"

  void error(std::string_view category, std::string_view text) override {
    lines.push_back(fmt::format("{}: {}", category, text));
  }
};

}  // namespace embrix
