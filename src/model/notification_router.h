// The program's notifications: their one kind with buttons, and what an answer of the user means.
// What is done then is the handler's. Main thread only.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "host/notifier.h"

namespace embrix {

class NotificationRouter {
 public:
  enum class Action { calm, stop, snooze, open };

  // The group's key is empty when the notification named none.
  using Handler = std::function<void(Action action, const std::string& groupKey)>;

  // The kind of notification that has the three buttons.
  static constexpr const char* kHotApp = "hot-app";

  // The notifier must outlive this.
  explicit NotificationRouter(Notifier& notifier) : notifier_(notifier) {}

  // Announces the buttons and hears of the user's answers from now on.
  void install(Handler handler);

  // Shows it now, in place of an earlier one of the same identifier.
  void post(const Notification& notification) { notifier_.post(notification); }

  static std::string_view actionWord(Action action);

  // What the answer asks for; absent for an action that is none of ours, a dismissal among them.
  static std::optional<Action> actionOf(const NotificationResponse& response);

 private:
  Notifier& notifier_;
};

}  // namespace embrix
