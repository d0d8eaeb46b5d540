// Everything that a host can be asked, asked in one order. Two hosts that answer alike are one
// machine to the program.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "host/host.h"

namespace embrix {

// The answers of one tick.
struct TickAnswers {
  std::vector<double> uptimes;  // asked at the beginning and at the end
  double wallTime = 0;
  std::vector<RawProcess> table;
  std::map<std::int32_t, std::optional<std::string>> paths;
  std::map<std::int32_t, std::vector<std::string>> arguments;
  std::map<std::int32_t, std::optional<std::string>> directories;
  std::map<std::int32_t, std::vector<ListeningPort>> listening;
  std::map<std::int32_t, std::optional<std::int32_t>> responsible;
  std::map<std::string, std::optional<ApplicationBundle>> bundles;
  std::map<std::string, std::optional<InstalledApplication>> applications;
  std::map<std::string, std::optional<std::string>> applicationPaths;
  bool energySample = false;
  std::optional<EnergyInterval> energyInterval;
  std::optional<PropertyMap> batteryRegistry;
  std::vector<PropertyMap> powerSources;
  std::vector<std::optional<double>> temperatures;
  std::map<std::string, std::optional<SmcPacketBytes>> smc;
  ThermalState thermalState = ThermalState::nominal;
  std::optional<PropertyMap> gpuStatistics;
  std::vector<GpuClient> gpuClients;
  std::optional<MemoryCounters> memoryCounters;
  std::optional<std::int32_t> memoryFreeLevel;
  std::vector<ProcessAssertions> assertions;
  std::string powerLog;
  std::map<std::string, std::optional<std::string>> commandOutputs;
  std::map<std::string, bool> commandStarts;
  std::map<std::string, std::optional<std::string>> files;

  bool operator==(const TickAnswers&) const = default;
};

// What is asked by name.
struct Questions {
  std::vector<std::string> bundles;
  std::vector<std::string> executables;
  std::vector<std::string> identifiers;
  std::vector<std::string> smcKeys;   // four characters each
  std::vector<std::string> commands;  // programs, run without arguments
  std::vector<std::string> files;
};

// Begins a tick and asks everything: the details of every process, and each named thing.
TickAnswers interview(Host& host, const Questions& questions);

// A whole exchange with the controller, reading the value of that key.
SmcPacketBytes smcQuestion(const std::string& key);

}  // namespace embrix
