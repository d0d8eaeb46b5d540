#include "running/simulator_finder.h"

#include <algorithm>

#include <fmt/format.h>
#include <fmt/ranges.h>

#include "base/text.h"

namespace embrix {

namespace {

using ChildrenByParent = SimulatorFinder::ChildrenByParent;
using Processes = std::vector<const ProcessFacts*>;

// The walk passes over pids in `seen` and adds those that it meets.
Processes walkBelow(std::int32_t pid, const ChildrenByParent& childrenByParent,
                    HashSet<std::int32_t>& seen) {
  Processes found;
  Processes waiting;
  const auto addChildren = [&](std::int32_t parent) {
    const auto children = childrenByParent.find(parent);
    if (children == childrenByParent.end()) return;
    waiting.insert(waiting.end(), children->second.begin(), children->second.end());
  };
  addChildren(pid);
  while (!waiting.empty()) {
    const ProcessFacts* process = waiting.back();
    waiting.pop_back();
    if (!seen.insert(process->pid).second) continue;
    found.push_back(process);
    addChildren(process->pid);
  }
  return found;
}

bool isHexDigit(char c) {
  return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F');
}

constexpr std::size_t kUUIDLength = 36;

bool isUUID(std::string_view text) {
  if (text.size() != kUUIDLength) return false;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const bool isHyphen = i == 8 || i == 13 || i == 18 || i == 23;
    if (isHyphen ? text[i] != '-' : !isHexDigit(text[i])) return false;
  }
  return true;
}

struct Root {
  const ProcessFacts* process = nullptr;
  std::string udid;
};

std::vector<Root> rootsOf(const std::vector<ProcessFacts>& facts, std::uint32_t currentUser) {
  std::vector<Root> roots;
  for (const ProcessFacts& process : facts) {
    if (process.name != SimulatorFinder::kRootName || process.uid != currentUser) continue;
    if (!(process.uptime >= SimulatorFinder::kLeastUptime)) continue;
    if (auto udid = SimulatorFinder::udid(process.arguments.list())) {
      roots.push_back({&process, std::move(*udid)});
    }
  }
  return roots;
}

ForgottenItem rowOf(const Root& root, const std::optional<SimulatorFinder::Device>& device,
                    const Processes& below) {
  ForgottenItem row;
  row.title = "iOS Simulator · " + (device ? device->name : "Simulator");
  if (device && device->runtime) row.project = SimulatorFinder::runtimeName(*device->runtime);
  row.symbol = "iphone.gen3";
  row.uptime = root.process->uptime;
  row.root = *root.process;
  row.members.reserve(below.size() + 1);
  row.members.push_back(*root.process);
  for (const ProcessFacts* process : below) row.members.push_back(*process);
  row.simulatorUDID = root.udid;
  return row;
}

}  // namespace

std::vector<ForgottenItem> SimulatorFinder::find(const std::vector<ProcessFacts>& facts,
                                                 std::uint32_t currentUser,
                                                 const DeviceReader& device) {
  const auto roots = rootsOf(facts, currentUser);
  if (roots.empty()) return {};
  ChildrenByParent childrenByParent;
  for (const ProcessFacts& process : facts) childrenByParent[process.ppid].push_back(&process);

  // A walk stops at the root of another row, so the rows share nobody and the walks together stay
  // as long as the table.
  HashSet<std::int32_t> seen;
  for (const Root& root : roots) seen.insert(root.process->pid);
  std::vector<ForgottenItem> rows;
  for (const Root& root : roots) {
    const auto below = walkBelow(root.process->pid, childrenByParent, seen);
    rows.push_back(rowOf(root, device(root.udid), below));
  }
  std::stable_sort(rows.begin(), rows.end(),
                   [](const auto& a, const auto& b) { return a.uptime > b.uptime; });
  return rows;
}

std::optional<std::string> SimulatorFinder::udid(const std::vector<std::string>& arguments) {
  constexpr std::string_view kFolder = "/Devices/";
  for (const std::string& argument : arguments) {
    const std::size_t folder = argument.find(kFolder);
    if (folder == std::string::npos) continue;
    const std::string_view text =
        std::string_view(argument).substr(folder + kFolder.size(), kUUIDLength);
    if (isUUID(text)) return std::string(text);
  }
  return std::nullopt;
}

std::optional<std::string> SimulatorFinder::runtimeName(std::string_view identifier) {
  const std::string_view last = identifier.substr(identifier.rfind('.') + 1);
  const auto pieces = Text::split(last, '-');
  if (pieces.size() < 2) return std::nullopt;
  return fmt::format("{} {}", pieces.front(), fmt::join(pieces.begin() + 1, pieces.end(), "."));
}

std::vector<const ProcessFacts*> SimulatorFinder::descendants(
    std::int32_t pid, const ChildrenByParent& childrenByParent) {
  HashSet<std::int32_t> seen = {pid};
  return walkBelow(pid, childrenByParent, seen);
}

}  // namespace embrix
