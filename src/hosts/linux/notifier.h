// Notifications through the desktop's service (org.freedesktop.Notifications, version 1.2). Without
// a bus or a service, what is posted is dropped.
//
// The service is asked what it can do when the first notification is posted, and anew after it was
// exchanged for another. One call runs at a time, so that a notification that follows another of
// its name knows the number of the one that it replaces.
#pragma once

#include <cstdint>
#include <deque>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "host/notifier.h"
#include "hosts/linux/bus_connection.h"
#include "hosts/linux/bus_peer.h"

namespace embrix {

class DesktopNotifier final : public Notifier {
 public:
  // `session`: the bus of the login session.
  explicit DesktopNotifier(std::shared_ptr<BusConnection> session);

  void install(std::vector<NotificationCategory> categories, Respond respond) override;
  void post(const Notification& notification) override;

 private:
  struct Capabilities {
    bool actions = false;
    bool bodyMarkup = false;
  };
  // One that the service has taken. Kept while the user can still answer it.
  struct Posted {
    std::uint32_t number = 0;  // the service's
    Notification notification;
  };

  void next();
  bool askCapabilities(sd_bus* bus);
  bool send(sd_bus* bus, const Notification& notification);
  BusMessage callFor(sd_bus* bus, const Notification& notification) const;
  const NotificationCategory* categoryOf(const Notification& notification) const;
  void remember(std::uint32_t number, const Notification& notification);
  void startOver();
  void listen(sd_bus* bus);
  void actionWasInvoked(sd_bus_message* message);
  void wasClosed(sd_bus_message* message);

  std::shared_ptr<BusConnection> session_;
  std::vector<NotificationCategory> categories_;
  Respond respond_;

  std::optional<Capabilities> capabilities_;  // absent until the service told them
  std::deque<Notification> waiting_;
  std::vector<Posted> posted_;  // oldest first
  BusSlot call_;                // the one that runs
  BusSlot invoked_;
  BusSlot closed_;
  BusPeer service_;  // last: its callbacks use the rest
};

}  // namespace embrix
