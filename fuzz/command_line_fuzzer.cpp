// Command lines and folders as other programs may write them, against the rules that name what is
// running. The input is a process: its lines are name, folder, path, and then its arguments.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

#include "running/forgotten_finder.h"
#include "running/local_servers.h"
#include "running/simulator_finder.h"
#include "running/system_folders.h"

namespace embrix {
namespace {

void require(bool holds) {
  if (!holds) std::abort();
}

std::vector<std::string> linesOf(std::string_view text) {
  std::vector<std::string> lines;
  while (!text.empty()) {
    const std::size_t end = std::min(text.find('\n'), text.size());
    lines.emplace_back(text.substr(0, end));
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  return lines;
}

ProcessFacts processOf(std::vector<std::string> lines) {
  ProcessFacts process;
  process.id = "10-0";
  process.pid = 10;
  process.ppid = 1;
  process.uptime = 7200;
  process.ports = {3000};
  if (lines.size() > 0) process.name = lines[0];
  if (lines.size() > 1) process.directory = lines[1];
  if (lines.size() > 2 && !lines[2].empty()) process.path = lines[2];
  if (lines.size() > 3) process.arguments = std::vector(lines.begin() + 3, lines.end());
  return process;
}

void tryRules(const ProcessFacts& process, const SystemFolders& folders) {
  const auto description = ForgottenFinder::describe(process);
  require(!description || !description->symbol.empty());
  require(!ForgottenFinder::scriptTitle(process.arguments, "node").empty());
  const auto project = ForgottenFinder::project(process.directory, "/home/me");
  require(!project || !project->empty());

  const auto items = ForgottenFinder::find({process}, 0, "/home/me", folders);
  const auto servers = LocalServers::find({process}, 0, "/home/me", folders);
  require(items.size() <= 1 && servers.size() <= 1);
  if (folders.hold(process)) require(items.empty() && servers.empty());
  if (!items.empty() && description) require(items.front().title == description->title);

  const auto udid = SimulatorFinder::udid(process.arguments.list());
  require(!udid || udid->size() == 36);
  for (const std::string& argument : process.arguments) {
    const auto runtime = SimulatorFinder::runtimeName(argument);
    require(!runtime || runtime->size() >= 3);
  }
}

}  // namespace
}  // namespace embrix

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace embrix;
  static const SystemFolders mac;
  static const SystemFolders linux = SystemFolders::forHost("linux");
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  const ProcessFacts process = processOf(linesOf(text));
  tryRules(process, mac);
  tryRules(process, linux);
  return 0;
}
