// A desktop that shows notifications in a list, and a user who answers them.
#pragma once

#include <map>
#include <string>
#include <utility>
#include <vector>

#include "host/notifier.h"

namespace embrix {

class ScriptedNotifier final : public Notifier {
 public:
  std::vector<NotificationCategory> categories;
  std::vector<Notification> posted;             // all, in order
  std::map<std::string, Notification> showing;  // by identifier
  bool refuses = false;                         // as without permission

  void install(std::vector<NotificationCategory> installed, Respond respond) override {
    categories = std::move(installed);
    respond_ = std::move(respond);
  }

  void post(const Notification& notification) override {
    posted.push_back(notification);
    if (!refuses) showing.insert_or_assign(notification.identifier, notification);
  }

  // The user does this with the notification that shows, which goes away.
  void answer(const std::string& identifier, const std::string& action) {
    const auto shown = showing.find(identifier);
    if (shown == showing.end()) return;
    const Notification notification = shown->second;
    showing.erase(shown);
    respond({.action = action, .group = notification.group});
  }

  void respond(const NotificationResponse& response) {
    if (respond_) respond_(response);
  }

 private:
  Respond respond_;
};

}  // namespace embrix
