#include "host/native_host.h"

#include <unistd.h>

#include <cstdlib>
#include <memory>
#include <string>

#include "host/local_files.h"
#include "hosts/linux/application_source.h"
#include "hosts/linux/assertion_source.h"
#include "hosts/linux/battery_source.h"
#include "hosts/linux/clock.h"
#include "hosts/linux/energy_source.h"
#include "hosts/linux/folder_source.h"
#include "hosts/linux/gpu_source.h"
#include "hosts/linux/log.h"
#include "hosts/linux/logind_inhibitors.h"
#include "hosts/linux/machine_facts.h"
#include "hosts/linux/memory_source.h"
#include "hosts/linux/power_log_source.h"
#include "hosts/linux/process_details_source.h"
#include "hosts/linux/process_source.h"
#include "hosts/linux/settings_store.h"
#include "hosts/linux/smc_source.h"
#include "hosts/linux/temperature_source.h"
#include "hosts/linux/thermal_state_source.h"
#include "hosts/linux/trash.h"
#include "hosts/linux/user_facts.h"
#include "hosts/posix/command_runner.h"

namespace embrix {

namespace {

double uptime() {
  return LinuxClock().uptime();
}

double wallTime() {
  return LinuxClock().wallTime();
}

std::string variable(const char* name) {
  const char* const value = std::getenv(name);
  return value == nullptr ? std::string() : std::string(value);
}

DesktopEnvironment desktopEnvironment(const std::string& home) {
  return {.home = home,
          .dataHome = variable("XDG_DATA_HOME"),
          .dataFolders = variable("XDG_DATA_DIRS"),
          .path = variable("PATH")};
}

std::unique_ptr<AssertionSource> assertionSource() {
  const auto inhibitors = std::make_shared<LogindInhibitors>(LogindInhibitors::Options{}, uptime);
  return std::make_unique<LinuxAssertionSource>(
      "/", [inhibitors] { return inhibitors->list(); }, wallTime);
}

}  // namespace

Host nativeHost() {
  Host host = absentHost();
  host.name = "linux";
  host.machine = linuxMachineFacts();
  host.user = linuxUserFacts();
  host.clock = std::make_unique<LinuxClock>();
  host.processes = std::make_unique<LinuxProcessSource>();
  host.processDetails = std::make_unique<LinuxProcessDetailsSource>();
  host.applications =
      std::make_unique<LinuxApplicationSource>("/", desktopEnvironment(host.user.homeDirectory));
  host.energy = std::make_unique<LinuxEnergySource>();
  host.battery = std::make_unique<LinuxBatterySource>();
  host.temperatures = std::make_unique<LinuxTemperatureSource>();
  host.smc = std::make_unique<LinuxSmcSource>();
  host.thermalState = std::make_unique<LinuxThermalStateSource>();
  host.gpu = std::make_unique<LinuxGpuSource>("/", awakeSeconds);
  host.memory = std::make_unique<LinuxMemorySource>();
  host.assertions = assertionSource();
  host.powerLog = std::make_unique<LinuxPowerLogSource>();
  host.commands = std::make_unique<PosixCommandRunner>(SpawnManner::native());
  host.files = std::make_unique<LocalFiles>();
  const BaseFolders folders = baseFolders(host.user.homeDirectory, std::getenv("XDG_CACHE_HOME"),
                                          std::getenv("XDG_DATA_HOME"));
  host.user.applicationSupportDirectory = folders.data;
  host.folders = std::make_unique<LinuxFolderSource>(folders);
  host.trash = std::make_unique<DesktopTrash>(
      DesktopTrashOptions{.dataFolder = folders.data, .uid = ::getuid(), .wallTime = wallTime});
  return host;
}

std::unique_ptr<Log> nativeLog() {
  return std::make_unique<LinuxLog>();
}

std::unique_ptr<SettingsStores> nativeSettings() {
  return std::make_unique<FileSettingsStores>(
      settingsFolder(std::getenv("XDG_CONFIG_HOME"), linuxUserFacts().homeDirectory));
}

}  // namespace embrix
