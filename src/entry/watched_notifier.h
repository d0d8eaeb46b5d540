// A notifier that remembers what went through it, for a run that tells of its alerts. Main thread
// only.
#pragma once

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "host/notifier.h"

namespace embrix {

class WatchedNotifier final : public Notifier {
 public:
  explicit WatchedNotifier(std::unique_ptr<Notifier> notifier) : notifier_(std::move(notifier)) {}

  void install(std::vector<NotificationCategory> categories, Respond respond) override {
    notifier_->install(std::move(categories), std::move(respond));
  }
  void post(const Notification& notification) override {
    posted_.push_back(notification.identifier);
    notifier_->post(notification);
  }

  // The identifiers of what was posted since the last call, in order.
  std::vector<std::string> takePosted() { return std::exchange(posted_, {}); }

 private:
  std::unique_ptr<Notifier> notifier_;
  std::vector<std::string> posted_;
};

}  // namespace embrix
