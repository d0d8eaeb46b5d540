#include "host/native_host.h"

#include <mach-o/dyld.h>

#include <cstdint>

#include <memory>

#include "host/local_files.h"
#include "hosts/macos/application_source.h"
#include "hosts/macos/assertion_source.h"
#include "hosts/macos/battery_source.h"
#include "hosts/macos/clock.h"
#include "hosts/macos/energy_source.h"
#include "hosts/macos/folder_source.h"
#include "hosts/macos/gpu_source.h"
#include "hosts/macos/log.h"
#include "hosts/macos/machine_facts.h"
#include "hosts/macos/memory_source.h"
#include "hosts/macos/power_log_source.h"
#include "hosts/macos/process_details_source.h"
#include "hosts/macos/process_source.h"
#include "hosts/macos/responsibility_source.h"
#include "hosts/macos/settings_store.h"
#include "hosts/macos/smc_source.h"
#include "hosts/macos/temperature_source.h"
#include "hosts/macos/thermal_state_source.h"
#include "hosts/macos/trash.h"
#include "hosts/macos/user_facts.h"
#include "hosts/posix/command_runner.h"

namespace embrix {

Host nativeHost() {
  return Host{.name = "macos",
              .machine = macMachineFacts(),
              .user = macUserFacts(),
              .clock = std::make_unique<MacClock>(),
              .processes = std::make_unique<MacProcessSource>(),
              .processDetails = std::make_unique<MacProcessDetailsSource>(),
              .responsibility = std::make_unique<MacResponsibilitySource>(),
              .applications = std::make_unique<MacApplicationSource>(),
              .energy = std::make_unique<MacEnergySource>(),
              .battery = std::make_unique<MacBatterySource>(),
              .temperatures = std::make_unique<MacTemperatureSource>(),
              .smc = std::make_unique<MacSmcSource>(),
              .thermalState = std::make_unique<MacThermalStateSource>(),
              .gpu = std::make_unique<MacGpuSource>(),
              .memory = std::make_unique<MacMemorySource>(),
              .assertions = std::make_unique<MacAssertionSource>(),
              .powerLog = std::make_unique<MacPowerLogSource>(),
              .commands = std::make_unique<PosixCommandRunner>(SpawnManner::native()),
              .files = std::make_unique<LocalFiles>(),
              .folders = std::make_unique<MacFolderSource>(),
              .trash = std::make_unique<MacTrash>()};
}

std::string nativeProgramPath() {
  std::uint32_t size = 0;
  _NSGetExecutablePath(nullptr, &size);
  std::string path(size, '\0');
  if (_NSGetExecutablePath(path.data(), &size) != 0) return {};
  path.resize(path.find('\0'));
  return path;
}

std::unique_ptr<Log> nativeLog() {
  return std::make_unique<MacLog>();
}

std::unique_ptr<SettingsStores> nativeSettings() {
  return std::make_unique<MacSettingsStores>();
}

}  // namespace embrix
