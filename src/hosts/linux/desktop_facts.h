// What the desktop says of its user: appearance and motion by the settings portal
// (org.freedesktop.portal.Settings), idleness by the shell's idle monitor (org.gnome.Mutter), a
// tray by its watcher (org.kde.StatusNotifierWatcher). A desktop that has none of them says
// nothing. Main thread only.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string_view>

#include "host/desktop_facts.h"
#include "hosts/linux/bus_connection.h"
#include "hosts/linux/bus_slot.h"

namespace embrix {

class LinuxDesktopFacts final : public DesktopFacts {
 public:
  // The age at which a known idleness is asked for again, seconds.
  static constexpr double kIdleAge = 5;

  // `session`: the bus of the user's session. The scheduler outlives this.
  LinuxDesktopFacts(std::shared_ptr<BusConnection> session, Scheduler& scheduler);

  std::optional<bool> prefersDark() override;
  bool reducesMotion() override;
  std::optional<double> idleSeconds() override;
  void onChange(std::function<void()> changed) override { changed_ = std::move(changed); }

 private:
  struct Idle {
    double seconds = 0;
    double at = 0;  // uptime
  };

  void listen(sd_bus* bus);
  void readAll(sd_bus_message* answer);
  void readNamespace(sd_bus_message* message);
  void readSetting(std::string_view space, std::string_view key, sd_bus_message* value);
  void askIdle();
  void tell();

  std::shared_ptr<BusConnection> session_;
  Scheduler& scheduler_;
  std::function<void()> changed_;
  std::optional<bool> prefersDark_;
  std::optional<bool> wantsLessMotion_;    // of the appearance's own setting
  std::optional<bool> enablesAnimations_;  // of the older one
  std::optional<Idle> idle_;
  double idleAskedAt_ = -kIdleAge;  // uptime
  BusSlot readCall_;
  BusSlot changeSignal_;
  BusSlot watcherSignal_;
  BusSlot trayHostSignal_;
  BusSlot idleCall_;
};

}  // namespace embrix
