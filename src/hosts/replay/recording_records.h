// What a recording holds, as plain records: one header, then one tick after another. The file form
// of them is recording_format.h's. Fields mean what the ports in host/ say of the same questions.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "host/host.h"

namespace embrix {

// What does not change while a machine is recorded, and the time at which it began.
struct RecordingHeader {
  std::string hostName;  // Host::name
  double uptime = 0;     // seconds
  double wallTime = 0;   // seconds since 1970
  MachineFacts machine;
  UserFacts user;
  double ticksToNS = 1;
  std::uint64_t pageSize = 0;
  std::uint64_t physicalBytes = 0;
  bool hasBattery = false;
  bool hasSmc = false;
  std::vector<std::string> sensors;
  std::optional<BaseFolders> baseFolders;

  bool operator==(const RecordingHeader&) const = default;
};

struct PlacedProcess {
  std::uint64_t place = 0;  // its index in the new table
  RawProcess process;

  bool operator==(const PlacedProcess&) const = default;
};

struct ChangedCounters {
  std::int32_t pid = 0;
  std::optional<RawUsage> usage;

  bool operator==(const ChangedCounters&) const = default;
};

// How a process table follows from the one read before it. The first of a recording follows from
// the empty table.
struct ProcessTableChange {
  // The whole table, when telling the difference would not do; the other three are then empty.
  std::optional<std::vector<RawProcess>> all;
  std::vector<std::int32_t> gone;
  std::vector<ChangedCounters> changed;
  std::vector<PlacedProcess> added;  // ascending by place

  bool operator==(const ProcessTableChange&) const = default;
};

// What is known of one process beyond the table; absent or empty where nothing was told.
struct ProcessAnswers {
  std::optional<std::string> path;
  std::vector<std::string> arguments;
  std::optional<std::string> directory;
  std::vector<ListeningPort> listening;
  std::optional<std::int32_t> responsiblePID;

  bool operator==(const ProcessAnswers&) const = default;
};

using CommandLine = std::vector<std::string>;  // the program first
CommandLine commandLine(const std::string& program, const std::vector<std::string>& arguments);

// Answers that stand until another is given to the same question, in later ticks as well.
struct LastingAnswers {
  std::map<std::int32_t, ProcessAnswers> about;                         // by pid
  std::map<std::string, std::optional<ApplicationBundle>> bundles;      // by folder
  std::map<std::string, std::optional<InstalledApplication>> programs;  // by executable
  std::map<std::string, std::optional<std::string>> applicationPaths;   // by identifier
  std::map<SmcPacketBytes, std::optional<SmcPacketBytes>> smc;  // by input; absent: the call failed
  std::map<CommandLine, std::optional<std::string>> commandOutputs;
  std::map<CommandLine, std::optional<bool>> commandStarts;  // absent: could not be started
  std::map<std::string, std::optional<std::string>> files;   // contents by path
  std::map<std::string, std::optional<std::string>> resolvedPaths;
  std::map<std::string, std::optional<bool>> existing;        // by path; absent: nothing is there
  std::map<std::string, std::optional<FileFacts>> fileFacts;  // by path
  std::map<std::string, std::optional<std::vector<FolderEntry>>> folderLists;  // absent: empty
  std::map<std::string, std::optional<std::int64_t>> folderSizes;  // bytes; absent: nothing in it
  std::optional<std::string> powerLog;

  bool operator==(const LastingAnswers&) const = default;
};

// What was asked between the beginning of one tick and that of the next. A question that was not
// asked has no answers; one that was asked more than once has them in that order.
struct RecordedTick {
  std::uint64_t number = 0;  // counts from 1; 0 holds what was asked before the first tick
  std::vector<double> uptime;
  std::vector<double> wallTime;
  std::vector<ProcessTableChange> processes;
  std::vector<bool> energySamples;
  std::vector<std::optional<EnergyInterval>> energyIntervals;
  std::vector<std::optional<PropertyMap>> batteryRegistry;
  std::vector<std::vector<PropertyMap>> powerSources;
  std::map<std::uint64_t, std::vector<std::optional<double>>> temperatures;  // by sensor
  std::vector<ThermalState> thermalState;
  std::vector<std::optional<PropertyMap>> gpuStatistics;
  std::vector<std::vector<GpuClient>> gpuClients;
  std::vector<std::optional<MemoryCounters>> memoryCounters;
  std::vector<std::optional<std::int32_t>> memoryFreeLevel;
  std::vector<std::vector<ProcessAssertions>> assertions;
  // Those that differ from what was known before the tick.
  LastingAnswers lasting;

  bool operator==(const RecordedTick&) const = default;
};

}  // namespace embrix
