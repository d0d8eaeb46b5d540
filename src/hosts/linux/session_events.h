// Sleep and wake as the login service tells them (org.freedesktop.login1), and the program's own
// end.
//
// A lock that delays sleep is held while somebody listens: the machine waits for willSleep, at most
// as long as the service allows (5 seconds unless the administrator says otherwise). Without a
// system bus or a login service nothing is told of sleep.
#pragma once

#include <memory>

#include "base/descriptor.h"
#include "host/session_events.h"
#include "hosts/linux/bus_connection.h"
#include "hosts/linux/bus_peer.h"
#include "hosts/linux/event_loop.h"

namespace embrix {

class LinuxSessionEvents final : public SessionEvents {
 public:
  // `system`: the bus of the whole machine. The loop outlives this.
  LinuxSessionEvents(LinuxEventLoop& loop, std::shared_ptr<BusConnection> system);

  void listen(Listener listener) override;

 private:
  void loginServiceChanged(sd_bus* bus);
  void takeLock(sd_bus* bus);
  void preparesForSleep(sd_bus* bus, sd_bus_message* message);

  std::shared_ptr<BusConnection> system_;
  Listener listener_;
  bool isListening_ = false;
  Descriptor lock_;  // open while the machine waits for us before it sleeps
  BusSlot inhibitCall_;
  BusSlot sleepSignal_;
  BusPeer loginService_;  // last: its callbacks use the rest
};

}  // namespace embrix
