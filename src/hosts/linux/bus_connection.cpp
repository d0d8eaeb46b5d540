#include "hosts/linux/bus_connection.h"

#include <algorithm>
#include <utility>

namespace embrix {

namespace {

// A bus that is started anew is back within seconds; one that stays away costs a wakeup a minute.
constexpr double kFirstRetrySeconds = 1;
constexpr double kLongestRetrySeconds = 60;

// The library's own signals to the program that holds the connection.
constexpr BusSignal local(const char* member) {
  return {.sender = "org.freedesktop.DBus.Local",
          .path = "/org/freedesktop/DBus/Local",
          .interface = "org.freedesktop.DBus.Local",
          .member = member};
}

}  // namespace

void BusConnection::CloseBus::operator()(sd_bus* bus) const {
  sd_bus_detach_event(bus);
  sd_bus_close_unref(bus);
}

BusConnection::BusConnection(LinuxEventLoop& loop, std::string address)
    : loop_(loop), address_(std::move(address)), retrySeconds_(kFirstRetrySeconds) {}

BusConnection::~BusConnection() = default;

void BusConnection::onUp(std::function<void(sd_bus*)> callback) {
  if (bus_ && sd_bus_is_open(bus_.get()) > 0) callback(bus_.get());
  ups_.push_back(std::move(callback));
}

void BusConnection::onDown(std::function<void()> callback) {
  downs_.push_back(std::move(callback));
}

sd_bus* BusConnection::bus() {
  if (!bus_ && !connect()) return nullptr;
  return sd_bus_is_open(bus_.get()) > 0 ? bus_.get() : nullptr;
}

bool BusConnection::connect() {
  if (address_.empty()) return false;
  sd_bus* made = nullptr;
  if (sd_bus_new(&made) < 0) return false;
  std::unique_ptr<sd_bus, CloseBus> bus(made);
  if (sd_bus_set_address(made, address_.c_str()) < 0 || sd_bus_set_bus_client(made, 1) < 0 ||
      sd_bus_set_connected_signal(made, 1) < 0 || sd_bus_start(made) < 0 ||
      sd_bus_attach_event(made, loop_.event(), SD_EVENT_PRIORITY_NORMAL) < 0) {
    return false;
  }
  bus_ = std::move(bus);
  connected_ = onBusSignal(made, local("Connected"), [this](sd_bus_message*) {
    wasUp_ = true;
    retrySeconds_ = kFirstRetrySeconds;
  });
  // The bus is still in use while it tells this.
  disconnected_ = onBusSignal(made, local("Disconnected"), [this](sd_bus_message*) {
    losing_ = loop_.scheduler().after(0, [this] { lose(); });
  });
  for (const auto& up : ups_) up(made);
  return true;
}

void BusConnection::lose() {
  for (const auto& down : downs_) down();
  connected_.reset();
  disconnected_.reset();
  bus_.reset();
  if (wasUp_) tryAgainLater();
}

void BusConnection::tryAgainLater() {
  retry_ = loop_.scheduler().after(retrySeconds_, [this] {
    if (bus() == nullptr) tryAgainLater();
  });
  retrySeconds_ = std::min(retrySeconds_ * 2, kLongestRetrySeconds);
}

}  // namespace embrix
