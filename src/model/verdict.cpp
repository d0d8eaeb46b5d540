#include "model/verdict.h"

#include <algorithm>
#include <cmath>

#include <fmt/format.h>

#include "running/friendly_name.h"

namespace embrix {

namespace {

constexpr double kLeastWatts = 1.5;      // below that nobody is to blame
constexpr double kLeastShare = 0.2;      // of the whole machine
constexpr double kCulpritShare = 0.6;    // of its group, for one program to be the answer
constexpr std::size_t kLeastCopies = 2;  // from which on they are counted

std::string percentOf(double part, double whole) {
  return fmt::format("{:.0f}%", std::round(std::min(part / whole, 1.0) * 100));
}

// The group with the most watts, the first of equals; null without groups.
const AppGroup* topOf(const std::vector<AppGroup>& groups) {
  const auto top =
      std::max_element(groups.begin(), groups.end(),
                       [](const AppGroup& a, const AppGroup& b) { return a.watts < b.watts; });
  return top == groups.end() ? nullptr : &*top;
}

Verdict calm() {
  return {.kind = Verdict::Kind::calm,
          .headline = "All quiet",
          .detail = "No app is using much power.",
          .summary = "Nothing is working hard"};
}

Verdict busy(const AppGroup& group, double totalWatts) {
  const std::string app = group.identity.name.string();
  return {.kind = Verdict::Kind::busy,
          .headline = fmt::format("{} is working hard", app),
          .detail =
              fmt::format("Using {:.1f} W · {} of your Mac's power, across {} processes",
                          group.watts, percentOf(group.watts, totalWatts), group.processes.size()),
          .summary = fmt::format("Mostly {}", app),
          .subject = app,
          .name = app};
}

Verdict culprit(const AppGroup& group, const ProcessBundle& bundle, double totalWatts) {
  const std::string name = FriendlyName::name(bundle.name).string();
  const std::string app = group.identity.name.string();
  const std::string subject = name == app ? app : fmt::format("{} in {}", name, app);
  Verdict verdict{.kind = Verdict::Kind::culprit,
                  .headline = fmt::format("{} is heating your Mac", subject),
                  .detail = fmt::format("Using {:.1f} W · {} of your Mac's power", bundle.watts,
                                        percentOf(bundle.watts, totalWatts)),
                  .summary = fmt::format("Mostly {}", subject),
                  .subject = subject,
                  .name = name};
  if (name != app) verdict.app = app;
  for (const ProcessRow& row : group.processes) {
    if (row.name == bundle.name) verdict.processes.push_back(row);
  }
  if (verdict.processes.size() >= kLeastCopies) {
    verdict.detail += fmt::format(" · {} copies running", verdict.processes.size());
  }
  return verdict;
}

}  // namespace

Verdict Verdict::make(const std::vector<AppGroup>& groups, double totalWatts) {
  const AppGroup* top = topOf(groups);
  if (top == nullptr || top->watts < kLeastWatts) return calm();
  if (!(totalWatts > 0) || top->watts / totalWatts < kLeastShare) return calm();
  const auto bundles = top->bundles();
  if (bundles.empty() || bundles.front().watts < top->watts * kCulpritShare) {
    return busy(*top, totalWatts);
  }
  return culprit(*top, bundles.front(), totalWatts);
}

}  // namespace embrix
