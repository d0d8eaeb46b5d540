#include "fakes/interview.h"

#include <cstring>

namespace embrix {

namespace {

void askAboutProcesses(Host& host, TickAnswers& answers) {
  host.processes->read(answers.table);
  host.processDetails->beginScan();
  for (const RawProcess& process : answers.table) {
    const std::int32_t pid = process.pid;
    answers.paths[pid] = host.processes->executablePath(pid);
    answers.arguments[pid] = host.processDetails->arguments(pid);
    answers.directories[pid] = host.processDetails->directory(pid);
    answers.listening[pid] = host.processDetails->listening(pid);
    answers.responsible[pid] = host.responsibility->responsiblePID(pid);
  }
}

void askByName(Host& host, const Questions& questions, TickAnswers& answers) {
  for (const auto& path : questions.bundles) {
    answers.bundles[path] = host.applications->bundle(path);
  }
  for (const auto& path : questions.executables) {
    answers.applications[path] = host.applications->byExecutable(path);
  }
  for (const auto& identifier : questions.identifiers) {
    answers.applicationPaths[identifier] = host.applications->pathForIdentifier(identifier);
  }
  for (const auto& key : questions.smcKeys) {
    SmcPacketBytes output{};
    const bool worked = host.smc->call(smcQuestion(key), output);
    answers.smc[key] = worked ? std::optional(output) : std::nullopt;
  }
  for (const auto& program : questions.commands) {
    answers.commandOutputs[program] = host.commands->output(program, {});
    answers.commandStarts[program] = host.commands->start(program, {});
  }
  for (const auto& path : questions.files) answers.files[path] = host.files->read(path);
}

void askAboutTheMachine(Host& host, TickAnswers& answers) {
  answers.energySample = host.energy->sample();
  answers.energyInterval = host.energy->interval();
  answers.batteryRegistry = host.battery->registry();
  answers.powerSources = host.battery->powerSources();
  for (std::size_t i = 0; i < host.temperatures->sensors().size(); ++i) {
    answers.temperatures.push_back(host.temperatures->read(i));
  }
  answers.thermalState = host.thermalState->read();
  answers.gpuStatistics = host.gpu->performanceStatistics();
  answers.gpuClients = host.gpu->clients();
  answers.memoryCounters = host.memory->counters();
  answers.memoryFreeLevel = host.memory->freeLevel();
  answers.assertions = host.assertions->read();
  answers.powerLog = host.powerLog->read();
}

}  // namespace

SmcPacketBytes smcQuestion(const std::string& key) {
  constexpr std::size_t kCommandAt = 42;
  constexpr std::uint8_t kReadValue = 5;
  std::uint32_t number = 0;
  for (const char letter : key) number = number << 8 | static_cast<std::uint8_t>(letter);
  SmcPacketBytes packet{};
  std::memcpy(packet.data(), &number, sizeof number);
  packet[kCommandAt] = kReadValue;
  return packet;
}

TickAnswers interview(Host& host, const Questions& questions) {
  TickAnswers answers;
  host.clock->beginTick();
  answers.uptimes.push_back(host.clock->uptime());
  askAboutProcesses(host, answers);
  askByName(host, questions, answers);
  askAboutTheMachine(host, answers);
  answers.wallTime = host.clock->wallTime();
  answers.uptimes.push_back(host.clock->uptime());
  return answers;
}

}  // namespace embrix
