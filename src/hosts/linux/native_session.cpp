#include <filesystem>
#include <memory>
#include <system_error>
#include <utility>

#include "host/native_host.h"
#include "hosts/linux/action_service.h"
#include "hosts/linux/application_icons.h"
#include "hosts/linux/bus_address.h"
#include "hosts/linux/bus_connection.h"
#include "hosts/linux/control_center.h"
#include "hosts/linux/desktop_facts.h"
#include "hosts/linux/event_loop.h"
#include "hosts/linux/notifier.h"
#include "hosts/linux/process_control.h"
#include "hosts/linux/program_object.h"
#include "hosts/linux/session_events.h"

namespace embrix {

Session nativeSession() {
  auto loop = std::make_unique<LinuxEventLoop>();
  const auto session = std::make_shared<BusConnection>(*loop, sessionBusAddress());
  const auto system = std::make_shared<BusConnection>(*loop, systemBusAddress());
  auto control = std::make_unique<LinuxProcessControl>(loop->scheduler());
  auto notifier = std::make_unique<DesktopNotifier>(session);
  auto events = std::make_unique<LinuxSessionEvents>(*loop, system);
  auto controls = std::make_unique<DesktopControls>(session);
  auto actions = std::make_unique<BusActionService>(session);
  auto desktop = std::make_unique<LinuxDesktopFacts>(session, loop->scheduler());
  return {.loop = std::move(loop),
          .control = std::move(control),
          .notifier = std::move(notifier),
          .events = std::move(events),
          .controls = std::move(controls),
          .actions = std::move(actions),
          .desktop = std::move(desktop),
          .icons = std::make_unique<LinuxApplicationIcons>("/")};
}

std::string nativeProgramPath() {
  std::error_code error;
  return std::filesystem::read_symlink("/proc/self/exe", error).string();
}

// Desktop entries and buses know it by one name, installed or not.
std::optional<std::string> nativeIdentifier() {
  return kProgramBusName;
}

}  // namespace embrix
