#include "model/notification_router.h"

#include <array>
#include <utility>
#include <vector>

namespace embrix {

namespace {

using Action = NotificationRouter::Action;

constexpr std::array kActions = {Action::calm, Action::stop, Action::snooze, Action::open};

NotificationAction button(Action action, const char* title, bool isDestructive = false) {
  return {.identifier = std::string(NotificationRouter::actionWord(action)),
          .title = title,
          .isDestructive = isDestructive};
}

NotificationCategory hotApp() {
  return {.identifier = NotificationRouter::kHotApp,
          .actions = {button(Action::calm, "Calm (efficiency cores)"),
                      button(Action::stop, "Stop", true), button(Action::snooze, "Snooze 1 hour")}};
}

}  // namespace

void NotificationRouter::install(Handler handler) {
  std::vector<NotificationCategory> categories;
  categories.push_back(hotApp());
  notifier_.install(std::move(categories),
                    [handler = std::move(handler)](const NotificationResponse& response) {
                      const auto action = actionOf(response);
                      if (action) handler(*action, response.group.value_or(std::string()));
                    });
}

std::string_view NotificationRouter::actionWord(Action action) {
  switch (action) {
    case Action::calm:
      return "calm";
    case Action::stop:
      return "stop";
    case Action::snooze:
      return "snooze";
    case Action::open:
      return "open";
  }
  return "open";
}

std::optional<Action> NotificationRouter::actionOf(const NotificationResponse& response) {
  if (response.action == kDefaultAction) return Action::open;
  for (const Action action : kActions) {
    if (actionWord(action) == response.action) return action;
  }
  return std::nullopt;
}

}  // namespace embrix
