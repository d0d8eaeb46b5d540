#include "hosts/linux/process_control.h"

#include <signal.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <utility>

#include "base/hash_map.h"
#include "hosts/linux/boot_time.h"
#include "hosts/linux/clock.h"
#include "hosts/linux/cpu_cores.h"
#include "hosts/linux/proc_records.h"

namespace embrix {

namespace {

// No process has so many ancestors; a circle of parents, read while it changed, has.
constexpr int kMostAncestors = 4096;

std::uint64_t ticksNow() {
  const auto perSecond = static_cast<double>(std::max(1L, ::sysconf(_SC_CLK_TCK)));
  // A process that starts in this very tick counts as one that starts afterwards.
  return static_cast<std::uint64_t>(LinuxClock().uptime() * perSecond);
}

struct TableRow {
  LivingProcess process;
  std::int32_t ppid = 0;
};

class ProcessTable {
 public:
  explicit ProcessTable(ProcFiles& files) {
    std::vector<std::int32_t> pids;
    files.numbersIn(".", pids);
    rows_.reserve(pids.size());
    for (const std::int32_t pid : pids) {
      const auto text = files.read(ProcPath(pid, "stat").text());
      const auto stat = text ? parseProcStat(*text) : std::nullopt;
      if (stat && stat->pid == pid) rows_.push_back({{pid, stat->startTicks}, stat->ppid});
    }
    for (const TableRow& row : rows_) byPID_[row.process.pid] = &row;
  }

  const std::vector<TableRow>& rows() const { return rows_; }

  bool has(const LivingProcess& process) const {
    const TableRow* const row = find(process.pid);
    return row != nullptr && row->process.startTicks == process.startTicks;
  }

  // The nearest of the row's ancestors that is among the processes; null when none is.
  const CalmedProcess* nearestAncestor(const TableRow& row,
                                       const std::vector<CalmedProcess>& processes) const {
    const TableRow* ancestor = find(row.ppid);
    for (int i = 0; i < kMostAncestors && ancestor != nullptr; ++i) {
      for (const CalmedProcess& each : processes) {
        if (each.process().pid == ancestor->process.pid &&
            each.process().startTicks == ancestor->process.startTicks) {
          return &each;
        }
      }
      ancestor = find(ancestor->ppid);
    }
    return nullptr;
  }

 private:
  const TableRow* find(std::int32_t pid) const {
    const auto found = byPID_.find(pid);
    return found == byPID_.end() ? nullptr : found->second;
  }

  std::vector<TableRow> rows_;
  HashMap<std::int32_t, const TableRow*> byPID_;
};

}  // namespace

LinuxProcessControl::LinuxProcessControl(Scheduler& scheduler)
    : LinuxProcessControl(scheduler, Options()) {}

LinuxProcessControl::LinuxProcessControl(Scheduler& scheduler, const Options& options)
    : scheduler_(scheduler),
      files_(options.procRoot, 0),
      bootTime_(bootTime(options.procRoot)),
      root_(options.root) {}

LinuxProcessControl::~LinuxProcessControl() {
  for (const CalmedProcess& calmed : calmed_) {
    Handle handle;
    if (open(calmed.identity(), handle) == 0) calmed.restore(files_);
  }
  std::move(calmed_.begin(), calmed_.end(), std::back_inserter(released_));
  calmed_.clear();
  if (!released_.empty()) releaseHeirs();
}

int LinuxProcessControl::open(const ProcessIdentity& process, Handle& handle) {
  handle.descriptor = Descriptor(static_cast<int>(::syscall(SYS_pidfd_open, process.pid, 0)));
  // No process has a number of 0 or less.
  if (!handle.descriptor.isOpen()) return errno == EINVAL ? ESRCH : errno;
  const auto startTicks = startTicksOf(files_, process.pid);
  const bool isIt = startTicks && static_cast<std::uint64_t>(process.startTime) ==
                                      startTimeOf(bootTime_, *startTicks);
  if (!isIt) return ESRCH;
  handle.process = {process.pid, *startTicks};
  return 0;
}

int LinuxProcessControl::calm(const ProcessIdentity& process) {
  Handle handle;
  if (const int error = open(process, handle)) return error;
  const bool isCalm = std::any_of(calmed_.begin(), calmed_.end(), [&](const CalmedProcess& each) {
    return each.identity() == process;
  });
  if (isCalm) return 0;

  forgetTheGone();
  // What it inherited from one that has its speed back already is not its own either.
  if (!released_.empty()) releaseHeirs();
  const CpuCores cores = coresOf(root_);
  CalmedProcess calmed(process, handle.process, ticksNow(), CpuSet::of(cores.online));
  if (const int error = calmed.calm(files_, CpuSet::of(cores.calm), calmed_)) return error;
  calmed_.push_back(std::move(calmed));
  return 0;
}

int LinuxProcessControl::restore(const ProcessIdentity& process) {
  Handle handle;
  const int error = open(process, handle);
  const auto calmed = std::find_if(calmed_.begin(), calmed_.end(), [&](const CalmedProcess& each) {
    return each.identity() == process;
  });
  if (calmed == calmed_.end()) return error;
  if (error == 0) calmed->restore(files_);
  released_.push_back(std::move(*calmed));
  calmed_.erase(calmed);
  releaseHeirsSoon();
  return error;
}

int LinuxProcessControl::terminate(const ProcessIdentity& process) {
  Handle handle;
  if (const int error = open(process, handle)) return error;
  const long sent =
      ::syscall(SYS_pidfd_send_signal, handle.descriptor.number(), SIGTERM, nullptr, 0);
  return sent == 0 ? 0 : errno;
}

// Nobody says when a calmed process has ended; what it started can go on.
void LinuxProcessControl::forgetTheGone() {
  const auto gone =
      std::stable_partition(calmed_.begin(), calmed_.end(), [this](const CalmedProcess& each) {
        return startTicksOf(files_, each.process().pid) == each.process().startTicks;
      });
  if (gone == calmed_.end()) return;
  std::move(gone, calmed_.end(), std::back_inserter(released_));
  calmed_.erase(gone, calmed_.end());
  releaseHeirsSoon();
}

// One look at all processes serves for everything that is restored in one go.
void LinuxProcessControl::releaseHeirsSoon() {
  if (!release_.isPending()) release_ = scheduler_.after(0, [this] { releaseHeirs(); });
}

void LinuxProcessControl::releaseHeirs() {
  const ProcessTable table(files_);
  for (const TableRow& row : table.rows()) {
    const bool isCalm = std::any_of(calmed_.begin(), calmed_.end(), [&](const CalmedProcess& each) {
      return each.process().pid == row.process.pid &&
             each.process().startTicks == row.process.startTicks;
    });
    // What a process that is calm has started stays calm with it.
    if (isCalm || table.nearestAncestor(row, calmed_) != nullptr) continue;
    const CalmedProcess* const ancestor = table.nearestAncestor(row, released_);
    for (const CalmedProcess& released : released_) {
      released.restoreHeir(files_, row.process, &released == ancestor);
    }
  }
  released_.clear();
}

}  // namespace embrix
