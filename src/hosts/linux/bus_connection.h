// This program's connection to one bus, turned by the main thread's loop. It is made when somebody
// first asks for it, and made anew when the bus goes away and comes back. No call waits for
// anybody. Whoever is to be called back lives for as long as the loop runs. Main thread only.
#pragma once

#include <systemd/sd-bus.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "base/scheduler.h"
#include "hosts/linux/bus_slot.h"
#include "hosts/linux/event_loop.h"

namespace embrix {

class BusConnection {
 public:
  // `address` as D-Bus writes it. The loop outlives this.
  BusConnection(LinuxEventLoop& loop, std::string address);
  ~BusConnection();
  BusConnection(const BusConnection&) = delete;
  BusConnection& operator=(const BusConnection&) = delete;

  // Called for each connection as it begins, and at once when there is one: the place to listen for
  // signals and to offer objects. What is sent before the bus has greeted goes out after it has.
  void onUp(std::function<void(sd_bus*)> callback);

  // Called when a connection is lost. Everything that was asked of it has then failed.
  void onDown(std::function<void()> callback);

  // The connection, which begins here if there was none. Null at once when there is no such bus,
  // and while one is being lost.
  sd_bus* bus();

 private:
  struct CloseBus {
    void operator()(sd_bus* bus) const;
  };

  bool connect();
  void lose();
  void tryAgainLater();

  LinuxEventLoop& loop_;
  std::string address_;
  std::vector<std::function<void(sd_bus*)>> ups_;
  std::vector<std::function<void()>> downs_;
  std::unique_ptr<sd_bus, CloseBus> bus_;
  BusSlot connected_;
  BusSlot disconnected_;
  // A bus that greeted once is waited for; one that never did is asked for when it is needed.
  bool wasUp_ = false;
  double retrySeconds_ = 0;
  Scheduled losing_;
  Scheduled retry_;
};

}  // namespace embrix
