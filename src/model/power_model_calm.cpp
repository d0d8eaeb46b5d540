// What the model does to processes: each named by pid and start time, so that nothing here ever
// reaches a later process of the same pid.

#include <cerrno>
#include <utility>

#include <fmt/format.h>

#include "model/power_model.h"
#include "model/process_identity.h"

namespace embrix {

namespace {

constexpr const char* kCategory = "PowerModel";

std::optional<std::int64_t> startTimeOf(const ProcessRow& row) {
  const auto identity = identityOf(row);
  return identity ? std::optional(identity->startTime) : std::nullopt;
}

}  // namespace

std::vector<ProcessRow> PowerModel::targetsInGroup(std::string_view key) const {
  std::vector<ProcessRow> targets;
  if (!*frame_) return targets;
  for (const AppGroup& group : (*frame_)->groups) {
    if (group.identity.key != key) continue;
    const auto bundles = group.bundles();
    if (bundles.empty()) break;
    for (const ProcessRow& row : group.processes) {
      if (row.name == bundles.front().name) targets.push_back(row);
    }
    break;
  }
  return targets;
}

bool PowerModel::isCalmed(const std::vector<ProcessRow>& rows) const {
  for (const ProcessRow& row : rows) {
    if (!calmed_->contains(row.pid)) return false;
  }
  return !rows.empty();
}

void PowerModel::calm(const std::vector<ProcessRow>& rows) {
  const Changes changes(*this);
  for (const ProcessRow& row : rows) {
    if (row.uid != uid()) continue;
    if (*isFixture_) {
      markCalmed(row);
      continue;
    }
    const int error = calmProcess(row);
    if (error != 0) {
      ports_.log.error(kCategory, fmt::format("Calm {} failed: {}", row.pid, error));
    }
  }
}

// The errno of a failure, which changes nothing.
int PowerModel::calmProcess(const ProcessRow& row) {
  const auto process = identityOf(row);
  const int error = process ? ports_.control.calm(*process) : ESRCH;
  if (error == 0) markCalmed(row);
  return error;
}

void PowerModel::markCalmed(const ProcessRow& row) {
  calmedStarts_.insert_or_assign(row.pid, startTimeOf(row));
  calmed_.change([&](Pids& calmed) { return calmed.insert(row.pid).second; });
}

void PowerModel::restore(const std::vector<ProcessRow>& rows) {
  const Changes changes(*this);
  for (const ProcessRow& row : rows) {
    autoCalmed_.change([&](Pids& autoCalmed) {
      if (autoCalmed.erase(row.pid) == 0) return false;
      autoCalmOverrides_.insert_or_assign(row.pid, startTimeOf(row));
      return true;
    });
  }
  for (const ProcessRow& row : rows) {
    if (!calmed_->contains(row.pid)) continue;
    if (!*isFixture_) restoreProcess(row.pid);
    forgetCalmed(row.pid);
  }
}

void PowerModel::restoreAllCalmed() {
  const Changes changes(*this);
  if (!*isFixture_) {
    for (const std::int32_t pid : *calmed_) restoreProcess(pid);
  }
  calmedStarts_.clear();
  calmed_ = Pids();
  autoCalmed_ = Pids();
}

// Of one in `calmed`. A failure means as a rule that the process has gone.
void PowerModel::restoreProcess(std::int32_t pid) {
  const auto process = calmedStarts_.find(pid);
  if (process == calmedStarts_.end() || !process->second) return;
  ports_.control.restore({.pid = pid, .startTime = *process->second});
}

void PowerModel::forgetCalmed(std::int32_t pid) {
  calmedStarts_.erase(pid);
  calmed_.change([&](Pids& calmed) { return calmed.erase(pid) > 0; });
}

void PowerModel::quit(const ProcessRow& row) {
  if (row.uid != uid()) return;
  if (*isFixture_) {
    removeFromFixture(row.pid);
    return;
  }
  const auto process = identityOf(row);
  const int error = process ? ports_.control.terminate(*process) : ESRCH;
  if (error != 0) {
    ports_.log.error(kCategory, fmt::format("SIGTERM to {} failed: {}", row.pid, error));
  }
}

void PowerModel::stop(std::int32_t pid) {
  if (!*frame_) return;
  for (const AppGroup& group : (*frame_)->groups) {
    for (const ProcessRow& row : group.processes) {
      if (row.pid != pid) continue;
      quit(ProcessRow(row));  // demo data loses the row itself on the way
      return;
    }
  }
}

// Those that have a row in the frame.
PowerModel::StartTimes PowerModel::living(const StartTimes& processes) const {
  StartTimes living;
  if (processes.empty() || !*frame_) return living;
  for (const AppGroup& group : (*frame_)->groups) {
    for (const ProcessRow& row : group.processes) {
      const auto process = processes.find(row.pid);
      if (process == processes.end()) continue;
      const auto start = startTimeOf(row);
      if (!start || !process->second || *start == *process->second) living.insert(*process);
    }
  }
  return living;
}

}  // namespace embrix
