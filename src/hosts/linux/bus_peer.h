// Another program on a bus, known there by a name that it may give up or lose. Main thread only.
#pragma once

#include <systemd/sd-bus.h>

#include <functional>
#include <string>

#include "hosts/linux/bus_connection.h"
#include "hosts/linux/bus_slot.h"

namespace embrix {

class BusPeer {
 public:
  // The connection outlives this. `changed` is called after every change of owner(), with what was
  // asked of the former owner still unanswered; `connection` begins when somebody else asks for it.
  BusPeer(BusConnection& connection, std::string name, std::function<void(sd_bus*)> changed);
  BusPeer(const BusPeer&) = delete;
  BusPeer& operator=(const BusPeer&) = delete;

  // Who has the name now, as the bus numbers its clients; empty when nobody does.
  const std::string& owner() const { return owner_; }

  bool sent(sd_bus_message* message) const;

 private:
  void listen(sd_bus* bus);
  void ownerIs(sd_bus* bus, const char* owner);

  std::string name_;
  std::function<void(sd_bus*)> changed_;
  std::string owner_;
  BusSlot ownerSignal_;
  BusSlot ownerCall_;
};

}  // namespace embrix
