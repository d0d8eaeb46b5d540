// What is asked of a bus and heard from it, as functions that live as long as their handle. Main
// thread only.
#pragma once

#include <systemd/sd-bus.h>

#include <functional>
#include <memory>

namespace embrix {

struct DropBusMessage {
  void operator()(sd_bus_message* message) const { sd_bus_message_unref(message); }
};
using BusMessage = std::unique_ptr<sd_bus_message, DropBusMessage>;

struct DropBusSlot {
  void operator()(sd_bus_slot* slot) const { sd_bus_slot_unref(slot); }
};
// While it is kept, its function can be called. The function may let it go.
using BusSlot = std::unique_ptr<sd_bus_slot, DropBusSlot>;

// Takes a message as it came, of whatever types.
using BusHandler = std::function<void(sd_bus_message*)>;

// A call to make. Null when it cannot be made, as with a name that is none.
BusMessage newBusCall(sd_bus* bus, const char* destination, const char* path, const char* interface,
                      const char* member);

// Sends the call. `answered` is called once, with the answer or with the error that stands for it:
// the other side's, a time-out, a bus that went. Null, and nothing is called, when it cannot be
// sent.
BusSlot sendBusCall(sd_bus* bus, sd_bus_message* call, double timeoutSeconds, BusHandler answered);

// A kind of signal, as the bus is told of it. Texts hold no apostrophe.
struct BusSignal {
  const char* sender;
  const char* path;
  const char* interface;
  const char* member;
  const char* firstArgument = nullptr;  // null: whichever it has
};

// Every such signal that arrives, of whichever sender: the bus lets through those of the one that
// has the sender's name, but anybody may send one to this program alone.
BusSlot onBusSignal(sd_bus* bus, const BusSignal& signal, BusHandler arrived);

}  // namespace embrix
