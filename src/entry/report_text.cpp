#include "entry/report_text.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <string_view>
#include <vector>

#include <fmt/format.h>
#include <fmt/ranges.h>

#include "base/format.h"
#include "base/text.h"
#include "entry/report_figures.h"

namespace embrix {

namespace {

constexpr std::size_t kMostGroups = 10;
constexpr std::size_t kMostProcesses = 3;
constexpr std::size_t kMostRequesters = 5;
constexpr double kLeastGPUWatts = 0.01;
constexpr double kBytesPerGB = 1073741824.0;

std::string shown(std::string_view foreign) {
  return Text::escapeForTerminal(foreign);
}

std::string projectOrDash(const std::optional<std::string>& project) {
  return project ? shown(*project) : "-";
}

// "[3000, 3001]"
std::string listed(const std::vector<int>& numbers) {
  return fmt::format("[{}]", fmt::join(numbers, ", "));
}

// The fraction cut off. Adding zero takes the sign from a zero.
double whole(double value) {
  return std::trunc(value) + 0.0;
}

std::string tallies(const std::vector<Overnight::Tally>& tallies, std::size_t most) {
  std::string text;
  for (std::size_t i = 0; i < std::min(tallies.size(), most); ++i) {
    if (i > 0) text += ", ";
    text += fmt::format("{} ×{}", shown(tallies[i].name), tallies[i].count);
  }
  return text;
}

std::string percentOrMark(std::optional<int> percent) {
  return percent ? fmt::format("{}", *percent) : "?";
}

// Collects the report line by line.
class Lines {
 public:
  template <typename... Arguments>
  void add(fmt::format_string<Arguments...> format, Arguments&&... arguments) {
    fmt::format_to(std::back_inserter(text_), format, std::forward<Arguments>(arguments)...);
    text_ += '\n';
  }
  std::string take() && { return std::move(text_); }

 private:
  std::string text_;
};

void addHead(Lines& lines, const Frame& frame) {
  const auto system = systemWatts(frame);
  lines.add("system {}  processes {:.1f} W  temp {}",
            system ? fmt::format("{:.1f} W", *system) : "n/a", processWatts(frame),
            frame.temperature ? fmt::format("{:.0f}°C", *frame.temperature) : "–");
}

void addChip(Lines& lines, const Frame& frame) {
  if (frame.breakdown) {
    const PowerBreakdown& soc = *frame.breakdown;
    lines.add(
        "soc: cpu {:.2f} W  gpu {:.2f} W  ane {:.2f} W  memory {:.2f} W  display {:.2f} W  cores "
        "{}",
        soc.cpu, soc.gpu, soc.neuralEngine, soc.memory, soc.display, soc.cores.size());
  }
  if (frame.gpuUtilization && frame.memory) {
    lines.add(
        "gpu {:.0f}%  memory {:.1f} / {:.0f} GB  pressure {:.0f}%", *frame.gpuUtilization * 100,
        static_cast<double>(frame.memory->usedBytes) / kBytesPerGB,
        static_cast<double>(frame.memory->totalBytes) / kBytesPerGB, frame.memory->pressure * 100);
  }
}

void addFans(Lines& lines, const std::vector<Fan>& fans) {
  if (fans.empty()) return;
  std::vector<std::string> each;
  each.reserve(fans.size());
  for (const Fan& fan : fans) each.push_back(fmt::format("{:.0f}/{:.0f} rpm", fan.rpm, fan.maxRPM));
  lines.add("fans {}", fmt::join(each, "  "));
}

void addServer(Lines& lines, const LocalServer& server) {
  const auto& exposed = server.process.exposedPorts;
  lines.add("server: {} · {} · ports {}{} · pid {}", shown(server.title),
            projectOrDash(server.project), listed(server.ports),
            exposed.empty() ? "" : fmt::format(" · on network {}", listed(exposed)),
            server.process.pid);
}

void addBlocker(Lines& lines, const SleepBlocker& blocker) {
  std::vector<std::string> reasons;
  reasons.reserve(blocker.reasons.size());
  for (const std::string& reason : blocker.reasons) reasons.push_back(shown(reason));
  lines.add("awake: {} ({}) · {} · {}", shown(blocker.processName), blocker.pid,
            blocker.preventsDisplaySleep ? "Keeps the display on" : "Keeps your Mac awake",
            fmt::join(reasons, ", "));
}

void addOvernight(Lines& lines, const Overnight& night) {
  lines.add(
      "last sleep: {} · {} dark wakes · {:.0f}s awake · charge {}→{}% · causes {} · asked by {}",
      Format::durationSeconds(night.wokeAt - night.sleptAt), night.darkWakes,
      whole(night.awakeSeconds), percentOrMark(night.chargeAtSleep),
      percentOrMark(night.chargeAtWake), tallies(night.causes, night.causes.size()),
      tallies(night.requesters, kMostRequesters));
}

void addForgotten(Lines& lines, const ForgottenItem& item) {
  lines.add("forgotten: {} · {} · ports {} · up {:.0f}m · {} proc", shown(item.title),
            projectOrDash(item.project), listed(item.ports), whole(item.uptime / 60),
            item.members.size());
}

void addGroup(Lines& lines, const AppGroup& group) {
  double gpuWatts = 0;
  for (const ProcessRow& row : group.processes) gpuWatts += row.gpuWatts;
  lines.add("{:7.2f} W {:6.1f}%  {}{}", group.watts, group.cpuPercent, shown(group.identity.name),
            gpuWatts >= kLeastGPUWatts ? fmt::format("  (GPU {:.2f} W)", gpuWatts) : "");
  for (std::size_t i = 0; i < std::min(group.processes.size(), kMostProcesses); ++i) {
    const ProcessRow& row = group.processes[i];
    if (!isWorthALine(row)) continue;
    lines.add("    {:7.2f} W {:6.1f}%  {} ({})", row.watts, row.cpuPercent, shown(row.name),
              row.pid);
  }
}

}  // namespace

std::string reportText(const Frame& frame, const ReportExtras& extras) {
  Lines lines;
  addHead(lines, frame);
  addChip(lines, frame);
  if (extras.controlTitle) lines.add("control center: {}", shown(*extras.controlTitle));
  addFans(lines, frame.fans);
  for (const LocalServer& server : frame.servers) addServer(lines, server);
  for (const SleepBlocker& blocker : frame.sleepBlockers) addBlocker(lines, blocker);
  if (extras.overnight) addOvernight(lines, *extras.overnight);
  for (const ForgottenItem& item : frame.forgotten) addForgotten(lines, item);
  for (std::size_t i = 0; i < std::min(frame.groups.size(), kMostGroups); ++i) {
    addGroup(lines, frame.groups[i]);
  }
  return std::move(lines).take();
}

}  // namespace embrix
