#include "sampling/process_reader.h"

#include <limits>
#include <string>
#include <utility>

#include "base/text.h"

namespace embrix {

ProcessReader::ProcessReader(ProcessSource& source)
    : source_(source), ticksToNS_(source.ticksToNS()) {}

const std::vector<ProcessSample>& ProcessReader::read() {
  ++pass_;
  seen_ = 0;
  source_.read(table_);
  samples_.resize(table_.size());
  for (std::size_t i = 0; i < table_.size(); ++i) {
    const RawProcess& process = table_[i];
    const CachedPath& known = cached(process);
    const RawUsage usage = process.usage.value_or(RawUsage());
    // A sample of the same process in the same place is assigned its own texts, which costs
    // nothing.
    ProcessSample& sample = samples_[i];
    sample.pid = process.pid;
    sample.ppid = process.ppid;
    sample.uid = process.uid;
    sample.name = known.name;
    sample.path = known.path;
    sample.startTime = process.startTime;
    sample.energyNJ = usage.energyNJ;
    sample.cpuNS = nanoseconds(usage);
    sample.wakeups = usage.packageIdleWakeups + usage.interruptWakeups;
    sample.footprint = usage.footprint;
    sample.id = known.id;
  }
  prune();
  return samples_;
}

std::uint64_t ProcessReader::nanoseconds(const RawUsage& usage) const {
  // 2^64, the first double that fits no more.
  constexpr double kLimit = 18446744073709551616.0;
  const double ticks = static_cast<double>(usage.userTime) + static_cast<double>(usage.systemTime);
  const double time = ticksToNS_ * ticks;
  return time < kLimit ? static_cast<std::uint64_t>(time)
                       : std::numeric_limits<std::uint64_t>::max();
}

const ProcessReader::CachedPath& ProcessReader::cached(const RawProcess& process) {
  const Identity identity{process.pid, process.startTime};
  auto entry = pathCache_.find(identity);
  if (entry == pathCache_.end()) entry = pathCache_.emplace(identity, lookUp(process)).first;
  if (entry->second.pass != pass_) ++seen_;
  entry.value().pass = pass_;
  return entry->second;
}

ProcessReader::CachedPath ProcessReader::lookUp(const RawProcess& process) {
  CachedPath found;
  found.id = processID(process.pid, process.startTime);
  found.name = SharedText(Text::repaired(process.commandName));
  const auto path = source_.executablePath(process.pid);
  if (path && !path->empty()) {
    const std::string repaired = Text::repaired(*path);
    found.path = SharedText(repaired);
    const std::string_view piece = Text::lastPiece(repaired, '/');
    if (!piece.empty()) found.name = SharedText(piece);
  }
  return found;
}

// Rarely due: the dead are let stand until they outnumber the living.
void ProcessReader::prune() {
  if (pathCache_.size() <= 2 * seen_) return;
  for (auto entry = pathCache_.begin(); entry != pathCache_.end();) {
    entry = entry->second.pass == pass_ ? std::next(entry) : pathCache_.erase(entry);
  }
}

}  // namespace embrix
