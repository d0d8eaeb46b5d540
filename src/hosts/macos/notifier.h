// Notifications through the system's notification centre. A program that is not packed as an
// application has none, and what it posts is dropped.
#pragma once

#include "host/notifier.h"
#include "hosts/macos/cf_holder.h"

namespace embrix {

class MacNotifier final : public Notifier {
 public:
  MacNotifier();
  ~MacNotifier() override;
  MacNotifier(const MacNotifier&) = delete;
  MacNotifier& operator=(const MacNotifier&) = delete;

  void install(std::vector<NotificationCategory> categories, Respond respond) override;
  void post(const Notification& notification) override;

 private:
  CfHolder<CFTypeRef> delegate_;  // who hears of the user's answers; null without a centre
};

}  // namespace embrix
