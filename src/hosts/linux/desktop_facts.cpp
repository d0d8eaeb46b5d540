#include "hosts/linux/desktop_facts.h"

#include <utility>

namespace embrix {

namespace {

constexpr const char* kPortal = "org.freedesktop.portal.Desktop";
constexpr const char* kPortalPath = "/org/freedesktop/portal/desktop";
constexpr const char* kSettings = "org.freedesktop.portal.Settings";
constexpr const char* kAppearance = "org.freedesktop.appearance";
constexpr const char* kInterface = "org.gnome.desktop.interface";

constexpr const char* kIdleMonitor = "org.gnome.Mutter.IdleMonitor";
constexpr const char* kIdlePath = "/org/gnome/Mutter/IdleMonitor/Core";

// The watcher keeps the list of items; a host shows them. Either may come first.
constexpr const char* kBus = "org.freedesktop.DBus";
constexpr const char* kBusPath = "/org/freedesktop/DBus";
constexpr const char* kTrayWatcher = "org.kde.StatusNotifierWatcher";
constexpr const char* kTrayWatcherPath = "/StatusNotifierWatcher";

constexpr double kTimeoutSeconds = 20;

// Values of "color-scheme".
constexpr std::uint32_t kPrefersDark = 1;
constexpr std::uint32_t kPrefersLight = 2;

bool isError(sd_bus_message* answer) {
  return sd_bus_message_is_method_error(answer, nullptr) > 0;
}

// The number in a variant that may lie in further variants; absent when there is none. The variant
// is passed over either way.
std::optional<std::uint32_t> readNumber(sd_bus_message* message) {
  const char* contents = nullptr;
  char type = 0;
  if (sd_bus_message_peek_type(message, &type, &contents) <= 0 || type != SD_BUS_TYPE_VARIANT) {
    return std::nullopt;
  }
  const std::string_view kind = contents;
  std::optional<std::uint32_t> number;
  if (kind == "u") {
    std::uint32_t value = 0;
    if (sd_bus_message_read(message, "v", "u", &value) > 0) number = value;
  } else if (kind == "b") {
    int value = 0;
    if (sd_bus_message_read(message, "v", "b", &value) > 0) number = value != 0 ? 1 : 0;
  } else {
    sd_bus_message_skip(message, "v");
  }
  return number;
}

}  // namespace

LinuxDesktopFacts::LinuxDesktopFacts(std::shared_ptr<BusConnection> session, Scheduler& scheduler)
    : session_(std::move(session)), scheduler_(scheduler) {
  session_->onDown([this] {
    readCall_.reset();
    changeSignal_.reset();
    watcherSignal_.reset();
    trayHostSignal_.reset();
    idleCall_.reset();
    idle_.reset();
  });
  session_->onUp([this](sd_bus* bus) { listen(bus); });
}

void LinuxDesktopFacts::listen(sd_bus* bus) {
  changeSignal_ = onBusSignal(bus, {kPortal, kPortalPath, kSettings, "SettingChanged"},
                              [this](sd_bus_message* message) {
                                const char* space = nullptr;
                                const char* key = nullptr;
                                if (sd_bus_message_read(message, "ss", &space, &key) > 0) {
                                  readSetting(space, key, message);
                                  tell();
                                }
                              });
  const auto trayMayHaveCome = [this](sd_bus_message*) { tell(); };
  watcherSignal_ =
      onBusSignal(bus, {kBus, kBusPath, kBus, "NameOwnerChanged", kTrayWatcher}, trayMayHaveCome);
  trayHostSignal_ = onBusSignal(
      bus, {kTrayWatcher, kTrayWatcherPath, kTrayWatcher, "StatusNotifierHostRegistered"},
      trayMayHaveCome);
  const BusMessage call = newBusCall(bus, kPortal, kPortalPath, kSettings, "ReadAll");
  if (!call || sd_bus_message_append(call.get(), "as", 2, kAppearance, kInterface) < 0) return;
  readCall_ = sendBusCall(bus, call.get(), kTimeoutSeconds, [this](sd_bus_message* answer) {
    if (!isError(answer)) readAll(answer);
    readCall_.reset();
    // In any case: from here on nothing is missed, and before it a tray may have come.
    tell();
  });
}

// a{sa{sv}}: keys and values by namespace.
void LinuxDesktopFacts::readAll(sd_bus_message* answer) {
  if (sd_bus_message_enter_container(answer, SD_BUS_TYPE_ARRAY, "{sa{sv}}") <= 0) return;
  while (sd_bus_message_enter_container(answer, SD_BUS_TYPE_DICT_ENTRY, "sa{sv}") > 0) {
    readNamespace(answer);
    if (sd_bus_message_exit_container(answer) < 0) break;
  }
}

void LinuxDesktopFacts::readNamespace(sd_bus_message* message) {
  const char* space = nullptr;
  if (sd_bus_message_read(message, "s", &space) <= 0 ||
      sd_bus_message_enter_container(message, SD_BUS_TYPE_ARRAY, "{sv}") <= 0) {
    return;
  }
  while (sd_bus_message_enter_container(message, SD_BUS_TYPE_DICT_ENTRY, "sv") > 0) {
    const char* key = nullptr;
    if (sd_bus_message_read(message, "s", &key) <= 0) return;
    readSetting(space, key, message);
    if (sd_bus_message_exit_container(message) < 0) return;
  }
  sd_bus_message_exit_container(message);
}

void LinuxDesktopFacts::readSetting(std::string_view space, std::string_view key,
                                    sd_bus_message* value) {
  const auto number = readNumber(value);
  if (space == kAppearance && key == "color-scheme") {
    prefersDark_.reset();
    if (number == kPrefersDark) prefersDark_ = true;
    if (number == kPrefersLight) prefersDark_ = false;
  } else if (space == kAppearance && key == "reduced-motion") {
    wantsLessMotion_ = number == 1U;
  } else if (space == kInterface && key == "enable-animations") {
    enablesAnimations_ = number != 0U;
  }
}

void LinuxDesktopFacts::tell() {
  if (changed_) changed_();
}

std::optional<bool> LinuxDesktopFacts::prefersDark() {
  session_->bus();
  return prefersDark_;
}

bool LinuxDesktopFacts::reducesMotion() {
  session_->bus();
  return wantsLessMotion_.value_or(false) || !enablesAnimations_.value_or(true);
}

std::optional<double> LinuxDesktopFacts::idleSeconds() {
  const double now = scheduler_.uptime();
  if (now - idleAskedAt_ >= kIdleAge && !idleCall_) {
    idleAskedAt_ = now;
    askIdle();
  }
  if (!idle_) return std::nullopt;
  return idle_->seconds + (now - idle_->at);
}

void LinuxDesktopFacts::askIdle() {
  sd_bus* const bus = session_->bus();
  if (bus == nullptr) return;
  const BusMessage call = newBusCall(bus, kIdleMonitor, kIdlePath, kIdleMonitor, "GetIdletime");
  if (!call) return;
  // A desktop without that monitor is not made to start one.
  sd_bus_message_set_auto_start(call.get(), 0);
  idleCall_ = sendBusCall(bus, call.get(), kTimeoutSeconds, [this](sd_bus_message* answer) {
    std::uint64_t milliseconds = 0;
    if (!isError(answer) && sd_bus_message_read(answer, "t", &milliseconds) > 0) {
      idle_ = {.seconds = static_cast<double>(milliseconds) / 1000, .at = scheduler_.uptime()};
    } else {
      idle_.reset();
    }
    idleCall_.reset();
  });
}

}  // namespace embrix
