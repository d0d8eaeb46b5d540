#include "hosts/linux/calmed_process.h"

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <string>

#include "hosts/linux/proc_records.h"

namespace embrix {

namespace {

// A process that starts threads faster than they can be followed is followed so often.
constexpr int kMostRounds = 8;

std::optional<std::uint64_t> startTicksAt(ProcFiles& files, const char* path) {
  const auto text = files.read(path);
  const auto stat = text ? parseProcStat(*text) : std::nullopt;
  return stat ? std::optional(stat->startTicks) : std::nullopt;
}

std::optional<std::uint64_t> startTicksOf(ProcFiles& files, std::int32_t pid, std::int32_t tid) {
  const std::string path = std::string("task/") + ProcPath(tid, "stat").text();
  return startTicksAt(files, ProcPath(pid, path).text());
}

std::vector<std::int32_t> threadsOf(ProcFiles& files, std::int32_t pid) {
  std::vector<std::int32_t> threads;
  files.numbersIn(ProcPath(pid, "task").text(), threads);
  return threads;
}

CpuSet lastQuarter(const CpuSet& cpus) {
  std::vector<int> numbers = cpus.numbers();
  const auto kept = std::max<std::size_t>(numbers.size() / 4, 1);
  numbers.erase(numbers.begin(),
                numbers.end() - static_cast<std::ptrdiff_t>(std::min(kept, numbers.size())));
  return CpuSet::of(numbers);
}

// The cores that a thread is put on that may run on `allowed`. One that was bound to other cores by
// its program moves; one that a container keeps from the cores meant gets the last of its own.
// Absent, with the errno, when it cannot be put anywhere.
std::optional<CpuSet> confine(std::int32_t tid, const CpuSet& allowed, const CpuSet& cores,
                              int& error) {
  CpuSet chosen = allowed & cores;
  if (chosen.empty()) chosen = cores;
  error = chosen.applyTo(tid);
  if (error == EINVAL) {
    chosen = lastQuarter(allowed);
    error = chosen.applyTo(tid);
  }
  return error == 0 ? std::optional(chosen) : std::nullopt;
}

bool isIdle(const std::optional<IoPriority>& priority) {
  return priority == kIdleIoPriority;
}

}  // namespace

std::optional<std::uint64_t> startTicksOf(ProcFiles& files, std::int32_t pid) {
  return startTicksAt(files, ProcPath(pid, "stat").text());
}

std::optional<ThreadRights> ThreadRights::of(std::int32_t thread) {
  auto cpus = CpuSet::ofThread(thread);
  if (!cpus) return std::nullopt;
  return ThreadRights{.cpus = std::move(*cpus), .io = ioPriority(thread)};
}

CalmedProcess::CalmedProcess(const ProcessIdentity& identity, const LivingProcess& process,
                             std::uint64_t now, const CpuSet& online)
    : identity_(identity), process_(process), since_(now), online_(online) {}

int CalmedProcess::calm(ProcFiles& files, const CpuSet& cores,
                        const std::vector<CalmedProcess>& others) {
  const int error = calmThread(files, process_.pid, process_.startTicks, cores, others);
  if (error != 0) return error;
  std::vector<std::int32_t> seen{process_.pid};
  for (int round = 0; round < kMostRounds; ++round) {
    bool hasNew = false;
    for (const std::int32_t tid : threadsOf(files, process_.pid)) {
      if (std::find(seen.begin(), seen.end(), tid) != seen.end()) continue;
      seen.push_back(tid);
      hasNew = true;
      const auto rights = ThreadRights::of(tid);
      const auto startTicks = startTicksOf(files, process_.pid, tid);
      // One that came after the first look may have been started by a thread that was calm already.
      const bool isHeir = round > 0 && rights && makerOf(*rights) != nullptr;
      if (startTicks && !isHeir) calmThread(files, tid, *startTicks, cores, others);
    }
    if (!hasNew) break;
  }
  return 0;
}

int CalmedProcess::calmThread(ProcFiles& files, std::int32_t tid, std::uint64_t startTicks,
                              const CpuSet& cores, const std::vector<CalmedProcess>& others) {
  const auto found = ThreadRights::of(tid);
  if (!found) return ESRCH;
  int error = 0;
  const auto chosen = confine(tid, found->cpus, cores, error);
  if (!chosen) return error;
  // A class that only the superuser can give could not be given back.
  if (found->io && !isRealTime(*found->io)) setIoPriority(tid, kIdleIoPriority);

  CalmedThread calmed{
      .tid = tid, .startTicks = startTicks, .before = ownRights(*found, others), .cores = *chosen};
  calmed.ranEverywhere = !online_.empty() && online_.isWithin(calmed.before.cpus);
  if (startTicksOf(files, process_.pid, tid) == startTicks) {
    threads_.push_back(std::move(calmed));
    return 0;
  }
  // It ended in between, and its number can be somebody else's by now.
  calmed.before = *found;
  giveBack(tid, calmed);
  return ESRCH;
}

ThreadRights CalmedProcess::ownRights(const ThreadRights& found,
                                      const std::vector<CalmedProcess>& others) const {
  for (const CalmedProcess& other : others) {
    if (process_.startTicks < other.since_) continue;
    if (const CalmedThread* maker = other.makerOf(found)) return maker->before;
  }
  return found;
}

const CalmedProcess::CalmedThread* CalmedProcess::makerOf(const ThreadRights& rights) const {
  const auto maker =
      std::find_if(threads_.begin(), threads_.end(), [&](const CalmedThread& thread) {
        const bool wasMadeLast = thread.before.io && !isRealTime(*thread.before.io);
        return rights.cpus.isWithin(thread.cores) && (!wasMadeLast || isIdle(rights.io));
      });
  return maker == threads_.end() ? nullptr : &*maker;
}

const CalmedProcess::CalmedThread* CalmedProcess::find(std::int32_t tid,
                                                       std::uint64_t startTicks) const {
  const auto found = std::find_if(threads_.begin(), threads_.end(), [&](const CalmedThread& each) {
    return each.tid == tid && each.startTicks == startTicks;
  });
  return found == threads_.end() ? nullptr : &*found;
}

// Whether anything was given back.
bool CalmedProcess::giveBack(std::int32_t tid, const CalmedThread& calmed) {
  const auto now = ThreadRights::of(tid);
  if (!now) return false;
  bool changed = false;
  if (now->cpus.isWithin(calmed.cores) && now->cpus != calmed.before.cpus) {
    // A thread that ran everywhere runs on a CPU that is put in later, too.
    const CpuSet& cpus = calmed.ranEverywhere ? CpuSet::everywhere() : calmed.before.cpus;
    changed = cpus.applyTo(tid) == 0;
  }
  if (isIdle(now->io) && calmed.before.io && !isIdle(calmed.before.io) &&
      !isRealTime(*calmed.before.io)) {
    changed |= setIoPriority(tid, *calmed.before.io) == 0;
  }
  return changed;
}

void CalmedProcess::restore(ProcFiles& files) const {
  bool changed = true;
  // Until a look finds nothing more to give back: a thread can be started by one that is still
  // calm.
  for (int round = 0; round < kMostRounds && changed; ++round) {
    changed = false;
    for (const std::int32_t tid : threadsOf(files, process_.pid)) {
      const auto startTicks = startTicksOf(files, process_.pid, tid);
      const auto rights = ThreadRights::of(tid);
      if (!startTicks || !rights) continue;
      const CalmedThread* calmed = find(tid, *startTicks);
      if (calmed == nullptr) calmed = makerOf(*rights);
      if (calmed != nullptr) changed |= giveBack(tid, *calmed);
    }
  }
}

void CalmedProcess::restoreHeir(ProcFiles& files, const LivingProcess& heir,
                                bool isDescendant) const {
  if (heir.startTicks < since_) return;
  for (const std::int32_t tid : threadsOf(files, heir.pid)) {
    const auto rights = ThreadRights::of(tid);
    const CalmedThread* const maker = rights ? makerOf(*rights) : nullptr;
    if (maker == nullptr) continue;
    // On a machine whose every core is meant, the mark would be one that programs also set
    // themselves.
    const bool isMarked = maker->cores != maker->before.cpus && rights->cpus == maker->cores;
    if (isDescendant || isMarked) giveBack(tid, *maker);
  }
}

}  // namespace embrix
