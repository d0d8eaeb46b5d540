// The whole of what the program asks of an operating system, handed out as one bundle of sources.
#pragma once

#include <memory>
#include <string>

#include "host/application_source.h"
#include "host/assertion_source.h"
#include "host/battery_source.h"
#include "host/clock.h"
#include "host/command_runner.h"
#include "host/energy_source.h"
#include "host/file_source.h"
#include "host/folder_source.h"
#include "host/gpu_source.h"
#include "host/machine_facts.h"
#include "host/memory_source.h"
#include "host/power_log_source.h"
#include "host/process_details_source.h"
#include "host/process_source.h"
#include "host/responsibility_source.h"
#include "host/smc_source.h"
#include "host/temperature_source.h"
#include "host/thermal_state_source.h"
#include "host/trash.h"
#include "host/user_facts.h"

namespace embrix {

struct Host {
  std::string name;  // "macos" or "linux": the kind of machine, also of a replayed one
  MachineFacts machine;
  UserFacts user;

  // None is ever null: absentHost() stands in where a host has nothing to say.
  std::unique_ptr<Clock> clock;
  std::unique_ptr<ProcessSource> processes;
  std::unique_ptr<ProcessDetailsSource> processDetails;
  std::unique_ptr<ResponsibilitySource> responsibility;
  std::unique_ptr<ApplicationSource> applications;
  std::unique_ptr<EnergySource> energy;
  std::unique_ptr<BatterySource> battery;
  std::unique_ptr<TemperatureSource> temperatures;
  std::unique_ptr<SmcSource> smc;
  std::unique_ptr<ThermalStateSource> thermalState;
  std::unique_ptr<GpuSource> gpu;
  std::unique_ptr<MemorySource> memory;
  std::unique_ptr<AssertionSource> assertions;
  std::unique_ptr<PowerLogSource> powerLog;
  std::unique_ptr<CommandRunner> commands;
  std::unique_ptr<FileSource> files;
  std::unique_ptr<FolderSource> folders;
  std::unique_ptr<Trash> trash;
};

// A machine that tells nothing: every source answers absent or empty, the clocks stand at 0.
Host absentHost();

}  // namespace embrix
