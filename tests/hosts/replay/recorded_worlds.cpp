#include "recorded_worlds.h"

#include <memory>
#include <stdexcept>
#include <utility>
#include <variant>

#include "hosts/replay/recording_host.h"
#include "hosts/replay/recording_writer.h"

namespace embrix {

namespace {

const std::string kAnyBytes("caf\xe9 \x01\0\xff", 8);

void fillProcesses(ScriptedHost& world) {
  world.add(1, "/sbin/launchd", 0).raw.uid = 0;
  auto& server = world.add(412, "/opt/homebrew/bin/node");
  server.raw.usage = RawUsage{.userTime = UINT64_MAX,
                              .systemTime = 1,
                              .packageIdleWakeups = 2,
                              .interruptWakeups = 3,
                              .footprint = 4,
                              .energyNJ = std::nullopt};
  server.arguments = {"node", "server.js", kAnyBytes, ""};
  server.directory = "/Users/ada/" + kAnyBytes;
  server.listening = {{3000, true}, {3000, false}, {9229, false}};
  server.responsiblePID = 500;
  auto& forbidden = world.add(77, "/usr/libexec/\xffhidden");
  forbidden.raw.usage = std::nullopt;
  forbidden.raw.commandName = "\xfe\xff";
  forbidden.responsiblePID = -1;
  world.add(500, "/Applications/Terminal.app/Contents/MacOS/Terminal");
  world.find(500)->path = std::nullopt;
}

void fillApplications(ScriptedHost& world) {
  world.bundles["/Applications/Terminal.app"] = {
      .displayName = "Terminal", .name = std::nullopt, .identifier = "com.apple.Terminal"};
  world.bundles["/Applications/Empty.app"] = {};
  world.applications["/usr/bin/gedit"] = {"Text Editor", "org.gnome.gedit", kAnyBytes};
  world.applicationPaths["com.apple.Terminal"] = "/Applications/Terminal.app";
}

void fillPower(ScriptedHost& world) {
  for (int i = 0; i < 8; ++i) {
    world.energyIntervals.push_back(
        {.channels = {{"CPU Energy", "mJ", 1234 + i}, {"GPU Energy", "\xb5J", INT64_MIN}},
         .seconds = i % 2 == 0 ? std::optional(std::vector<double>{0.1 + i, 0}) : std::nullopt});
  }
  world.hasBattery = true;
  world.batteryRegistry = PropertyMap{
      {"Voltage", 12'345},
      {"Amperage", std::int64_t{-1'234}},
      {"IsCharging", false},
      {"Fraction", 0.1},
      {"Whole", 3.0},
      {"Nothing", Property()},
      {"base64:odd", "a key that looks coded"},
      {kAnyBytes, kAnyBytes},
      {"BatteryData", PropertyMap{{"Cells", PropertyList{1, "two", PropertyMap{{"date", 3}}}}}},
      {"Updated", PropertyDate{1'750'000'000.25}}};
  world.powerSources = {PropertyMap{{"Name", "InternalBattery-0"}, {"Current Capacity", 80}}, {}};
  world.assertions = {{.pid = 412,
                       .assertions = {PropertyMap{{"AssertName", "keeps \xff awake"},
                                                  {"AssertStartWhen", PropertyDate{1.5}}}}},
                      {.pid = 1, .assertions = {}}};
  world.powerLog = "2025-06-01 Sleep\n\xff\n2025-06-02 Wake\n";
}

void fillReadings(ScriptedHost& world) {
  world.sensors = {{"PMU tdie1", 41.5}, {"", std::nullopt}, {"PMU tdie1", -1e300}};
  world.smcKeys["F0Ac"] = {"flt ", {0, 0, 0x80, 0x3f}};
  world.smcKeys["FNum"] = {"ui8 ", {1}};
  world.thermalState = ThermalState::serious;
  world.gpuStatistics = PropertyMap{{"Device Utilization %", 42}};
  world.gpuClients = {
      {.creator = "pid 412, node",
       .accumulatedTimes = std::vector<std::optional<std::uint64_t>>{UINT64_MAX, std::nullopt}},
      {.creator = std::nullopt, .accumulatedTimes = std::nullopt},
      {.creator = "", .accumulatedTimes = {{}}}};
  world.memoryCounters = MemoryCounters{1, 2, 3, UINT64_MAX};
  world.memoryFreeLevel = -5;
}

struct WorldFolders final : FolderSource {
  explicit WorldFolders(FolderWorld& folders) : world(folders) {}
  std::optional<BaseFolders> baseFolders() override { return world.baseFolders(); }
  std::optional<std::string> resolved(const std::string& path) override {
    return world.resolved(path);
  }
  bool exists(const std::string& path) override { return world.exists(path); }
  std::optional<FileFacts> facts(const std::string& path) override { return world.facts(path); }
  std::vector<FolderEntry> list(const std::string& folder) override { return world.list(folder); }
  std::optional<std::int64_t> measure(const std::string& folder, MeasureWatch& watch) override {
    return world.measure(folder, watch);
  }
  FolderWorld& world;
};

}  // namespace

void fillLaptop(ScriptedHost& world) {
  world.ticksToNS = 125.0 / 3;
  fillProcesses(world);
  fillApplications(world);
  fillPower(world);
  fillReadings(world);
  world.commandOutputs["/bin/ps"] = "PID\n\x80\n";
  world.files["/Users/ada/project/package.json"] = "{}\n";
}

Questions laptopQuestions() {
  return {.bundles = {"/Applications/Terminal.app", "/Applications/Empty.app", "/none"},
          .executables = {"/usr/bin/gedit", "/none"},
          .identifiers = {"com.apple.Terminal", "none"},
          .smcKeys = {"F0Ac", "FNum", "none"},
          .commands = {"/bin/ps", "/none"},
          .files = {"/Users/ada/project/package.json", "/none"}};
}

std::string recordingOf(ScriptedHost& world, const std::function<void(Host&)>& use,
                        FolderWorld* folders) {
  const ScratchFolder folder;
  auto opened = RecordingWriter::open(folder / "recording.jsonl");
  const auto writer = std::get<std::shared_ptr<RecordingWriter>>(std::move(opened));
  {
    Host live = world.host();
    if (folders != nullptr) live.folders = std::make_unique<WorldFolders>(*folders);
    Host host = recordingHost(std::move(live), writer);
    use(host);
  }
  if (!writer->problem().empty()) throw std::runtime_error(writer->problem());
  return folder.read("recording.jsonl");
}

std::string recordedInterviews(ScriptedHost& world, const Questions& questions, int ticks,
                               std::vector<TickAnswers>* answers) {
  return recordingOf(world, [&](Host& host) {
    for (int tick = 0; tick < ticks; ++tick) {
      TickAnswers given = interview(host, questions);
      if (answers != nullptr) answers->push_back(std::move(given));
      host.clock->sleep(2);
    }
  });
}

Replay replayOf(const std::string& recording) {
  auto result = openReplayOfBytes(recording, "recording.jsonl");
  if (auto* problem = std::get_if<RecordingProblem>(&result)) {
    throw std::runtime_error(problem->text);
  }
  return std::get<Replay>(std::move(result));
}

std::string problemWith(const std::string& recording) {
  const auto result = openReplayOfBytes(recording, "recording.jsonl");
  const auto* problem = std::get_if<RecordingProblem>(&result);
  return problem == nullptr ? std::string() : problem->text;
}

}  // namespace embrix
