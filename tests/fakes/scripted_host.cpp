#include "fakes/scripted_host.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include <fmt/format.h>

namespace embrix {

namespace {

struct Part {
  ScriptedHost& world;
  explicit Part(ScriptedHost& w) : world(w) {}
};

template <typename Map>
std::optional<typename Map::mapped_type> valueIn(const Map& map, const std::string& key) {
  const auto entry = map.find(key);
  if (entry == map.end()) return std::nullopt;
  return entry->second;
}

struct ScriptedClock final : Clock, Part {
  using Part::Part;
  void beginTick() override {
    world.called("clock", "beginTick");
    if (world.onTick) world.onTick();
  }
  double uptime() override {
    world.called("clock", "uptime");
    return world.uptime;
  }
  double wallTime() override {
    world.called("clock", "wallTime");
    return world.wallTime;
  }
  void sleep(double seconds) override {
    world.called("clock", "sleep", fmt::format("{}", seconds));
    world.uptime += seconds;
    world.wallTime += seconds;
  }
};

struct ScriptedProcesses final : ProcessSource, Part {
  using Part::Part;
  double ticksToNS() override {
    world.called("processes", "ticksToNS");
    return world.ticksToNS;
  }
  void read(std::vector<RawProcess>& table) override {
    table.clear();
    if (!world.called("processes", "read")) return;
    for (const auto& process : world.processes) table.push_back(process.raw);
  }
  std::optional<std::string> executablePath(std::int32_t pid) override {
    if (!world.called("processes", "executablePath", std::to_string(pid))) return std::nullopt;
    const auto* process = world.find(pid);
    return process == nullptr ? std::nullopt : process->path;
  }
};

struct ScriptedDetails final : ProcessDetailsSource, Part {
  using Part::Part;
  void beginScan() override { world.called("processDetails", "beginScan"); }
  std::vector<std::string> arguments(std::int32_t pid) override {
    if (!world.called("processDetails", "arguments", std::to_string(pid))) return {};
    const auto* process = world.find(pid);
    return process == nullptr ? std::vector<std::string>{} : process->arguments;
  }
  std::optional<std::string> directory(std::int32_t pid) override {
    if (!world.called("processDetails", "directory", std::to_string(pid))) return std::nullopt;
    const auto* process = world.find(pid);
    return process == nullptr ? std::nullopt : process->directory;
  }
  std::vector<ListeningPort> listening(std::int32_t pid) override {
    if (!world.called("processDetails", "listening", std::to_string(pid))) return {};
    const auto* process = world.find(pid);
    return process == nullptr ? std::vector<ListeningPort>{} : process->listening;
  }
};

struct ScriptedResponsibility final : ResponsibilitySource, Part {
  using Part::Part;
  std::optional<std::int32_t> responsiblePID(std::int32_t pid) override {
    if (!world.called("responsibility", "responsiblePID", std::to_string(pid))) return std::nullopt;
    const auto* process = world.find(pid);
    return process == nullptr ? std::nullopt : process->responsiblePID;
  }
};

struct ScriptedApplications final : ApplicationSource, Part {
  using Part::Part;
  std::optional<ApplicationBundle> bundle(const std::string& path) override {
    if (!world.called("applications", "bundle", path)) return std::nullopt;
    return valueIn(world.bundles, path);
  }
  std::optional<InstalledApplication> byExecutable(const std::string& path) override {
    if (!world.called("applications", "byExecutable", path)) return std::nullopt;
    return valueIn(world.applications, path);
  }
  std::optional<std::string> pathForIdentifier(const std::string& identifier) override {
    if (!world.called("applications", "pathForIdentifier", identifier)) return std::nullopt;
    return valueIn(world.applicationPaths, identifier);
  }
};

struct ScriptedEnergy final : EnergySource, Part {
  using Part::Part;
  bool sample() override {
    if (!world.called("energy", "sample") || !world.hasEnergyCounters) return false;
    if (++world.energySamples == 1) return true;
    world.newestInterval.reset();
    if (!world.energyIntervals.empty()) {
      world.newestInterval = std::move(world.energyIntervals.front());
      world.energyIntervals.pop_front();
    }
    return true;
  }
  std::optional<EnergyInterval> interval() override {
    if (!world.called("energy", "interval")) return std::nullopt;
    return world.newestInterval;
  }
};

struct ScriptedBattery final : BatterySource, Part {
  using Part::Part;
  bool hasService() override {
    world.called("battery", "hasService");
    return world.hasBattery;
  }
  std::optional<PropertyMap> registry() override {
    if (!world.called("battery", "registry")) return std::nullopt;
    return world.batteryRegistry;
  }
  std::vector<PropertyMap> powerSources() override {
    if (!world.called("battery", "powerSources")) return {};
    return world.powerSources;
  }
};

struct ScriptedTemperatures final : TemperatureSource, Part {
  using Part::Part;
  std::vector<std::string> sensors() override {
    world.called("temperatures", "sensors");
    std::vector<std::string> names;
    for (const auto& sensor : world.sensors) names.push_back(sensor.name);
    return names;
  }
  std::optional<double> read(std::size_t index) override {
    if (!world.called("temperatures", "read", std::to_string(index))) return std::nullopt;
    return index < world.sensors.size() ? world.sensors[index].celsius : std::nullopt;
  }
};

// Places in the record of an exchange, which is 80 bytes in the byte order of the machine.
constexpr std::size_t kSmcKey = 0;
constexpr std::size_t kSmcSize = 28;
constexpr std::size_t kSmcType = 32;
constexpr std::size_t kSmcResult = 40;
constexpr std::size_t kSmcCommand = 42;
constexpr std::size_t kSmcBytes = 48;
constexpr std::uint8_t kSmcReadValue = 5;
constexpr std::uint8_t kSmcReadInfo = 9;
constexpr std::uint8_t kSmcRefused = 0x84;

void putNumber(SmcPacketBytes& packet, std::size_t offset, std::uint32_t number) {
  std::memcpy(packet.data() + offset, &number, sizeof number);
}

std::string codeAt(const SmcPacketBytes& packet, std::size_t offset) {
  std::uint32_t number = 0;
  std::memcpy(&number, packet.data() + offset, sizeof number);
  std::string code(4, '\0');
  for (std::size_t i = 0; i < 4; ++i) code[i] = static_cast<char>(number >> (24 - 8 * i) & 0xFF);
  return code;
}

std::uint32_t numberOfCode(std::string_view code) {
  std::uint32_t number = 0;
  for (const char letter : code.substr(0, 4)) {
    number = number << 8 | static_cast<std::uint8_t>(letter);
  }
  return number;
}

struct ScriptedSmc final : SmcSource, Part {
  using Part::Part;
  bool isOpen() override {
    world.called("smc", "isOpen");
    return world.hasSmc;
  }
  bool call(const SmcPacketBytes& input, SmcPacketBytes& output) override {
    const std::string key = codeAt(input, kSmcKey);
    const std::uint8_t command = input[kSmcCommand];
    if (!world.called("smc", "call", fmt::format("{} {}", key, command))) return false;
    output = {};
    const auto entry = world.smcKeys.find(key);
    if (entry == world.smcKeys.end() || (command != kSmcReadInfo && command != kSmcReadValue)) {
      output[kSmcResult] = kSmcRefused;
      return true;
    }
    if (command == kSmcReadInfo) {
      putNumber(output, kSmcSize, static_cast<std::uint32_t>(entry->second.bytes.size()));
      putNumber(output, kSmcType, numberOfCode(entry->second.type));
      return true;
    }
    const std::size_t room = output.size() - kSmcBytes;
    const std::size_t count = std::min(entry->second.bytes.size(), room);
    std::copy_n(entry->second.bytes.begin(), count, output.begin() + kSmcBytes);
    return true;
  }
};

struct ScriptedThermalState final : ThermalStateSource, Part {
  using Part::Part;
  ThermalState read() override {
    world.called("thermalState", "read");
    return world.thermalState;
  }
};

struct ScriptedGpu final : GpuSource, Part {
  using Part::Part;
  std::optional<PropertyMap> performanceStatistics() override {
    if (!world.called("gpu", "performanceStatistics")) return std::nullopt;
    return world.gpuStatistics;
  }
  std::vector<GpuClient> clients() override {
    if (!world.called("gpu", "clients")) return {};
    return world.gpuClients;
  }
};

struct ScriptedMemory final : MemorySource, Part {
  using Part::Part;
  std::uint64_t pageSize() override {
    world.called("memory", "pageSize");
    return world.pageSize;
  }
  std::uint64_t physicalBytes() override {
    world.called("memory", "physicalBytes");
    return world.physicalBytes;
  }
  std::optional<MemoryCounters> counters() override {
    if (!world.called("memory", "counters")) return std::nullopt;
    return world.memoryCounters;
  }
  std::optional<std::int32_t> freeLevel() override {
    if (!world.called("memory", "freeLevel")) return std::nullopt;
    return world.memoryFreeLevel;
  }
};

struct ScriptedAssertions final : AssertionSource, Part {
  using Part::Part;
  std::vector<ProcessAssertions> read() override {
    if (!world.called("assertions", "read")) return {};
    return world.assertions;
  }
};

struct ScriptedPowerLog final : PowerLogSource, Part {
  using Part::Part;
  std::string read() override {
    if (!world.called("powerLog", "read")) return {};
    return world.powerLog;
  }
};

struct ScriptedCommands final : CommandRunner, Part {
  using Part::Part;
  std::optional<std::string> output(const std::string& program,
                                    const std::vector<std::string>& arguments) override {
    const std::string line = commandLine(program, arguments);
    if (!world.called("commands", "output", line)) return std::nullopt;
    return valueIn(world.commandOutputs, line);
  }
  std::optional<std::string> successfulOutput(const std::string& program,
                                              const std::vector<std::string>& arguments) override {
    return output(program, arguments);
  }
  bool start(const std::string& program, const std::vector<std::string>& arguments) override {
    const std::string line = commandLine(program, arguments);
    return world.called("commands", "start", line) && world.commandOutputs.count(line) > 0;
  }

