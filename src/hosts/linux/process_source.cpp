#include "hosts/linux/process_source.h"

#include <fcntl.h>
#include <time.h>
#include <unistd.h>

#include <algorithm>
#include <utility>

#include "hosts/linux/number_scan.h"
#include "hosts/linux/session_launchers.h"

namespace embrix {

namespace {

// The list is taken afresh at least this often, however still the machine seems.
constexpr unsigned kMostTicksBetweenLists = 32;
// The kernel can take pages from a process that sleeps. One process in so many is looked at in full
// at each tick, so that no figure grows older than this many ticks.
constexpr unsigned kFullLookEvery = 64;
// Programs give up root's rights as they start. A new process has its user read again at so many of
// its first full looks; later, and one that was there before, only when its name changes.
constexpr int kWatchedLooks = 8;

constexpr std::string_view kDeletedMark = " (deleted)";

}  // namespace

LinuxProcessSource::LinuxProcessSource(const std::string& procRoot)
    : LinuxProcessSource(procRoot, Options()) {}

LinuxProcessSource::LinuxProcessSource(const std::string& procRoot, const Options& options)
    : files_(procRoot, options.keptFiles),
      packageEnergyFile_(options.packageEnergyFile),
      tickNS_(1'000'000'000 / static_cast<std::uint64_t>(std::max(1L, ::sysconf(_SC_CLK_TCK)))),
      pageSize_(static_cast<std::uint64_t>(std::max(1L, ::sysconf(_SC_PAGESIZE)))) {
  // The line of interrupts before the boot time can be longer than a tick's files ever are.
  if (const auto text = files_.readWhole("stat")) bootTime_ = parseBootTime(*text).value_or(0);
}

void LinuxProcessSource::read(std::vector<RawProcess>& table) {
  ++tick_;
  updateEstimate();
  if (listChanged()) takeList();

  std::erase_if(slots_, [this](Slot& slot) {
    if (refresh(slot)) return false;
    parentsMoved_ = true;
    return true;
  });
  if (parentsMoved_) reparent();
  isFirstTable_ = false;

  table.resize(slots_.size());
  for (std::size_t i = 0; i < slots_.size(); ++i) {
    const Slot& slot = slots_[i];
    RawProcess& process = table[i];
    process.pid = slot.pid;
    process.ppid = slot.reportedPPID;
    process.uid = slot.uid;
    process.startTime = bootTime_ + slot.startTicks * tickNS_ / 1'000'000'000;
    process.commandName = slot.commandName;
    process.usage = RawUsage{.userTime = slot.cpuNS,
                             .packageIdleWakeups = slot.wakeups,
                             .footprint = slot.footprint,
                             .energyNJ = static_cast<std::uint64_t>(slot.energyNJ)};
  }
}

// The kernel's last given pid and its count of threads: while both stand still no process came, and
// one that went is found when it is read. Listing the directory costs as much as half the rest of a
// tick.
bool LinuxProcessSource::listChanged() {
  if (++ticksSinceList_ >= kMostTicksBetweenLists || slots_.empty()) return true;
  const auto load = files_.read(loadAverage_, "loadavg");
  if (!load) return true;
  // "0.17 0.13 0.05 2/92 10459": behind the slash, so without the number of running threads.
  const std::size_t slash = load->find('/');
  if (slash == std::string_view::npos) return true;
  const std::string_view moving = load->substr(slash);
  if (moving == lastLoad_) return false;
  lastLoad_ = moving;
  return true;
}

void LinuxProcessSource::takeList() {
  ticksSinceList_ = 0;
  files_.numbersIn(".", pids_);
  if (!std::is_sorted(pids_.begin(), pids_.end())) std::sort(pids_.begin(), pids_.end());
  const bool isSame =
      std::equal(pids_.begin(), pids_.end(), slots_.begin(), slots_.end(),
                 [](std::int32_t pid, const Slot& slot) { return pid == slot.pid; });
  if (isSame) return;

  parentsMoved_ = true;
  merged_.clear();
  merged_.reserve(pids_.size());
  auto known = slots_.begin();
  for (const std::int32_t pid : pids_) {
    while (known != slots_.end() && known->pid < pid) ++known;
    if (known != slots_.end() && known->pid == pid) {
      merged_.push_back(std::move(*known));
    } else {
      merged_.emplace_back().pid = pid;
    }
  }
  slots_.swap(merged_);
}

bool LinuxProcessSource::refresh(Slot& slot) {
  if (slot.isKnown) {
    if (slot.readsStat ? refreshByStat(slot) : refreshBySchedStat(slot)) return true;
    // Gone. Another process may have the pid by now.
    const std::int32_t pid = slot.pid;
    slot = Slot();
    slot.pid = pid;
    parentsMoved_ = true;
  }
  return meet(slot);
}

bool LinuxProcessSource::refreshBySchedStat(Slot& slot) {
  const auto text = files_.read(slot.counter, ProcPath(slot.pid, "schedstat").text());
  const auto sched = text ? parseSchedStat(*text) : std::nullopt;
  if (!sched) return false;
  const bool isDue = (static_cast<unsigned>(slot.pid) + tick_) % kFullLookEvery == 0;
  if (sched->runNS == slot.runNS && runTimeIsCounted_ && !isDue) return true;

  const std::uint64_t ranNS = sched->runNS > slot.runNS ? sched->runNS - slot.runNS : 0;
  takeSchedStat(slot, *sched);
  if (!takeStat(slot, files_.read(ProcPath(slot.pid, "stat").text()))) return false;
  addTime(slot, ranNS);
  chooseFile(slot);
  return true;
}

bool LinuxProcessSource::refreshByStat(Slot& slot) {
  const std::uint64_t before = slot.ticksNS;
  if (!takeStat(slot, files_.read(slot.counter, ProcPath(slot.pid, "stat").text()))) return false;
  if (slot.ticksNS != before) {
    addTime(slot, 0);
    countThreadSlices(slot);
  }
  chooseFile(slot);
  return true;
}

// The first look at a process.
bool LinuxProcessSource::meet(Slot& slot) {
  if (!takeStat(slot, files_.read(ProcPath(slot.pid, "stat").text()))) return false;
  slot.isKnown = true;
  readUser(slot);
  if (!isFirstTable_) slot.watchedLooks = kWatchedLooks;

  slot.cpuNS = slot.ticksNS;
  const auto text = files_.read(ProcPath(slot.pid, "schedstat").text());
  const auto sched = text ? parseSchedStat(*text) : std::nullopt;
  if (sched) {
    takeSchedStat(slot, *sched);
    slot.cpuNS = std::max(slot.cpuNS, sched->runNS);
  }
  slot.hasSchedStat = sched.has_value();
  // Stat rounds two figures down to clock ticks: above that, a leading thread that never ran is a
  // kernel that does not count.
  if (sched && sched->runNS == 0 && !slot.hasThreads && slot.ticksNS > 2 * tickNS_) {
    runTimeIsCounted_ = false;
  }
  slot.energyNJ = static_cast<double>(slot.cpuNS) * estimate_.wattsPerBusyCore();
  chooseFile(slot);
  return true;
}

bool LinuxProcessSource::takeStat(Slot& slot, std::optional<std::string_view> text) {
  const auto stat = text ? parseProcStat(*text) : std::nullopt;
  if (!stat || stat->pid != slot.pid) return false;
  if (slot.isKnown && stat->startTicks != slot.startTicks) return false;

  slot.startTicks = stat->startTicks;
  slot.ticksNS = (stat->userTicks + stat->systemTicks) * tickNS_;
  slot.footprint = stat->residentPages * pageSize_;
  slot.hasThreads = stat->threads > 1;
  const bool isRenamed = slot.commandName != stat->commandName;
  if (isRenamed) slot.commandName = stat->commandName;
  if (isRenamed || slot.ppid != stat->ppid) parentsMoved_ = true;
  slot.ppid = stat->ppid;
  if (slot.isKnown && (isRenamed || slot.watchedLooks > 0)) {
    slot.watchedLooks = std::max(0, slot.watchedLooks - 1);
    readUser(slot);
  }
  return true;
}

void LinuxProcessSource::takeSchedStat(Slot& slot, const SchedStat& sched) {
  slot.runNS = sched.runNS;
  if (sched.timeSlices > slot.slices) slot.wakeups += sched.timeSlices - slot.slices;
  slot.slices = sched.timeSlices;
}

// Two figures tell of the same time: what the leading thread ran, exact and blind to the others;
// and stat's sum over all threads, those that ended among them, cut off to clock ticks. Neither
// ever says too much, so the larger is the better.
void LinuxProcessSource::addTime(Slot& slot, std::uint64_t ranNS) {
  const std::uint64_t cpuNS = std::max(slot.cpuNS + ranNS, slot.ticksNS);
  slot.energyNJ += static_cast<double>(cpuNS - slot.cpuNS) * estimate_.wattsPerBusyCore();
  slot.cpuNS = cpuNS;
}

// Stat is the dearer file and the only one that sums over threads.
void LinuxProcessSource::chooseFile(Slot& slot) {
  const bool readsStat = slot.hasThreads || !slot.hasSchedStat || !runTimeIsCounted_;
  if (readsStat == slot.readsStat) return;
  slot.readsStat = readsStat;
  slot.counter.close();
  if (readsStat) {
    countThreadSlices(slot);
    return;
  }
  slot.threads.clear();
  const auto text = files_.read(ProcPath(slot.pid, "schedstat").text());
  if (const auto sched = text ? parseSchedStat(*text) : std::nullopt) takeSchedStat(slot, *sched);
}

// A thread that ends between two looks takes its last time slices with it; the sum never goes back.
void LinuxProcessSource::countThreadSlices(Slot& slot) {
  files_.numbersIn(ProcPath(slot.pid, "task").text(), tids_);
  auto known = slot.threads.begin();
  std::vector<ThreadSlices> now;
  now.reserve(tids_.size());
  std::sort(tids_.begin(), tids_.end());
  for (const std::int32_t tid : tids_) {
    const ProcPath thread(tid, "schedstat");
    const std::string path = "task/" + std::string(thread.text());
    const auto text = files_.read(ProcPath(slot.pid, path).text());
    const auto sched = text ? parseSchedStat(*text) : std::nullopt;
    if (!sched) continue;
    while (known != slot.threads.end() && known->tid < tid) ++known;
    const bool isKnown = known != slot.threads.end() && known->tid == tid;
    // The leading thread was counted alone while it was the only one.
    const std::uint64_t before = isKnown ? known->slices : tid == slot.pid ? slot.slices : 0;
    if (sched->timeSlices > before) slot.wakeups += sched->timeSlices - before;
    if (tid == slot.pid) slot.slices = sched->timeSlices;
    now.push_back({tid, sched->timeSlices});
  }
  slot.threads = std::move(now);
}

void LinuxProcessSource::readUser(Slot& slot) {
  const auto text = files_.read(ProcPath(slot.pid, "status").text());
  if (!text) return;
  if (const auto uid = parseEffectiveUser(*text)) slot.uid = *uid;
}

// A child does not run when its parent dies, so its own counters do not tell. Whoever names a
// parent that is not in the table is read again.
void LinuxProcessSource::reparent() {
  parentsMoved_ = false;
  byPID_.clear();
  for (const Slot& slot : slots_) byPID_[slot.pid] = &slot;
  for (Slot& slot : slots_) {
    auto parent = byPID_.find(slot.ppid);
    if (parent == byPID_.end() && slot.ppid > 0 &&
        takeStat(slot, files_.read(ProcPath(slot.pid, "stat").text()))) {
      parent = byPID_.find(slot.ppid);
    }
    const bool isLaunched =
        parent != byPID_.end() && isSessionLauncher(parent->second->commandName);
    slot.reportedPPID = isLaunched ? 1 : slot.ppid;
  }
}

void LinuxProcessSource::updateEstimate() {
  const int descriptor = ::open(packageEnergyFile_.c_str(), O_RDONLY | O_CLOEXEC);
  if (descriptor < 0) return;
  char digits[32];
  const ssize_t size = ::read(descriptor, digits, sizeof digits);
  ::close(descriptor);
  std::uint64_t microjoules = 0;
  if (size <= 0 || !NumberScan({digits, static_cast<std::size_t>(size)}).next(microjoules)) {
    return;
  }
  const auto text = files_.read("stat");
  const auto busyTicks = text ? parseBusyTicks(*text) : std::nullopt;
  timespec now{};
  if (!busyTicks || ::clock_gettime(CLOCK_BOOTTIME, &now) != 0) return;
  estimate_.update(static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) / 1e9,
                   microjoules, static_cast<double>(*busyTicks * tickNS_) / 1e9);
}

std::optional<std::string> LinuxProcessSource::executablePath(std::int32_t pid) {
  auto path = files_.link(ProcPath(pid, "exe").text());
  if (!path || path->empty()) return std::nullopt;
  // The kernel marks a program that was replaced or removed while it runs.
  if (path->ends_with(kDeletedMark)) path->resize(path->size() - kDeletedMark.size());
  return path;
}

}  // namespace embrix
