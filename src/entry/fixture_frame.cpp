// The demo data's one frame.

#include <string>
#include <utility>

#include "entry/fixture.h"
#include "entry/fixture_rows.h"
#include "frame/process_sample.h"

namespace embrix {

namespace {

constexpr double kMegabyte = 1024.0 * 1024.0;
constexpr std::uint64_t kStarted = 1'750'000'000;  // of every process; no time of it is shown

std::string_view nameOf(std::int32_t pid) {
  for (const FixtureGroup& group : fixtureGroups()) {
    for (const FixtureProcess& process : group.processes) {
      if (process.pid == pid) return process.name;
    }
  }
  return {};
}

double uptimeOf(std::int32_t pid) {
  for (const FixtureGroup& group : fixtureGroups()) {
    for (const FixtureProcess& process : group.processes) {
      if (process.pid == pid) return process.uptimeHours * 3600;
    }
  }
  return 0;
}

ProcessRow rowOf(const FixtureProcess& process, std::uint32_t uid) {
  ProcessRow row;
  row.id = processID(process.pid, kStarted);
  row.pid = process.pid;
  row.uid = uid;
  row.name = process.name;
  row.watts = process.watts;
  row.cpuPercent = process.cpuPercent;
  row.wakeupsPerSecond = process.cpuPercent * 4;
  row.memoryBytes = static_cast<std::uint64_t>(process.memoryMB * kMegabyte);
  row.gpuWatts = process.gpuWatts;
  return row;
}

AppGroup group(const FixtureGroup& made, std::uint32_t uid) {
  AppGroup group;
  group.identity.key = made.key;
  group.identity.name = made.name;
  group.identity.rootPID = made.processes.front().pid;
  if (!made.bundlePath.empty()) {
    group.identity.app = AppInfo{.name = made.name, .bundleID = {}, .bundlePath = made.bundlePath};
  }
  for (const FixtureProcess& process : made.processes) {
    ProcessRow row = rowOf(process, uid);
    group.watts += row.watts;
    group.cpuPercent += row.cpuPercent;
    group.wakeupsPerSecond += row.wakeupsPerSecond;
    group.processes.push_back(std::move(row));
  }
  return group;
}

ProcessFacts factsOf(std::int32_t pid, std::uint32_t uid, std::string_view directory,
                     std::vector<int> ports) {
  ProcessFacts facts;
  facts.id = processID(pid, kStarted);
  facts.pid = pid;
  facts.ppid = 1;
  facts.uid = uid;
  facts.name = nameOf(pid);
  if (!directory.empty()) facts.directory = directory;
  facts.ports = std::move(ports);
  facts.uptime = uptimeOf(pid);
  return facts;
}

ForgottenItem item(std::string title, std::string symbol, const ProcessFacts& root) {
  ForgottenItem item;
  item.title = std::move(title);
  item.symbol = std::move(symbol);
  item.ports = root.ports;
  item.uptime = root.uptime;
  item.root = root;
  item.members = {root};
  return item;
}

ForgottenItem simulator(std::string device, const ProcessFacts& root) {
  ForgottenItem made = item("iOS Simulator · " + std::move(device), "iphone.gen3", root);
  made.project = "iOS 26.1";
  made.simulatorUDID = "FIXTURE-SIMULATOR";
  return made;
}

LocalServer server(std::string title, std::optional<std::string> project, std::string symbol,
                   const ProcessFacts& process) {
  return {.title = std::move(title),
          .project = std::move(project),
          .symbol = std::move(symbol),
          .ports = process.ports,
          .process = process};
}

}  // namespace

std::vector<AppGroup> Fixture::groups(std::uint32_t uid) {
  std::vector<AppGroup> groups;
  for (const FixtureGroup& made : fixtureGroups()) groups.push_back(group(made, uid));
  return groups;
}

std::vector<ForgottenItem> Fixture::forgotten(std::uint32_t uid) {
  ForgottenItem dev =
      item("pnpm dev", "server.rack", factsOf(5561, uid, "/Users/me/code/trailmix", {5173}));
  dev.project = "trailmix";
  ForgottenItem emulator = item("Android emulator · Pixel_8", "iphone.gen3",
                                factsOf(2207, uid, "/Users/me/code/recipe-box", {5554}));
  emulator.project = "recipe-box";
  return {item("OrbStack VM", "shippingbox", factsOf(1480, uid, {}, {})),
          simulator("iPhone 17", factsOf(903, uid, {}, {})), std::move(emulator), std::move(dev)};
}

std::vector<LocalServer> Fixture::servers(std::uint32_t uid) {
  LocalServer next = server("next-server", "lemonade-stand", "server.rack",
                            factsOf(4319, uid, "/Users/me/code/lemonade-stand", {3000, 3001}));
  next.process.exposedPorts = {3000};
  return {std::move(next),
          server("pnpm dev", "trailmix", "server.rack",
                 factsOf(5561, uid, "/Users/me/code/trailmix", {5173})),
          server("Android debug bridge (adb)", std::nullopt, "cable.connector",
                 factsOf(2233, uid, {}, {5037})),
          server("netsimd", std::nullopt, "terminal", factsOf(2240, uid, {}, {6401, 6402}))};
}

Frame Fixture::frame(double now, std::uint32_t uid) {
  Frame frame;
  frame.date = now;
  frame.groups = groups(uid);
  frame.battery = BatteryReading{.systemWatts = 31.4,
                                 .percent = 72,
                                 .minutesRemaining = 97,
                                 .isCharging = false,
                                 .externalConnected = false,
                                 .healthPercent = 94,
                                 .cycleCount = 212,
                                 .remainingWh = 50.6,
                                 .fullWh = 70.2};
  frame.temperature = 71.6;
  frame.thermalState = ThermalState::fair;
  frame.breakdown = PowerBreakdown{
      .cpu = 15.2, .gpu = 2.6, .neuralEngine = 0, .memory = 1.4, .display = 3.2, .cores = {}};
  frame.gpuUtilization = 0.27;
  frame.memory =
      MemoryReading{.usedBytes = 25'769'803'776, .totalBytes = 34'359'738'368, .pressure = 0.46};
  frame.fans = {{.rpm = 2316, .maxRPM = 5777}, {.rpm = 2489, .maxRPM = 6241}};
  frame.forgotten = forgotten(uid);
  frame.servers = servers(uid);
  frame.sleepBlockers = {{.pid = 6120,
                          .processName = "caffeinate",
                          .preventsSystemSleep = true,
                          .preventsDisplaySleep = false,
                          .reasons = {"caffeinate command-line tool"},
                          .since = now - 3.2 * 3600}};
  return frame;
}

}  // namespace embrix
