#include "hosts/linux/bus_peer.h"

#include <string_view>
#include <utility>

namespace embrix {

namespace {

constexpr const char* kBusName = "org.freedesktop.DBus";
constexpr const char* kBusPath = "/org/freedesktop/DBus";
constexpr double kTimeoutSeconds = 20;

}  // namespace

BusPeer::BusPeer(BusConnection& connection, std::string name, std::function<void(sd_bus*)> changed)
    : name_(std::move(name)), changed_(std::move(changed)) {
  connection.onDown([this] {
    ownerSignal_.reset();
    ownerCall_.reset();
    owner_.clear();
  });
  connection.onUp([this](sd_bus* bus) { listen(bus); });
}

bool BusPeer::sent(sd_bus_message* message) const {
  const char* const sender = sd_bus_message_get_sender(message);
  return sender != nullptr && !owner_.empty() && owner_ == sender;
}

void BusPeer::listen(sd_bus* bus) {
  // First the signal, then the question: a change in between is told twice, and never missed.
  const BusSignal ownerChanged = {.sender = kBusName,
                                  .path = kBusPath,
                                  .interface = kBusName,
                                  .member = "NameOwnerChanged",
                                  .firstArgument = name_.c_str()};
  ownerSignal_ = onBusSignal(bus, ownerChanged, [this, bus](sd_bus_message* message) {
    const char* const sender = sd_bus_message_get_sender(message);
    const char* name = nullptr;
    const char* before = nullptr;
    const char* after = nullptr;
    if (sender == nullptr || std::string_view(sender) != kBusName ||
        sd_bus_message_read(message, "sss", &name, &before, &after) < 0 || name_ != name) {
      return;
    }
    ownerCall_.reset();
    ownerIs(bus, after);
  });
  const BusMessage call = newBusCall(bus, kBusName, kBusPath, kBusName, "GetNameOwner");
  if (!call || sd_bus_message_append(call.get(), "s", name_.c_str()) < 0) return;
  ownerCall_ = sendBusCall(bus, call.get(), kTimeoutSeconds, [this, bus](sd_bus_message* answer) {
    const char* owner = nullptr;
    if (sd_bus_message_is_method_error(answer, nullptr) <= 0 &&
        sd_bus_message_read(answer, "s", &owner) > 0) {
      ownerIs(bus, owner);
    }
  });
}

void BusPeer::ownerIs(sd_bus* bus, const char* owner) {
  if (owner_ == owner) return;
  owner_ = owner;
  changed_(bus);
}

}  // namespace embrix
