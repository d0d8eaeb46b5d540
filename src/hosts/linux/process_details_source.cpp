#include "hosts/linux/process_details_source.h"

#include <algorithm>
#include <iterator>
#include <string_view>

#include "hosts/linux/number_scan.h"
#include "hosts/linux/proc_records.h"

namespace embrix {

namespace {

// A process that hands a socket to another changes no inode; a walk is not trusted for longer.
constexpr std::uint64_t kWalkHolds = 10;

// "socket:[12345]"
std::optional<std::uint64_t> socketInode(std::string_view link) {
  constexpr std::string_view kPrefix = "socket:[";
  if (!link.starts_with(kPrefix)) return std::nullopt;
  std::uint64_t inode = 0;
  if (!NumberScan(link.substr(kPrefix.size())).next(inode)) return std::nullopt;
  return inode;
}

}  // namespace

LinuxProcessDetailsSource::LinuxProcessDetailsSource(const std::string& procRoot,
                                                     Diagnosis diagnosis)
    : files_(procRoot, 0), diagnosis_(std::move(diagnosis)) {}

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
  return files_.link(ProcPath(pid, "cwd").text());
}

std::vector<ListeningPort> LinuxProcessDetailsSource::listening(std::int32_t pid) {
  if (scan_ == 0) beginScan();
  std::vector<ListeningPort> ports;
  const auto started = startTicks(pid);
  if (!started) return ports;
  Walk& walk = walks_[pid];
  walk.asked = scan_;
  const bool isStale = walk.scan == 0 || walk.startTicks != *started ||
                       walk.scan < newestListener_ || walk.scan + kWalkHolds <= scan_;
  if (isStale) {
    walk.startTicks = *started;
    walkDescriptors(pid, walk);
  }
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

void LinuxProcessDetailsSource::walkDescriptors(std::int32_t pid, Walk& walk) {
  walk.scan = scan_;
  walk.inodes.clear();
  if (listeners_.empty()) return;
  files_.numbersIn(ProcPath(pid, "fd").text(), descriptors_);
  for (const std::int32_t descriptor : descriptors_) {
    const std::string path = std::string("fd/") + std::to_string(descriptor);
    const auto link = files_.link(ProcPath(pid, path).text());
    const auto inode = link ? socketInode(*link) : std::nullopt;
    if (inode && listeners_.contains(*inode)) walk.inodes.push_back(*inode);
  }
}

std::optional<std::uint64_t> LinuxProcessDetailsSource::startTicks(std::int32_t pid) {
  const auto text = files_.read(ProcPath(pid, "stat").text());
  const auto stat = text ? parseProcStat(*text) : std::nullopt;
  return stat ? std::optional(stat->startTicks) : std::nullopt;
}

}  // namespace embrix
