#include "hosts/linux/process_details_source.h"

#include <algorithm>
#include <iterator>
#include <string_view>

#include "hosts/linux/number_scan.h"
#include "hosts/linux/proc_records.h"
#include "hosts/linux/run_clock.h"

namespace embrix {

namespace {

// A process that hands a socket to another changes no inode; of one that has run, a walk is not
// trusted for longer.
constexpr std::uint64_t kWalkHolds = 10;

// "socket:[12345]"
std::optional<std::uint64_t> socketInode(std::string_view link) {
  constexpr std::string_view kPrefix = "socket:[";
  if (!link.starts_with(kPrefix)) return std::nullopt;
  std::uint64_t inode = 0;
  if (!NumberScan(link.substr(kPrefix.size())).next(inode)) return std::nullopt;
  return inode;
}

// Nobody can tell of the processes of a captured tree.
LinuxProcessDetailsSource::RunTime runTimeBelow(const std::string& procRoot) {
  if (tellsOwnPids(procRoot)) return runTimeNS;
  return [](std::int32_t) { return std::nullopt; };
}

}  // namespace

LinuxProcessDetailsSource::LinuxProcessDetailsSource(const std::string& procRoot)
    : LinuxProcessDetailsSource(procRoot, diagnoseListeners, runTimeBelow(procRoot)) {}

LinuxProcessDetailsSource::LinuxProcessDetailsSource(const std::string& procRoot,
                                                     Diagnosis diagnosis, RunTime runTime)
    : files_(procRoot, 0), diagnosis_(std::move(diagnosis)), runTime_(std::move(runTime)) {}

void LinuxProcessDetailsSource::beginScan() {
  for (auto walk = walks_.begin(); walk != walks_.end();) {
    walk = walk->second.asked == scan_ ? std::next(walk) : walks_.erase(walk);
  }
  ++scan_;
  HashMap<std::uint64_t, ListeningSocket> now;
  for (const ListeningSocket& listener : readListeners()) {
    if (!listeners_.contains(listener.inode)) newestListener_ = scan_;
    now[listener.inode] = listener;
  }
  listeners_ = std::move(now);
}

std::vector<std::string> LinuxProcessDetailsSource::arguments(std::int32_t pid) {
  const auto block = files_.readWhole(ProcPath(pid, "cmdline").text());
  std::vector<std::string> arguments;
  if (!block) return arguments;
  // A program that writes its own title can leave one text and many NULs, or none at its end.
  std::string_view rest = *block;
  while (!rest.empty() && rest.back() == '\0') rest.remove_suffix(1);
  if (rest.empty()) return arguments;
  while (true) {
    const std::size_t end = rest.find('\0');
    arguments.emplace_back(rest.substr(0, end));
    if (end == std::string_view::npos) return arguments;
    rest.remove_prefix(end + 1);
  }
}

std::optional<std::string> LinuxProcessDetailsSource::directory(std::int32_t pid) {
  auto folder = files_.link(ProcPath(pid, "cwd").text());
  // What the kernel appends once the folder was removed, as those of finished branches are.
  constexpr std::string_view kDeletedMark = " (deleted)";
  if (folder && folder->ends_with(kDeletedMark)) {
    folder->resize(folder->size() - kDeletedMark.size());
  }
  return folder;
}

std::vector<ListeningPort> LinuxProcessDetailsSource::listening(std::int32_t pid) {
  if (scan_ == 0) beginScan();
  std::vector<ListeningPort> ports;
  Walk& walk = walks_[pid];
  walk.asked = scan_;
  if (!walkIfStale(pid, walk)) return ports;
  for (const std::uint64_t inode : walk.inodes) {
    const auto listener = listeners_.find(inode);
    if (listener == listeners_.end()) continue;
    ports.push_back({listener->second.port, listener->second.exposed});
  }
  std::sort(ports.begin(), ports.end(),
            [](const ListeningPort& a, const ListeningPort& b) { return a.port < b.port; });
  return ports;
}

std::vector<ListeningSocket> LinuxProcessDetailsSource::readListeners() {
  if (auto listeners = diagnosis_()) return std::move(*listeners);
  std::vector<ListeningSocket> listeners;
  for (const char* table : {"net/tcp", "net/tcp6"}) {
    const auto text = files_.readWhole(table);
    if (!text) continue;
    const auto part = parseSocketTable(*text);
    listeners.insert(listeners.end(), part.begin(), part.end());
  }
  return listeners;
}

// False when there is no such process.
bool LinuxProcessDetailsSource::walkIfStale(std::int32_t pid, Walk& walk) {
  // Read first: what runs during the walk counts as having run since.
  const auto ranNS = runTime_(pid);
  // One that has not run for a nanosecond is also the same process as before.
  if (walk.scan != 0 && ranNS && ranNS == walk.ranNS) return true;
  const auto started = startTicks(pid);
  if (!started) return false;
  const bool holds = walk.scan != 0 && walk.startTicks == *started &&
                     walk.scan >= newestListener_ && scan_ < walk.scan + kWalkHolds;
  if (holds || listeners_.empty()) return true;

  walk = {.scan = scan_, .asked = scan_, .startTicks = *started, .ranNS = ranNS};
  files_.forEachLinkIn(ProcPath(pid, "fd").text(), [&](std::string_view link) {
    if (const auto inode = socketInode(link)) walk.inodes.push_back(*inode);
  });
  return true;
}

std::optional<std::uint64_t> LinuxProcessDetailsSource::startTicks(std::int32_t pid) {
  const auto text = files_.read(ProcPath(pid, "stat").text());
  const auto stat = text ? parseProcStat(*text) : std::nullopt;
  return stat ? std::optional(stat->startTicks) : std::nullopt;
}

}  // namespace embrix