 private:
  static std::string commandLine(std::string line, const std::vector<std::string>& arguments) {
    for (const auto& argument : arguments) line += ' ' + argument;
    return line;
  }
};

struct ScriptedFiles final : FileSource, Part {
  using Part::Part;
  std::optional<std::string> read(const std::string& path) override {
    if (!world.called("files", "read", path)) return std::nullopt;
    return valueIn(world.files, path);
  }
};

}  // namespace

Host ScriptedHost::host() {
  Host absent = absentHost();
  return Host{
      .name = name,
      .machine = machine,
      .user = user,
      .clock = std::make_unique<ScriptedClock>(*this),
      .processes = std::make_unique<ScriptedProcesses>(*this),
      .processDetails = std::make_unique<ScriptedDetails>(*this),
      .responsibility = std::make_unique<ScriptedResponsibility>(*this),
      .applications = std::make_unique<ScriptedApplications>(*this),
      .energy = std::make_unique<ScriptedEnergy>(*this),
      .battery = std::make_unique<ScriptedBattery>(*this),
      .temperatures = std::make_unique<ScriptedTemperatures>(*this),
      .smc = std::make_unique<ScriptedSmc>(*this),
      .thermalState = std::make_unique<ScriptedThermalState>(*this),
      .gpu = std::make_unique<ScriptedGpu>(*this),
      .memory = std::make_unique<ScriptedMemory>(*this),
      .assertions = std::make_unique<ScriptedAssertions>(*this),
      .powerLog = std::make_unique<ScriptedPowerLog>(*this),
      .commands = std::make_unique<ScriptedCommands>(*this),
      .files = std::make_unique<ScriptedFiles>(*this),
      .folders = std::move(absent.folders),
      .trash = std::move(absent.trash),
  };
}

ScriptedProcess& ScriptedHost::add(std::int32_t pid, std::string_view path, std::int32_t ppid) {
  // The kernel keeps this many bytes of a name.
  constexpr std::size_t kCommandNameLength = 16;
  const std::string_view last = path.substr(path.rfind('/') + 1);
  processes.push_back(ScriptedProcess{
      .raw = RawProcess{.pid = pid,
                        .ppid = ppid,
                        .uid = user.uid,
                        .startTime = static_cast<std::uint64_t>(wallTime),
                        .commandName = std::string(last.substr(0, kCommandNameLength)),
                        .usage = RawUsage{.energyNJ = 0}},
      .path = std::string(path)});
  return processes.back();
}

ScriptedProcess* ScriptedHost::find(std::int32_t pid) {
  const auto process = std::find_if(processes.begin(), processes.end(),
                                    [&](const auto& each) { return each.raw.pid == pid; });
  return process == processes.end() ? nullptr : &*process;
}

void ScriptedHost::remove(std::int32_t pid) {
  std::erase_if(processes, [&](const auto& each) { return each.raw.pid == pid; });
}

bool ScriptedHost::called(std::string_view source, std::string_view call,
                          std::string_view subject) {
  const std::string whole = fmt::format("{}.{}", source, call);
  log.push_back(subject.empty() ? whole : fmt::format("{} {}", whole, subject));
  return failing.count(source) == 0 && failing.count(whole) == 0;
}

}  // namespace embrix
