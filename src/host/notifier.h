// The notifications of the desktop. Main thread only; answers of the user come on it too.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace embrix {

// A button of a notification.
struct NotificationAction {
  std::string identifier;
  std::string title;
  bool isDestructive = false;

  bool operator==(const NotificationAction&) const = default;
};

// A kind of notification, by the buttons that it has.
struct NotificationCategory {
  std::string identifier;
  std::vector<NotificationAction> actions;  // in the order in which they stand

  bool operator==(const NotificationCategory&) const = default;
};

struct Notification {
  std::string identifier;  // one of the same identifier is replaced
  std::string title;
  std::string body;
  std::optional<std::string> group;     // comes back with the user's answer
  std::optional<std::string> category;  // absent: no buttons

  bool operator==(const Notification&) const = default;
};

// What the user did with a notification.
struct NotificationResponse {
  // The identifier of the button; kDefaultAction for the notification itself.
  std::string action;
  std::optional<std::string> group;

  bool operator==(const NotificationResponse&) const = default;
};

inline constexpr const char* kDefaultAction = "default";

class Notifier {
 public:
  using Respond = std::function<void(const NotificationResponse&)>;

  virtual ~Notifier() = default;

  // The only categories from now on, and who hears of the user's answers.
  virtual void install(std::vector<NotificationCategory> categories, Respond respond) = 0;

  // Shows it now, with the default sound. What the system refuses to show is dropped.
  virtual void post(const Notification& notification) = 0;
};

}  // namespace embrix
