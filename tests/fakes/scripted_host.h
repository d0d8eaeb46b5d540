// A small machine held in plain data. A test writes what stands there, hands host() to what it
// tests, and changes the data between ticks. It has the habits of a real machine where these matter
// (a first energy sample has no interval, a sleep moves both clocks) and no others. One thread at a
// time. It must outlive every Host that it handed out.
#pragma once

#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "host/host.h"

namespace embrix {

struct ScriptedProcess {
  RawProcess raw;
  std::optional<std::string> path = std::nullopt;
  std::vector<std::string> arguments = {};
  std::optional<std::string> directory = std::nullopt;
  std::vector<ListeningPort> listening = {};
  std::optional<std::int32_t> responsiblePID = std::nullopt;
};

struct ScriptedSensor {
  std::string name;
  std::optional<double> celsius;
};

struct ScriptedSmcKey {
  std::string type;                 // four characters, such as "flt " or "fpe2"
  std::vector<std::uint8_t> bytes;  // at most 32
};

class ScriptedHost {
 public:
  ScriptedHost() = default;
  ScriptedHost(const ScriptedHost&) = delete;
  ScriptedHost& operator=(const ScriptedHost&) = delete;

  // Sources that answer from this object, as it is at the time of each call. The name and the facts
  // are copied.
  Host host();

  std::string name = "macos";
  MachineFacts machine{.productName = "MacBook Pro (14-inch, M3, 2023)",
                       .chip = "Apple M3",
                       .performanceCores = 4,
                       .efficiencyCores = 4,
                       .memoryBytes = 16ULL << 30,
                       .systemName = "macOS",
                       .systemMajor = 14,
                       .systemMinor = 5,
                       .systemPatch = 0,
                       .model = "Mac15,3"};
  UserFacts user{.uid = 501, .homeDirectory = "/Users/ada"};

  double uptime = 1000;             // seconds; sleep() adds to it
  double wallTime = 1'750'000'000;  // seconds since 1970; sleep() adds to it
  std::function<void()> onTick;     // called at the beginning of each tick, to change the world

  double ticksToNS = 1;
  std::vector<ScriptedProcess> processes;  // in the kernel's order

  std::map<std::string, ApplicationBundle> bundles;          // by folder
  std::map<std::string, InstalledApplication> applications;  // by executable
  std::map<std::string, std::string> applicationPaths;       // by identifier

  // Each successful sample after the first takes the next interval from the front; none is left
  // when the queue is empty.
  bool hasEnergyCounters = true;
  std::deque<EnergyInterval> energyIntervals;

  bool hasBattery = false;
  std::optional<PropertyMap> batteryRegistry;
  std::vector<PropertyMap> powerSources;

  std::vector<ScriptedSensor> sensors;
  bool hasSmc = true;
  std::map<std::string, ScriptedSmcKey> smcKeys;  // by four-character key, such as "F0Ac"
  ThermalState thermalState = ThermalState::nominal;

  std::optional<PropertyMap> gpuStatistics;
  std::vector<GpuClient> gpuClients;

  std::uint64_t pageSize = 16384;
  std::uint64_t physicalBytes = 16ULL << 30;
  std::optional<MemoryCounters> memoryCounters;
  std::optional<std::int32_t> memoryFreeLevel;

  std::vector<ProcessAssertions> assertions;
  std::string powerLog;

  // What a command line (program and arguments, a space between each) writes; every other command
  // cannot be started.
  std::map<std::string, std::string> commandOutputs;

  std::map<std::string, std::string> files;  // contents by path

  // Calls that fail from now on, in the way that their port tells a failure: a source such as
  // "battery", or one of its calls such as "battery.registry". The clock, names that are constant
  // and the thermal state cannot fail.
  std::set<std::string, std::less<>> failing;

  // Every call so far, such as "processes.read", "processDetails.arguments 412" or
  // "commands.output /bin/ps -ax".
  std::vector<std::string> log;

  // Adds a process of the user at the table's end, started at `wallTime`, with usage of zeros. Its
  // name is the path's last component. The reference holds until the table next changes.
  ScriptedProcess& add(std::int32_t pid, std::string_view path, std::int32_t ppid = 1);
  ScriptedProcess* find(std::int32_t pid);  // null when no such process stands in the table
  void remove(std::int32_t pid);

  // What the sources keep for themselves. called() writes the call into the log and answers whether
  // it is to work.
  bool called(std::string_view source, std::string_view call, std::string_view subject = {});
  std::uint64_t energySamples = 0;               // successful ones
  std::optional<EnergyInterval> newestInterval;  // taken from the queue by the newest sample
};

}  // namespace embrix
