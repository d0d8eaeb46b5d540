#include "hosts/linux/session_events.h"

#include <fcntl.h>

#include <utility>

namespace embrix {

namespace {

constexpr const char* kService = "org.freedesktop.login1";
constexpr const char* kPath = "/org/freedesktop/login1";
constexpr const char* kInterface = "org.freedesktop.login1.Manager";
constexpr double kTimeoutSeconds = 20;

constexpr const char* kWho = "Embrix";
constexpr const char* kWhy = "Embrix notes the battery's charge before sleep";

void call(const std::function<void()>& callback) {
  if (callback) callback();
}

}  // namespace

LinuxSessionEvents::LinuxSessionEvents(LinuxEventLoop& loop, std::shared_ptr<BusConnection> system)
    : system_(std::move(system)),
      loginService_(*system_, kService, [this](sd_bus* bus) { loginServiceChanged(bus); }) {
  loop.onEnd([this] { call(listener_.willTerminate); });
  system_->onDown([this] {
    lock_.close();
    inhibitCall_.reset();
    sleepSignal_.reset();
  });
  system_->onUp([this](sd_bus* bus) {
    const BusSignal prepares = {kService, kPath, kInterface, "PrepareForSleep"};
    sleepSignal_ = onBusSignal(
        bus, prepares, [this, bus](sd_bus_message* message) { preparesForSleep(bus, message); });
  });
}

void LinuxSessionEvents::listen(Listener listener) {
  listener_ = std::move(listener);
  if (std::exchange(isListening_, true)) return;
  // A connection that there was before has its service known already.
  sd_bus* const bus = system_->bus();
  if (bus != nullptr && !loginService_.owner().empty()) takeLock(bus);
}

void LinuxSessionEvents::loginServiceChanged(sd_bus* bus) {
  lock_.close();
  inhibitCall_.reset();
  if (!loginService_.owner().empty() && isListening_) takeLock(bus);
}

void LinuxSessionEvents::takeLock(sd_bus* bus) {
  const BusMessage inhibit = newBusCall(bus, kService, kPath, kInterface, "Inhibit");
  if (!inhibit || sd_bus_message_append(inhibit.get(), "ssss", "sleep", kWho, kWhy, "delay") < 0) {
    return;
  }
  inhibitCall_ = sendBusCall(bus, inhibit.get(), kTimeoutSeconds, [this](sd_bus_message* answer) {
    int lock = -1;
    if (sd_bus_message_is_method_error(answer, nullptr) <= 0 &&
        sd_bus_message_read(answer, "h", &lock) > 0) {
      // The message closes its own.
      lock_ = Descriptor(::fcntl(lock, F_DUPFD_CLOEXEC, 0));
    }
    inhibitCall_.reset();
  });
}

void LinuxSessionEvents::preparesForSleep(sd_bus* bus, sd_bus_message* message) {
  int begins = 0;
  if (!isListening_ || !loginService_.sent(message) ||
      sd_bus_message_read(message, "b", &begins) <= 0) {
    return;
  }
  if (begins != 0) {
    call(listener_.willSleep);
    inhibitCall_.reset();
    lock_.close();
  } else {
    call(listener_.didWake);
    takeLock(bus);
  }
}

}  // namespace embrix
