#include "surfaces/awake_content.h"

#include <fmt/format.h>

#include "base/format.h"
#include "running/friendly_name.h"

namespace embrix {

namespace {

bool isIdle(const PowerModel& model, const SleepBlocker& blocker, double now) {
  if (!blocker.since || !(now - *blocker.since >= AwakeContent::kLeastHold)) return false;
  const AppGroup* app = model.groupForPID(blocker.pid);
  return app == nullptr || app->watts < AwakeContent::kAtWork;
}

}  // namespace

std::string BlockerContent::nameOf(const SleepBlocker& blocker) {
  return FriendlyName::name(blocker.processName).string();
}

BlockerContent BlockerContent::of(const SleepBlocker& blocker, double now) {
  return {.id = fmt::format("{}", blocker.pid),
          .name = nameOf(blocker),
          .detail = fmt::format(
              "{} · {}", Format::shortAge(now - blocker.since.value_or(now)),
              blocker.preventsSystemSleep ? "Keeps your Mac awake" : "Keeps the display on")};
}

std::vector<SleepBlocker> AwakeContent::awakeBlockers(const PowerModel& model, double now) {
  std::vector<SleepBlocker> blockers;
  if (!*model.frame()) return blockers;
  for (const SleepBlocker& blocker : (*model.frame())->sleepBlockers) {
    if (isIdle(model, blocker, now)) blockers.push_back(blocker);
  }
  return blockers;
}

std::vector<BlockerContent> AwakeContent::of(const PowerModel& model, double now) {
  std::vector<BlockerContent> rows;
  for (const SleepBlocker& blocker : awakeBlockers(model, now)) {
    rows.push_back(BlockerContent::of(blocker, now));
  }
  return rows;
}

}  // namespace embrix
