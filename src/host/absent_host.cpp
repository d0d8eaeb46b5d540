#include "host/host.h"

namespace embrix {

namespace {

struct AbsentClock final : Clock {
  double uptime() override { return 0; }
  double wallTime() override { return 0; }
  void sleep(double) override {}
};

struct AbsentProcesses final : ProcessSource {
  double ticksToNS() override { return 1; }
  void read(std::vector<RawProcess>& table) override { table.clear(); }
  std::optional<std::string> executablePath(std::int32_t) override { return std::nullopt; }
};

struct AbsentDetails final : ProcessDetailsSource {
  std::vector<std::string> arguments(std::int32_t) override { return {}; }
  std::optional<std::string> directory(std::int32_t) override { return std::nullopt; }
  std::vector<ListeningPort> listening(std::int32_t) override { return {}; }
};

struct AbsentResponsibility final : ResponsibilitySource {
  std::optional<std::int32_t> responsiblePID(std::int32_t) override { return std::nullopt; }
};

struct AbsentApplications final : ApplicationSource {
  std::optional<ApplicationBundle> bundle(const std::string&) override { return std::nullopt; }
  std::optional<InstalledApplication> byExecutable(const std::string&) override {
    return std::nullopt;
  }
  std::optional<std::string> pathForIdentifier(const std::string&) override { return std::nullopt; }
};

struct AbsentEnergy final : EnergySource {
  bool sample() override { return false; }
  std::optional<EnergyInterval> interval() override { return std::nullopt; }
};

struct AbsentBattery final : BatterySource {
  bool hasService() override { return false; }
  std::optional<PropertyMap> registry() override { return std::nullopt; }
  std::vector<PropertyMap> powerSources() override { return {}; }
};

struct AbsentTemperatures final : TemperatureSource {
  std::vector<std::string> sensors() override { return {}; }
  std::optional<double> read(std::size_t) override { return std::nullopt; }
};

struct AbsentSmc final : SmcSource {
  bool isOpen() override { return false; }
  bool call(const SmcPacketBytes&, SmcPacketBytes&) override { return false; }
};

struct AbsentThermalState final : ThermalStateSource {
  ThermalState read() override { return ThermalState::nominal; }
};

struct AbsentGpu final : GpuSource {
  std::optional<PropertyMap> performanceStatistics() override { return std::nullopt; }
  std::vector<GpuClient> clients() override { return {}; }
};

struct AbsentMemory final : MemorySource {
  std::uint64_t pageSize() override { return 0; }
  std::uint64_t physicalBytes() override { return 0; }
  std::optional<MemoryCounters> counters() override { return std::nullopt; }
  std::optional<std::int32_t> freeLevel() override { return std::nullopt; }
};

struct AbsentAssertions final : AssertionSource {
  std::vector<ProcessAssertions> read() override { return {}; }
};

struct AbsentPowerLog final : PowerLogSource {
  std::string read() override { return {}; }
};

struct AbsentCommands final : CommandRunner {
  std::optional<std::string> output(const std::string&, const std::vector<std::string>&) override {
    return std::nullopt;
  }
  std::optional<std::string> successfulOutput(const std::string&,
                                              const std::vector<std::string>&) override {
    return std::nullopt;
  }
  bool start(const std::string&, const std::vector<std::string>&) override { return false; }
};

struct AbsentFiles final : FileSource {
  std::optional<std::string> read(const std::string&) override { return std::nullopt; }
};

struct AbsentFolders final : FolderSource {
  std::optional<BaseFolders> baseFolders() override { return std::nullopt; }
  std::optional<std::string> resolved(const std::string&) override { return std::nullopt; }
  bool exists(const std::string&) override { return false; }
  std::optional<FileFacts> facts(const std::string&) override { return std::nullopt; }
  std::vector<FolderEntry> list(const std::string&) override { return {}; }
  std::optional<std::int64_t> measure(const std::string&, MeasureWatch& watch) override {
    if (watch.abandoned()) return std::nullopt;
    return 0;
  }
};

struct AbsentTrash final : Trash {
  TrashMove moveToTrash(const std::string&, const FileIdentity&) override { return {}; }
  bool putBack(const std::string&, const std::string&, const FileIdentity&) override {
    return false;
  }
};

}  // namespace

Host absentHost() {
  return Host{
      .name = "absent",
      .machine = {},
      .user = {},
      .clock = std::make_unique<AbsentClock>(),
      .processes = std::make_unique<AbsentProcesses>(),
      .processDetails = std::make_unique<AbsentDetails>(),
      .responsibility = std::make_unique<AbsentResponsibility>(),
      .applications = std::make_unique<AbsentApplications>(),
      .energy = std::make_unique<AbsentEnergy>(),
      .battery = std::make_unique<AbsentBattery>(),
      .temperatures = std::make_unique<AbsentTemperatures>(),
      .smc = std::make_unique<AbsentSmc>(),
      .thermalState = std::make_unique<AbsentThermalState>(),
      .gpu = std::make_unique<AbsentGpu>(),
      .memory = std::make_unique<AbsentMemory>(),
      .assertions = std::make_unique<AbsentAssertions>(),
      .powerLog = std::make_unique<AbsentPowerLog>(),
      .commands = std::make_unique<AbsentCommands>(),
      .files = std::make_unique<AbsentFiles>(),
      .folders = std::make_unique<AbsentFolders>(),
      .trash = std::make_unique<AbsentTrash>(),
  };
}

}  // namespace embrix
