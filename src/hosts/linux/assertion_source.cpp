#include "hosts/linux/assertion_source.h"

#include <limits>
#include <string_view>
#include <utility>

#include "base/text.h"
#include "hosts/linux/system_file.h"

namespace embrix {

namespace {

struct Kind {
  std::string_view what;
  const char* type;
};
constexpr Kind kKinds[] = {{"idle", "PreventUserIdleSystemSleep"}, {"sleep", "PreventSystemSleep"}};

bool hasWord(std::string_view words, std::string_view word) {
  bool isThere = false;
  forEachPiece(words, ':', [&](std::string_view piece) { isThere = isThere || piece == word; });
  return isThere;
}

}  // namespace

LinuxAssertionSource::LinuxAssertionSource(const std::string& root, InhibitorLister list,
                                           std::function<double()> wallTime)
    : proc_(belowRoot(root, "/proc")), list_(std::move(list)), wallTime_(std::move(wallTime)) {}

std::string LinuxAssertionSource::processName(const LogindInhibitor& inhibitor) const {
  if (!inhibitor.who.empty()) return Text::repaired(inhibitor.who);
  const auto name = readSystemLine(proc_ + "/" + std::to_string(inhibitor.pid) + "/comm");
  return name ? Text::repaired(*name) : std::string();
}

std::vector<ProcessAssertions> LinuxAssertionSource::read() {
  const auto inhibitors = list_();
  if (!inhibitors) return {};
  const double now = wallTime_();
  std::map<Hold, double> seen;
  std::map<std::int32_t, ProcessAssertions> processes;
  for (const LogindInhibitor& inhibitor : *inhibitors) {
    // "block-weak" yields to a user who insists, and holds off everything else.
    if (inhibitor.mode != "block" && inhibitor.mode != "block-weak") continue;
    if (inhibitor.pid == 0 || inhibitor.pid > std::numeric_limits<std::int32_t>::max()) continue;
    const Hold hold{inhibitor.pid, inhibitor.what, inhibitor.who, inhibitor.why};
    const auto known = firstSeen_.find(hold);
    const double since = known == firstSeen_.end() ? now : known->second;
    for (const Kind& kind : kKinds) {
      if (!hasWord(inhibitor.what, kind.what)) continue;
      seen.emplace(hold, since);
      PropertyMap assertion{{"AssertType", kind.type},
                            {"AssertName", Text::repaired(inhibitor.why)},
                            {"AssertStartWhen", PropertyDate{since}}};
      const std::string name = processName(inhibitor);
      if (!name.empty()) assertion.emplace("Process Name", name);
      const auto pid = static_cast<std::int32_t>(inhibitor.pid);
      ProcessAssertions& process = processes[pid];
      process.pid = pid;
      process.assertions.push_back(std::move(assertion));
    }
  }
  firstSeen_ = std::move(seen);
  std::vector<ProcessAssertions> assertions;
  for (auto& [pid, process] : processes) assertions.push_back(std::move(process));
  return assertions;
}

}  // namespace embrix
