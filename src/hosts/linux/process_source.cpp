#include "hosts/linux/process_source.h"

#include <fcntl.h>
#include <time.h>
#include <unistd.h>

#include <algorithm>
#include <utility>

#include "hosts/linux/boot_time.h"
#include "hosts/linux/number_scan.h"
#include "hosts/linux/proc_records.h"
#include "hosts/linux/run_clock.h"
#include "hosts/linux/session_launchers.h"

namespace embrix {

namespace {

// The list is taken afresh at least this often, however still the machine seems.
constexpr unsigned kMostTicksBetweenLists = 32;

constexpr std::string_view kDeletedMark = " (deleted)";

std::uint64_t configured(int name) {
  return static_cast<std::uint64_t>(std::max(1L, ::sysconf(name)));
}

}  // namespace

LinuxProcessSource::LinuxProcessSource(const std::string& procRoot)
    : LinuxProcessSource(procRoot, Options()) {}

LinuxProcessSource::LinuxProcessSource(const std::string& procRoot, const Options& options)
    : files_(procRoot, options.keptFiles),
      view_{.files = files_,
            .tickNS = 1'000'000'000 / configured(_SC_CLK_TCK),
            .pageSize = configured(_SC_PAGESIZE),
            .hasRunClocks = tellsOwnPids(procRoot)},
      packageEnergyFile_(options.packageEnergyFile),
      bootTime_(bootTime(procRoot)) {}

void LinuxProcessSource::read(std::vector<RawProcess>& table) {
  ++view_.tick;
  updateEstimate();
  view_.wattsPerBusyCore = estimate_.wattsPerBusyCore();
  if (listChanged()) takeList();
  refreshRows();
  if (parentsMoved_) settleParents();
  view_.isFirstTable = false;

  table.resize(rows_.size());
  for (std::size_t i = 0; i < rows_.size(); ++i) {
    const WatchedProcess& from = rows_[i].process;
    RawProcess& to = table[i];
    to.pid = from.pid();
    to.ppid = rows_[i].ppid;
    to.uid = from.uid();
    to.startTime = startTimeOf(bootTime_, from.startTicks());
    to.commandName = from.commandName();
    to.usage = RawUsage{.userTime = from.cpuNS(),
                        .packageIdleWakeups = from.wakeups(),
                        .footprint = from.footprint(),
                        .energyNJ = from.energyNJ()};
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
                   microjoules, static_cast<double>(*busyTicks * view_.tickNS) / 1e9);
}

// The kernel's last given pid and its count of threads: while both stand still no process came, and
// one that went is found when it is read. Listing the directory costs as much as half the rest of a
// tick.
bool LinuxProcessSource::listChanged() {
  if (++ticksSinceList_ >= kMostTicksBetweenLists || rows_.empty()) return true;
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
      std::equal(pids_.begin(), pids_.end(), rows_.begin(), rows_.end(),
                 [](std::int32_t pid, const Row& row) { return pid == row.process.pid(); });
  if (isSame) return;

  parentsMoved_ = true;
  merged_.clear();
  merged_.reserve(pids_.size());
  auto known = rows_.begin();
  for (const std::int32_t pid : pids_) {
    while (known != rows_.end() && known->process.pid() < pid) ++known;
    if (known != rows_.end() && known->process.pid() == pid) {
      merged_.push_back(std::move(*known));
    } else {
      merged_.push_back({WatchedProcess(pid)});
    }
  }
  rows_.swap(merged_);
  merged_.clear();
}

void LinuxProcessSource::refreshRows() {
  const std::size_t before = rows_.size();
  std::erase_if(rows_, [this](Row& row) {
    if (!row.process.refresh(view_)) return true;
    if (row.process.takeRelationChange()) parentsMoved_ = true;
    return false;
  });
  if (rows_.size() != before) parentsMoved_ = true;
}

// A child does not run when its parent dies, so its own counters do not tell. Whoever names a
// parent that is not in the table is read again.
void LinuxProcessSource::settleParents() {
  parentsMoved_ = false;
  byPID_.clear();
  for (const Row& row : rows_) byPID_[row.process.pid()] = &row.process;
  for (Row& row : rows_) {
    auto parent = byPID_.find(row.process.ppid());
    if (parent == byPID_.end() && row.process.ppid() > 0) {
      row.process.rereadParent(view_);
      parent = byPID_.find(row.process.ppid());
    }
    const bool isLaunched =
        parent != byPID_.end() && isSessionLauncher(parent->second->commandName());
    row.ppid = isLaunched ? 1 : row.process.ppid();
  }
}

std::optional<std::string> LinuxProcessSource::executablePath(std::int32_t pid) {
  auto path = files_.link(ProcPath(pid, "exe").text());
  if (!path || path->empty()) return std::nullopt;
  // The kernel marks a program that was replaced or removed while it runs.
  if (path->ends_with(kDeletedMark)) path->resize(path->size() - kDeletedMark.size());
  return path;
}

}  // namespace embrix
