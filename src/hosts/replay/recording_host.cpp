#include "hosts/replay/recording_host.h"

#include <utility>

#include "hosts/replay/recording_session.h"

namespace embrix {

namespace {

using Session = std::shared_ptr<RecordingSession>;

// What each recorded source has: the one that it listens to, and where the answers go.
template <typename Source>
struct Recorded : Source {
  Recorded(std::unique_ptr<Source> source, Session recording)
      : live(std::move(source)), session(std::move(recording)) {}
  std::unique_ptr<Source> live;
  Session session;
};

struct RecordedClock final : Recorded<Clock> {
  using Recorded::Recorded;
  void beginTick() override {
    session->beginTick();
    live->beginTick();
  }
  double uptime() override {
    const double seconds = live->uptime();
    session->note(&RecordedTick::uptime, seconds);
    return seconds;
  }
  double wallTime() override {
    const double seconds = live->wallTime();
    session->note(&RecordedTick::wallTime, seconds);
    return seconds;
  }
  void sleep(double seconds) override { live->sleep(seconds); }
};

struct RecordedProcesses final : Recorded<ProcessSource> {
  using Recorded::Recorded;
  double ticksToNS() override { return live->ticksToNS(); }
  void read(std::vector<RawProcess>& table) override {
    live->read(table);
    session->noteTable(table);
  }
  std::optional<std::string> executablePath(std::int32_t pid) override {
    auto path = live->executablePath(pid);
    session->noteAbout(pid, &ProcessAnswers::path, path);
    return path;
  }
};

struct RecordedDetails final : Recorded<ProcessDetailsSource> {
  using Recorded::Recorded;
  void beginScan() override { live->beginScan(); }
  std::vector<std::string> arguments(std::int32_t pid) override {
    auto arguments = live->arguments(pid);
    session->noteAbout(pid, &ProcessAnswers::arguments, arguments);
    return arguments;
  }
  std::optional<std::string> directory(std::int32_t pid) override {
    auto directory = live->directory(pid);
    session->noteAbout(pid, &ProcessAnswers::directory, directory);
    return directory;
  }
  std::vector<ListeningPort> listening(std::int32_t pid) override {
    auto ports = live->listening(pid);
    session->noteAbout(pid, &ProcessAnswers::listening, ports);
    return ports;
  }
};

struct RecordedResponsibility final : Recorded<ResponsibilitySource> {
  using Recorded::Recorded;
  std::optional<std::int32_t> responsiblePID(std::int32_t pid) override {
    const auto responsible = live->responsiblePID(pid);
    session->noteAbout(pid, &ProcessAnswers::responsiblePID, responsible);
    return responsible;
  }
};

struct RecordedApplications final : Recorded<ApplicationSource> {
  using Recorded::Recorded;
  std::optional<ApplicationBundle> bundle(const std::string& path) override {
    auto bundle = live->bundle(path);
    session->noteLasting(&LastingAnswers::bundles, path, bundle);
    return bundle;
  }
  std::optional<InstalledApplication> byExecutable(const std::string& path) override {
    auto application = live->byExecutable(path);
    session->noteLasting(&LastingAnswers::programs, path, application);
    return application;
  }
  std::optional<std::string> pathForIdentifier(const std::string& identifier) override {
    auto path = live->pathForIdentifier(identifier);
    session->noteLasting(&LastingAnswers::applicationPaths, identifier, path);
    return path;
  }
};

struct RecordedEnergy final : Recorded<EnergySource> {
  using Recorded::Recorded;
  bool sample() override {
    const bool taken = live->sample();
    session->note(&RecordedTick::energySamples, taken);
    return taken;
  }
  std::optional<EnergyInterval> interval() override {
    auto interval = live->interval();
    session->note(&RecordedTick::energyIntervals, interval);
    return interval;
  }
};

struct RecordedBattery final : Recorded<BatterySource> {
  using Recorded::Recorded;
  bool hasService() override { return live->hasService(); }
  std::optional<PropertyMap> registry() override {
    auto registry = live->registry();
    session->note(&RecordedTick::batteryRegistry, registry);
    return registry;
  }
  std::vector<PropertyMap> powerSources() override {
    auto sources = live->powerSources();
    session->note(&RecordedTick::powerSources, sources);
    return sources;
  }
};

struct RecordedTemperatures final : Recorded<TemperatureSource> {
  using Recorded::Recorded;
  std::vector<std::string> sensors() override { return live->sensors(); }
  std::optional<double> read(std::size_t index) override {
    const auto celsius = live->read(index);
    session->noteTemperature(index, celsius);
    return celsius;
  }
};

struct RecordedSmc final : Recorded<SmcSource> {
  using Recorded::Recorded;
  bool isOpen() override { return live->isOpen(); }
  bool call(const SmcPacketBytes& input, SmcPacketBytes& output) override {
    const bool worked = live->call(input, output);
    session->noteLasting(&LastingAnswers::smc, input,
                         worked ? std::optional(output) : std::nullopt);
    return worked;
  }
};

struct RecordedThermalState final : Recorded<ThermalStateSource> {
  using Recorded::Recorded;
  ThermalState read() override {
    const ThermalState state = live->read();
    session->note(&RecordedTick::thermalState, state);
    return state;
  }
};

struct RecordedGpu final : Recorded<GpuSource> {
  using Recorded::Recorded;
  std::optional<PropertyMap> performanceStatistics() override {
    auto statistics = live->performanceStatistics();
    session->note(&RecordedTick::gpuStatistics, statistics);
    return statistics;
  }
  std::vector<GpuClient> clients() override {
    auto clients = live->clients();
    session->note(&RecordedTick::gpuClients, clients);
    return clients;
  }
};

struct RecordedMemory final : Recorded<MemorySource> {
  using Recorded::Recorded;
  std::uint64_t pageSize() override { return live->pageSize(); }
  std::uint64_t physicalBytes() override { return live->physicalBytes(); }
  std::optional<MemoryCounters> counters() override {
    const auto counters = live->counters();
    session->note(&RecordedTick::memoryCounters, counters);
    return counters;
  }
  std::optional<std::int32_t> freeLevel() override {
    const auto level = live->freeLevel();
    session->note(&RecordedTick::memoryFreeLevel, level);
    return level;
  }
};

struct RecordedAssertions final : Recorded<AssertionSource> {
  using Recorded::Recorded;
  std::vector<ProcessAssertions> read() override {
    auto assertions = live->read();
    session->note(&RecordedTick::assertions, assertions);
    return assertions;
  }
};

struct RecordedPowerLog final : Recorded<PowerLogSource> {
  using Recorded::Recorded;
  std::string read() override {
    std::string log = live->read();
    // A log can hold more than a line of a recording.
    if (log.size() > kMostBytes) log.erase(0, log.size() - kMostBytes);
    session->notePowerLog(log);
    return log;
  }
};

struct RecordedCommands final : Recorded<CommandRunner> {
  using Recorded::Recorded;
  std::optional<std::string> output(const std::string& program,
                                    const std::vector<std::string>& arguments) override {
    auto output = live->output(program, arguments);
    session->noteLasting(&LastingAnswers::commandOutputs, commandLine(program, arguments), output);
    return output;
  }
  std::optional<std::string> successfulOutput(const std::string& program,
                                              const std::vector<std::string>& arguments) override {
    auto output = live->successfulOutput(program, arguments);
    session->noteLasting(&LastingAnswers::commandOutputs, commandLine(program, arguments), output);
    return output;
  }
  bool start(const std::string& program, const std::vector<std::string>& arguments) override {
    const bool started = live->start(program, arguments);
    session->noteLasting(&LastingAnswers::commandStarts, commandLine(program, arguments),
                         started ? std::optional(true) : std::nullopt);
    return started;
  }
};

struct RecordedFiles final : Recorded<FileSource> {
  using Recorded::Recorded;
  std::optional<std::string> read(const std::string& path) override {
    auto contents = live->read(path);
    session->noteLasting(&LastingAnswers::files, path, contents);
    return contents;
  }
};

// What is moved to the Trash is the live machine's alone.
struct RecordedFolders final : Recorded<FolderSource> {
  using Recorded::Recorded;
  std::optional<BaseFolders> baseFolders() override { return live->baseFolders(); }
  std::optional<std::string> resolved(const std::string& path) override {
    auto real = live->resolved(path);
    session->noteLasting(&LastingAnswers::resolvedPaths, path, real);
    return real;
  }
  bool exists(const std::string& path) override {
    const bool isThere = live->exists(path);
    session->noteLasting(&LastingAnswers::existing, path,
                         isThere ? std::optional(true) : std::nullopt);
    return isThere;
  }
  std::optional<FileFacts> facts(const std::string& path) override {
    auto facts = live->facts(path);
    session->noteLasting(&LastingAnswers::fileFacts, path, facts);
    return facts;
  }
  std::vector<FolderEntry> list(const std::string& folder) override {
    auto entries = live->list(folder);
    session->noteLasting(&LastingAnswers::folderLists, folder,
                         entries.empty() ? std::nullopt : std::optional(entries));
    return entries;
  }
  // One that was abandoned is no answer.
  std::optional<std::int64_t> measure(const std::string& folder, MeasureWatch& watch) override {
    const auto bytes = live->measure(folder, watch);
    if (bytes) {
      session->noteLasting(&LastingAnswers::folderSizes, folder,
                           *bytes == 0 ? std::nullopt : bytes);
    }
    return bytes;
  }
};

RecordingHeader headerOf(Host& live) {
  return RecordingHeader{.hostName = live.name,
                         .uptime = live.clock->uptime(),
                         .wallTime = live.clock->wallTime(),
                         .machine = live.machine,
                         .user = live.user,
                         .ticksToNS = live.processes->ticksToNS(),
                         .pageSize = live.memory->pageSize(),
                         .physicalBytes = live.memory->physicalBytes(),
                         .hasBattery = live.battery->hasService(),
                         .hasSmc = live.smc->isOpen(),
                         .sensors = live.temperatures->sensors(),
                         .baseFolders = live.folders->baseFolders()};
}

}  // namespace

Host recordingHost(Host live, std::shared_ptr<RecordingWriter> writer) {
  const auto session = std::make_shared<RecordingSession>(headerOf(live), std::move(writer));
  return Host{
      .name = live.name,
      .machine = live.machine,
      .user = live.user,
      .clock = std::make_unique<RecordedClock>(std::move(live.clock), session),
      .processes = std::make_unique<RecordedProcesses>(std::move(live.processes), session),
      .processDetails = std::make_unique<RecordedDetails>(std::move(live.processDetails), session),
      .responsibility =
          std::make_unique<RecordedResponsibility>(std::move(live.responsibility), session),
      .applications = std::make_unique<RecordedApplications>(std::move(live.applications), session),
      .energy = std::make_unique<RecordedEnergy>(std::move(live.energy), session),
      .battery = std::make_unique<RecordedBattery>(std::move(live.battery), session),
      .temperatures = std::make_unique<RecordedTemperatures>(std::move(live.temperatures), session),
      .smc = std::make_unique<RecordedSmc>(std::move(live.smc), session),
      .thermalState = std::make_unique<RecordedThermalState>(std::move(live.thermalState), session),
      .gpu = std::make_unique<RecordedGpu>(std::move(live.gpu), session),
      .memory = std::make_unique<RecordedMemory>(std::move(live.memory), session),
      .assertions = std::make_unique<RecordedAssertions>(std::move(live.assertions), session),
      .powerLog = std::make_unique<RecordedPowerLog>(std::move(live.powerLog), session),
      .commands = std::make_unique<RecordedCommands>(std::move(live.commands), session),
      .files = std::make_unique<RecordedFiles>(std::move(live.files), session),
      .folders = std::make_unique<RecordedFolders>(std::move(live.folders), session),
      .trash = std::move(live.trash),
  };
}

}  // namespace embrix
