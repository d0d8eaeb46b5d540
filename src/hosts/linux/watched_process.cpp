#include "hosts/linux/watched_process.h"

#include <algorithm>
#include <utility>

#include "hosts/linux/run_clock.h"

namespace embrix {

namespace {

// The kernel can take pages from a process that sleeps. One process in so many is looked at in full
// at each tick, so that no figure grows older than this many ticks.
constexpr unsigned kFullLookEvery = 64;
// Programs give up root's rights as they start. A new process has its user read again at so many of
// its first full looks; later, and one that was there before, only when its name changes.
constexpr int kWatchedLooks = 8;

std::optional<std::string_view> readStat(ProcFiles& files, std::int32_t pid) {
  return files.read(ProcPath(pid, "stat").text());
}

std::optional<SchedStat> readSchedStat(ProcFiles& files, std::int32_t pid) {
  const auto text = files.read(ProcPath(pid, "schedstat").text());
  return text ? parseSchedStat(*text) : std::nullopt;
}

std::optional<SchedStat> readSchedStat(ProcFiles& files, std::int32_t pid, std::int32_t tid) {
  const std::string path = std::string("task/") + ProcPath(tid, "schedstat").text();
  const auto text = files.read(ProcPath(pid, path).text());
  return text ? parseSchedStat(*text) : std::nullopt;
}

}  // namespace

bool WatchedProcess::refresh(ProcView& view) {
  if (isKnown_) {
    const bool isThere = hasRunClock_ ? refreshByClock(view)
                         : readsStat_ ? refreshByStat(view)
                                      : refreshBySchedStat(view);
    if (isThere) return true;
    *this = WatchedProcess(pid_);
  }
  return meet(view);
}

void WatchedProcess::rereadParent(ProcView& view) {
  takeStat(view, readStat(view.files, pid_));
}

bool WatchedProcess::takeRelationChange() {
  return std::exchange(hasNewRelations_, false);
}

// The first look at a process.
bool WatchedProcess::meet(ProcView& view) {
  if (!takeStat(view, readStat(view.files, pid_))) return false;
  isKnown_ = true;
  hasNewRelations_ = true;
  readUser(view);
  if (!view.isFirstTable) watchedLooks_ = kWatchedLooks;

  cpuNS_ = ticksNS_;
  const auto ranNS = view.hasRunClocks ? runTimeNS(pid_) : std::nullopt;
  hasRunClock_ = ranNS.has_value();
  const auto sched = readSchedStat(view.files, pid_);
  hasSchedStat_ = sched.has_value();
  if (sched) {
    takeSchedStat(*sched);
    cpuNS_ = std::max(cpuNS_, sched->runNS);
    if (ranNS) cpuNS_ = *ranNS;
    // Stat rounds two figures down to clock ticks: above that, a leading thread that never ran is a
    // kernel that does not count.
    if (sched->runNS == 0 && !hasThreads_ && ticksNS_ > 2 * view.tickNS) {
      view.runTimeIsCounted = false;
    }
  }
  energyNJ_ = static_cast<double>(cpuNS_) * view.wattsPerBusyCore;
  if (hasRunClock_ && hasThreads_) countThreadSlices(view);
  chooseFile(view);
  return true;
}

bool WatchedProcess::isDue(const ProcView& view) const {
  return (static_cast<unsigned>(pid_) + view.tick) % kFullLookEvery == 0;
}

// A pid that was given again is noticed by a time that differs, or else when the process is due.
bool WatchedProcess::refreshByClock(ProcView& view) {
  const auto ranNS = runTimeNS(pid_);
  if (!ranNS) return false;
  if (*ranNS == cpuNS_) return !isDue(view) || takeStat(view, readStat(view.files, pid_));

  const std::uint64_t ticksBefore = ticksNS_;
  if (!takeStat(view, view.files.read(counter_, ProcPath(pid_, "stat").text()))) return false;
  addTime(view, *ranNS);
  if (hasThreads_) {
    // Dear, so only after some time on a CPU.
    if (threads_.empty() || ticksNS_ != ticksBefore) countThreadSlices(view);
  } else {
    threads_.clear();
    if (const auto sched = readSchedStat(view.files, pid_)) takeSchedStat(*sched);
  }
  return true;
}

bool WatchedProcess::refreshBySchedStat(ProcView& view) {
  const auto text = view.files.read(counter_, ProcPath(pid_, "schedstat").text());
  const auto sched = text ? parseSchedStat(*text) : std::nullopt;
  if (!sched) return false;
  if (sched->runNS == runNS_ && view.runTimeIsCounted && !isDue(view)) return true;

  const std::uint64_t ranNS = sched->runNS > runNS_ ? sched->runNS - runNS_ : 0;
  takeSchedStat(*sched);
  if (!takeStat(view, readStat(view.files, pid_))) return false;
  // Two figures tell of the same time: what the leading thread ran, exact and blind to the others;
  // and stat's sum over all threads, those that ended among them, cut off to clock ticks. Neither
  // ever says too much, so the larger is the better.
  addTime(view, std::max(cpuNS_ + ranNS, ticksNS_));
  chooseFile(view);
  return true;
}

bool WatchedProcess::refreshByStat(ProcView& view) {
  const std::uint64_t before = ticksNS_;
  if (!takeStat(view, view.files.read(counter_, ProcPath(pid_, "stat").text()))) return false;
  if (ticksNS_ != before) {
    addTime(view, ticksNS_);
    countThreadSlices(view);
  }
  chooseFile(view);
  return true;
}

bool WatchedProcess::takeStat(ProcView& view, std::optional<std::string_view> text) {
  const auto stat = text ? parseProcStat(*text) : std::nullopt;
  if (!stat || stat->pid != pid_) return false;
  if (isKnown_ && stat->startTicks != startTicks_) return false;

  startTicks_ = stat->startTicks;
  ticksNS_ = (stat->userTicks + stat->systemTicks) * view.tickNS;
  footprint_ = stat->residentPages * view.pageSize;
  hasThreads_ = stat->threads > 1;
  const bool isRenamed = commandName_ != stat->commandName;
  if (isRenamed) commandName_ = stat->commandName;
  if (isRenamed || ppid_ != stat->ppid) hasNewRelations_ = true;
  ppid_ = stat->ppid;
  if (isKnown_ && (isRenamed || watchedLooks_ > 0)) {
    watchedLooks_ = std::max(0, watchedLooks_ - 1);
    readUser(view);
  }
  return true;
}

void WatchedProcess::takeSchedStat(const SchedStat& sched) {
  runNS_ = sched.runNS;
  if (sched.timeSlices > slices_) wakeups_ += sched.timeSlices - slices_;
  slices_ = sched.timeSlices;
}

// The time never goes back.
void WatchedProcess::addTime(const ProcView& view, std::uint64_t cpuNS) {
  if (cpuNS <= cpuNS_) return;
  energyNJ_ += static_cast<double>(cpuNS - cpuNS_) * view.wattsPerBusyCore;
  cpuNS_ = cpuNS;
}

// Without a clock. Stat is the dearer file and the only one that sums over threads.
void WatchedProcess::chooseFile(ProcView& view) {
  if (hasRunClock_) return;
  const bool readsStat = hasThreads_ || !hasSchedStat_ || !view.runTimeIsCounted;
  if (readsStat == readsStat_) return;
  readsStat_ = readsStat;
  counter_.close();
  if (readsStat) {
    countThreadSlices(view);
    return;
  }
  threads_.clear();
  if (const auto sched = readSchedStat(view.files, pid_)) takeSchedStat(*sched);
}

// A thread that ends between two looks takes its last time slices with it; the sum never goes back.
void WatchedProcess::countThreadSlices(ProcView& view) {
  std::vector<std::int32_t> tids;
  view.files.numbersIn(ProcPath(pid_, "task").text(), tids);
  std::sort(tids.begin(), tids.end());
  std::vector<ThreadSlices> now;
  now.reserve(tids.size());
  auto known = threads_.begin();
  for (const std::int32_t tid : tids) {
    const auto sched = readSchedStat(view.files, pid_, tid);
    if (!sched) continue;
    while (known != threads_.end() && known->tid < tid) ++known;
    const bool isKnown = known != threads_.end() && known->tid == tid;
    // The leading thread was counted alone while it was the only one.
    const std::uint64_t before = isKnown ? known->slices : tid == pid_ ? slices_ : 0;
    if (sched->timeSlices > before) wakeups_ += sched->timeSlices - before;
    if (tid == pid_) slices_ = sched->timeSlices;
    now.push_back({tid, sched->timeSlices});
  }
  threads_ = std::move(now);
}

void WatchedProcess::readUser(ProcView& view) {
  const auto text = view.files.read(ProcPath(pid_, "status").text());
  if (const auto uid = text ? parseEffectiveUser(*text) : std::nullopt) uid_ = *uid;
}

}  // namespace embrix
