#include "hosts/linux/bus_slot.h"

#include <algorithm>
#include <cstdint>
#include <string>
#include <utility>

#include <fmt/format.h>

namespace embrix {

namespace {

int handle(sd_bus_message* message, void* handler, sd_bus_error*) {
  (*static_cast<BusHandler*>(handler))(message);
  return 0;
}

void destroyHandler(void* handler) {
  delete static_cast<BusHandler*>(handler);
}

// The slot owns its function from here on; the library destroys it once no call of it runs.
BusSlot owning(sd_bus_slot* slot, std::unique_ptr<BusHandler> handler) {
  sd_bus_slot_set_destroy_callback(slot, destroyHandler);
  [[maybe_unused]] BusHandler* const owned = handler.release();
  return BusSlot(slot);
}

}  // namespace

BusMessage newBusCall(sd_bus* bus, const char* destination, const char* path, const char* interface,
                      const char* member) {
  sd_bus_message* call = nullptr;
  sd_bus_message_new_method_call(bus, &call, destination, path, interface, member);
  return BusMessage(call);
}

BusSlot sendBusCall(sd_bus* bus, sd_bus_message* call, double timeoutSeconds, BusHandler answered) {
  auto handler = std::make_unique<BusHandler>(std::move(answered));
  sd_bus_slot* slot = nullptr;
  // A time-out of 0 would mean the library's own.
  const double microseconds = std::max(timeoutSeconds * 1e6, 1.0);
  if (sd_bus_call_async(bus, &slot, call, handle, handler.get(),
                        static_cast<std::uint64_t>(microseconds)) < 0) {
    return nullptr;
  }
  return owning(slot, std::move(handler));
}

BusSlot onBusSignal(sd_bus* bus, const BusSignal& signal, BusHandler arrived) {
  std::string rule = fmt::format("type='signal',sender='{}',path='{}',interface='{}',member='{}'",
                                 signal.sender, signal.path, signal.interface, signal.member);
  if (signal.firstArgument != nullptr) rule += fmt::format(",arg0='{}'", signal.firstArgument);
  auto handler = std::make_unique<BusHandler>(std::move(arrived));
  sd_bus_slot* slot = nullptr;
  if (sd_bus_add_match_async(bus, &slot, rule.c_str(), handle, nullptr, handler.get()) < 0) {
    return nullptr;
  }
  return owning(slot, std::move(handler));
}

}  // namespace embrix
