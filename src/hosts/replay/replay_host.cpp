#include "hosts/replay/replay_host.h"

#include <filesystem>
#include <fstream>
#include <memory>
#include <sstream>
#include <system_error>
#include <utility>

#include <fmt/format.h>

#include "base/text.h"
#include "hosts/replay/replay_session.h"

namespace embrix {

namespace {

// What each replayed source has.
template <typename Source>
struct Replayed : Source {
  explicit Replayed(std::shared_ptr<ReplaySession> recording) : session(std::move(recording)) {}
  std::shared_ptr<ReplaySession> session;
};

struct ReplayedClock final : Replayed<Clock> {
  using Replayed::Replayed;
  void beginTick() override { session->beginTick(); }
  double uptime() override { return session->uptime(); }
  double wallTime() override { return session->wallTime(); }
  void sleep(double) override {}
};

struct ReplayedProcesses final : Replayed<ProcessSource> {
  ReplayedProcesses(std::shared_ptr<ReplaySession> recording, double nanoseconds)
      : Replayed(std::move(recording)), perTick(nanoseconds) {}
  double ticksToNS() override { return perTick; }
  void read(std::vector<RawProcess>& table) override { session->readTable(table); }
  std::optional<std::string> executablePath(std::int32_t pid) override {
    return session->about(pid, &ProcessAnswers::path);
  }
  const double perTick;
};

struct ReplayedDetails final : Replayed<ProcessDetailsSource> {
  using Replayed::Replayed;
  std::vector<std::string> arguments(std::int32_t pid) override {
    return session->about(pid, &ProcessAnswers::arguments);
  }
  std::optional<std::string> directory(std::int32_t pid) override {
    return session->about(pid, &ProcessAnswers::directory);
  }
  std::vector<ListeningPort> listening(std::int32_t pid) override {
    return session->about(pid, &ProcessAnswers::listening);
  }
};

struct ReplayedResponsibility final : Replayed<ResponsibilitySource> {
  using Replayed::Replayed;
  std::optional<std::int32_t> responsiblePID(std::int32_t pid) override {
    return session->about(pid, &ProcessAnswers::responsiblePID);
  }
};

struct ReplayedApplications final : Replayed<ApplicationSource> {
  using Replayed::Replayed;
  std::optional<ApplicationBundle> bundle(const std::string& path) override {
    return session->lasting(&LastingAnswers::bundles, path);
  }
  std::optional<InstalledApplication> byExecutable(const std::string& path) override {
    return session->lasting(&LastingAnswers::programs, path);
  }
  std::optional<std::string> pathForIdentifier(const std::string& identifier) override {
    return session->lasting(&LastingAnswers::applicationPaths, identifier);
  }
};

struct ReplayedEnergy final : Replayed<EnergySource> {
  using Replayed::Replayed;
  bool sample() override { return session->answer(&RecordedTick::energySamples).value_or(false); }
  std::optional<EnergyInterval> interval() override {
    return session->answer(&RecordedTick::energyIntervals).value_or(std::nullopt);
  }
};

struct ReplayedBattery final : Replayed<BatterySource> {
  ReplayedBattery(std::shared_ptr<ReplaySession> recording, bool isThere)
      : Replayed(std::move(recording)), hasBattery(isThere) {}
  bool hasService() override { return hasBattery; }
  std::optional<PropertyMap> registry() override {
    return session->answer(&RecordedTick::batteryRegistry).value_or(std::nullopt);
  }
  std::vector<PropertyMap> powerSources() override {
    return session->answer(&RecordedTick::powerSources).value_or(std::vector<PropertyMap>{});
  }
  const bool hasBattery;
};

struct ReplayedTemperatures final : Replayed<TemperatureSource> {
  ReplayedTemperatures(std::shared_ptr<ReplaySession> recording, std::vector<std::string> sensors)
      : Replayed(std::move(recording)), names(std::move(sensors)) {}
  std::vector<std::string> sensors() override { return names; }
  std::optional<double> read(std::size_t index) override { return session->temperature(index); }
  const std::vector<std::string> names;
};

struct ReplayedSmc final : Replayed<SmcSource> {
  ReplayedSmc(std::shared_ptr<ReplaySession> recording, bool isThere)
      : Replayed(std::move(recording)), hasSmc(isThere) {}
  bool isOpen() override { return hasSmc; }
  bool call(const SmcPacketBytes& input, SmcPacketBytes& output) override {
    const auto answer = session->lasting(&LastingAnswers::smc, input);
    if (answer) output = *answer;
    return answer.has_value();
  }
  const bool hasSmc;
};

struct ReplayedThermalState final : Replayed<ThermalStateSource> {
  using Replayed::Replayed;
  ThermalState read() override {
    return session->answer(&RecordedTick::thermalState).value_or(ThermalState::nominal);
  }
};

struct ReplayedGpu final : Replayed<GpuSource> {
  using Replayed::Replayed;
  std::optional<PropertyMap> performanceStatistics() override {
    return session->answer(&RecordedTick::gpuStatistics).value_or(std::nullopt);
  }
  std::vector<GpuClient> clients() override {
    return session->answer(&RecordedTick::gpuClients).value_or(std::vector<GpuClient>{});
  }
};

struct ReplayedMemory final : Replayed<MemorySource> {
  ReplayedMemory(std::shared_ptr<ReplaySession> recording, const RecordingHeader& header)
      : Replayed(std::move(recording)), page(header.pageSize), physical(header.physicalBytes) {}
  std::uint64_t pageSize() override { return page; }
  std::uint64_t physicalBytes() override { return physical; }
  std::optional<MemoryCounters> counters() override {
    return session->answer(&RecordedTick::memoryCounters).value_or(std::nullopt);
  }
  std::optional<std::int32_t> freeLevel() override {
    return session->answer(&RecordedTick::memoryFreeLevel).value_or(std::nullopt);
  }
  const std::uint64_t page;
  const std::uint64_t physical;
};

struct ReplayedAssertions final : Replayed<AssertionSource> {
  using Replayed::Replayed;
  std::vector<ProcessAssertions> read() override {
    return session->answer(&RecordedTick::assertions).value_or(std::vector<ProcessAssertions>{});
  }
};

struct ReplayedPowerLog final : Replayed<PowerLogSource> {
  using Replayed::Replayed;
  std::string read() override { return session->powerLog(); }
};

struct ReplayedCommands final : Replayed<CommandRunner> {
  using Replayed::Replayed;
  std::optional<std::string> output(const std::string& program,
                                    const std::vector<std::string>& arguments) override {
    return session->lasting(&LastingAnswers::commandOutputs, commandLine(program, arguments));
  }
  std::optional<std::string> successfulOutput(const std::string& program,
                                              const std::vector<std::string>& arguments) override {
    return output(program, arguments);
  }
  bool start(const std::string& program, const std::vector<std::string>& arguments) override {
    return session->lasting(&LastingAnswers::commandStarts, commandLine(program, arguments))
        .value_or(false);
  }
};

struct ReplayedFiles final : Replayed<FileSource> {
  using Replayed::Replayed;
  std::optional<std::string> read(const std::string& path) override {
    return session->lasting(&LastingAnswers::files, path);
  }
};

struct ReplayedFolders final : Replayed<FolderSource> {
  ReplayedFolders(std::shared_ptr<ReplaySession> recording, std::optional<BaseFolders> folders)
      : Replayed(std::move(recording)), base(std::move(folders)) {}
  std::optional<BaseFolders> baseFolders() override { return base; }
  std::optional<std::string> resolved(const std::string& path) override {
    return session->lasting(&LastingAnswers::resolvedPaths, path);
  }
  bool exists(const std::string& path) override {
    return session->lasting(&LastingAnswers::existing, path).value_or(false);
  }
  std::optional<FileFacts> facts(const std::string& path) override {
    return session->lasting(&LastingAnswers::fileFacts, path);
  }
  std::vector<FolderEntry> list(const std::string& folder) override {
    return session->lasting(&LastingAnswers::folderLists, folder)
        .value_or(std::vector<FolderEntry>{});
  }
  std::optional<std::int64_t> measure(const std::string& folder, MeasureWatch& watch) override {
    if (watch.abandoned()) return std::nullopt;
    const std::int64_t bytes = session->lasting(&LastingAnswers::folderSizes, folder).value_or(0);
    watch.add(0, bytes);
    return bytes;
  }
  const std::optional<BaseFolders> base;
};

Host hostOf(const RecordingHeader& header, const std::shared_ptr<ReplaySession>& session) {
  Host absent = absentHost();
  return Host{
      .name = header.hostName,
      .machine = header.machine,
      .user = header.user,
      .clock = std::make_unique<ReplayedClock>(session),
      .processes = std::make_unique<ReplayedProcesses>(session, header.ticksToNS),
      .processDetails = std::make_unique<ReplayedDetails>(session),
      .responsibility = std::make_unique<ReplayedResponsibility>(session),
      .applications = std::make_unique<ReplayedApplications>(session),
      .energy = std::make_unique<ReplayedEnergy>(session),
      .battery = std::make_unique<ReplayedBattery>(session, header.hasBattery),
      .temperatures = std::make_unique<ReplayedTemperatures>(session, header.sensors),
      .smc = std::make_unique<ReplayedSmc>(session, header.hasSmc),
      .thermalState = std::make_unique<ReplayedThermalState>(session),
      .gpu = std::make_unique<ReplayedGpu>(session),
      .memory = std::make_unique<ReplayedMemory>(session, header),
      .assertions = std::make_unique<ReplayedAssertions>(session),
      .powerLog = std::make_unique<ReplayedPowerLog>(session),
      .commands = std::make_unique<ReplayedCommands>(session),
      .files = std::make_unique<ReplayedFiles>(session),
      .folders = std::make_unique<ReplayedFolders>(session, header.baseFolders),
      // Nothing of this machine is moved.
      .trash = std::move(absent.trash),
  };
}

RecordingProblem unreadable(const std::string& name, std::string_view reason) {
  return {fmt::format("cannot replay {}: {}", Text::escapeForTerminal(name), reason)};
}

ReplayResult replayOf(std::unique_ptr<std::istream> bytes, const std::string& name) {
  auto reader = std::make_unique<RecordingReader>(std::move(bytes), name);
  const auto header = reader->header();
  if (!header) return RecordingProblem{reader->problem()};
  std::uint64_t ticks = 0;
  ReplayedTicks trial(*header);
  while (auto tick = reader->tick()) {
    ticks = tick->number;
    if (auto problem = trial.enter(std::move(*tick))) reader->reject(*problem);
  }
  if (!reader->problem().empty()) return RecordingProblem{reader->problem()};
  if (ticks == 0) return unreadable(name, "it holds no whole tick");
  const bool isTorn = reader->lastLineWasTorn();
  reader->rewind();
  if (!reader->header()) return RecordingProblem{reader->problem()};
  const auto session = std::make_shared<ReplaySession>(*header, std::move(reader), ticks);
  return Replay{.host = hostOf(*header, session),
                .ticks = ticks,
                .tornLastLine = isTorn,
                .finished = [session] { return session->finished(); },
                .moment = [session] { return session->moment(); }};
}

}  // namespace

ReplayResult openReplay(const std::string& path) {
  std::error_code error;
  const auto status = std::filesystem::status(path, error);
  if (!std::filesystem::exists(status)) {
    return unreadable(path, error ? error.message() : "there is no such file");
  }
  if (std::filesystem::is_directory(status)) return unreadable(path, "it is a folder");
  // A pipe or a device cannot be read twice.
  if (!std::filesystem::is_regular_file(status)) return unreadable(path, "it is no regular file");
  auto file = std::make_unique<std::ifstream>(path, std::ios::binary);
  if (!file->is_open()) return unreadable(path, "it cannot be read");
  return replayOf(std::move(file), path);
}

ReplayResult openReplayOfBytes(std::string bytes, std::string name) {
  return replayOf(std::make_unique<std::istringstream>(std::move(bytes)), name);
}

}  // namespace embrix
