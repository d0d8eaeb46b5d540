// The rules that tell what the user has running, over many facts. What it costs to collect the
// facts is not in it.

#include <benchmark/benchmark.h>

#include <cstdint>
#include <string>
#include <vector>

#include "base/text.h"
#include "running/forgotten_finder.h"
#include "running/local_servers.h"
#include "running/simulator_finder.h"

namespace embrix {
namespace {

constexpr std::uint32_t kUser = 501;
constexpr const char* kHome = "/Users/me";

// A developer's table: of ten processes four are applications' helpers, three are script runtimes
// in small trees, and the others a build daemon, a script and a database.
std::vector<ProcessFacts> developersTable(std::int64_t count) {
  std::vector<ProcessFacts> table;
  for (std::int32_t i = 0; i < count; ++i) {
    ProcessFacts facts;
    facts.pid = i + 2;
    facts.ppid = 1;
    facts.id = std::to_string(facts.pid) + "-1700000000";
    facts.uid = kUser;
    facts.uptime = 3600 + i % 1000;
    facts.directory = "/Users/me/code/project-" + std::to_string(i / 40);
    switch (i % 10) {
      case 0:
      case 1:
      case 2:
        facts.ppid = i % 10 == 0 ? 1 : i + 1;
        facts.path = "/opt/homebrew/bin/node";
        facts.arguments = {"node", "--max-old-space-size=4096",
                           "/Users/me/code/x/node_modules/.bin/vite", "dev"};
        facts.ports = {3000 + i % 2000};
        break;
      case 3:
        facts.path = "/opt/openjdk/bin/java";
        facts.arguments = {"java", "-Xmx512m", "-cp", std::string(2000, 'x'),
                           "org.gradle.launcher.daemon.bootstrap.GradleDaemon"};
        break;
      case 4:
        facts.path = "/opt/homebrew/bin/python3.12";
        facts.arguments = {"python3", "-m", "http.server"};
        facts.ports = {8000};
        break;
      case 5:
        facts.path = "/opt/homebrew/bin/redis-server";
        facts.arguments = {"redis-server *:6379"};
        facts.ports = {6379};
        break;
      default:
        facts.path = "/Applications/Browser.app/Contents/Helpers/Helper.app/Contents/MacOS/Helper";
        facts.arguments = {"Helper", "--type=renderer", "--lang=en-US", std::string(400, 'x')};
        break;
    }
    facts.name = Text::lastPiece(*facts.path, '/');
    table.push_back(std::move(facts));
  }
  return table;
}

void perFact(benchmark::State& state) {
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

void findForgotten(benchmark::State& state) {
  const auto table = developersTable(state.range(0));
  for (auto _ : state) benchmark::DoNotOptimize(ForgottenFinder::find(table, kUser, kHome));
  perFact(state);
}
BENCHMARK(findForgotten)->Arg(1000)->Arg(10'000)->Arg(100'000)->Unit(benchmark::kMillisecond);

void findServers(benchmark::State& state) {
  const auto table = developersTable(state.range(0));
  for (auto _ : state) benchmark::DoNotOptimize(LocalServers::find(table, kUser, kHome));
  perFact(state);
}
BENCHMARK(findServers)->Arg(1000)->Arg(10'000)->Arg(100'000)->Unit(benchmark::kMillisecond);

// Every tenth of the table below one simulator.
void findSimulators(benchmark::State& state) {
  auto table = developersTable(state.range(0));
  table[0].name = SimulatorFinder::kRootName;
  table[0].arguments = {"launchd_sim", "/Devices/3F2504E0-4F89-41D3-9A0C-0305E82C3301/data"};
  for (std::size_t i = 10; i < table.size(); i += 10) table[i].ppid = table[0].pid;
  const auto device = [](const std::string&) { return SimulatorFinder::Device{"iPhone", {}}; };
  for (auto _ : state) benchmark::DoNotOptimize(SimulatorFinder::find(table, kUser, device));
  perFact(state);
}
BENCHMARK(findSimulators)->Arg(1000)->Arg(10'000)->Arg(100'000)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace embrix
