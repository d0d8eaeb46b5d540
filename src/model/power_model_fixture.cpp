// Demo data: shown like what was sampled, and never acted on.

#include <algorithm>
#include <utility>

#include "model/measured_frame.h"
#include "model/power_model.h"

namespace embrix {

namespace {

void removeFrom(AppGroup& group, std::int32_t pid) {
  const auto isGone = [&](const ProcessRow& row) { return row.pid == pid; };
  if (std::erase_if(group.processes, isGone) == 0) return;
  group.watts = group.cpuPercent = group.wakeupsPerSecond = 0;
  for (const ProcessRow& row : group.processes) {
    group.watts += row.watts;
    group.cpuPercent += row.cpuPercent;
    group.wakeupsPerSecond += row.wakeupsPerSecond;
  }
}

void removeFrom(Frame& frame, std::int32_t pid) {
  for (AppGroup& group : frame.groups) removeFrom(group, pid);
  std::erase_if(frame.groups, [](const AppGroup& group) { return group.processes.empty(); });
  std::stable_sort(frame.groups.begin(), frame.groups.end(),
                   [](const AppGroup& a, const AppGroup& b) { return a.watts > b.watts; });
  std::erase_if(frame.forgotten, [&](const ForgottenItem& item) {
    return std::any_of(item.members.begin(), item.members.end(),
                       [&](const ProcessFacts& member) { return member.pid == pid; });
  });
  std::erase_if(frame.servers,
                [&](const LocalServer& server) { return server.process.pid == pid; });
}

}  // namespace

void PowerModel::showFixture(FixtureData data) {
  const Changes changes(*this);
  isFixture_ = true;
  MeasuredFrame::keepOnly(data.frame, ports_.scheduler.wallTime());
  frame_.exchange(std::move(data.frame));
  nameGroups();
  history_.exchange(std::move(data.history));
  discharge_ = std::move(data.discharge);
  archive_ = std::move(data.archive);
  overnight_ = std::move(data.overnight);
  ledger_ = std::move(data.ledger);
  tenMinuteAverages_ = std::move(data.tenMinuteAverages);
}

void PowerModel::removeFromFixture(std::int32_t pid) {
  if (!*isFixture_ || !*frame_) return;
  frame_.change([&](std::optional<Frame>& frame) { removeFrom(*frame, pid); });
}

}  // namespace embrix
