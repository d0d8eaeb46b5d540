// One process of Linux that was put into the background, and what its threads had before.
//
// What calm takes from a thread: the strong cores, and its place in the queue of the disk. Both can
// be given back by the user whose process it is. A raised nice value or the idle scheduling policy
// could not: lowering the one and leaving the other needs a privilege that a desktop's user does
// not have.
//
// Threads and processes that are started meanwhile inherit both. They are found at the end by what
// they carry, and get what their maker had.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "host/process_control.h"
#include "hosts/linux/cpu_set.h"
#include "hosts/linux/io_priority.h"
#include "hosts/linux/proc_files.h"

namespace embrix {

// What a thread has, as far as calm changes it.
struct ThreadRights {
  CpuSet cpus;
  std::optional<IoPriority> io;  // absent when the kernel does not tell

  static std::optional<ThreadRights> of(std::int32_t thread);
};

// A process as the table had it when calm or restore looked at it.
struct LivingProcess {
  std::int32_t pid = 0;
  std::uint64_t startTicks = 0;  // clock ticks since boot
};

class CalmedProcess {
 public:
  // `identity` is the name by which the program knows it. `now` is the time in clock ticks since
  // boot. `online`: all CPUs that run now.
  CalmedProcess(const ProcessIdentity& identity, const LivingProcess& process, std::uint64_t now,
                const CpuSet& online);

  // Puts every thread on the cores given, and last in the disk's queue. `others` are the processes
  // that were calmed before: what this one inherited from one of them is not its own. Gives 0, or
  // the errno of the leading thread; nothing is changed then.
  int calm(ProcFiles& files, const CpuSet& cores, const std::vector<CalmedProcess>& others);

  // Gives every thread what it had. What was changed by others since then is left.
  void restore(ProcFiles& files) const;

  // Gives back to a process that was started meanwhile what it inherited, if it did. A descendant
  // is known to be one; a process whose parents are gone must carry all the marks.
  void restoreHeir(ProcFiles& files, const LivingProcess& heir, bool isDescendant) const;

  const ProcessIdentity& identity() const { return identity_; }
  const LivingProcess& process() const { return process_; }

 private:
  struct CalmedThread {
    std::int32_t tid = 0;
    std::uint64_t startTicks = 0;
    ThreadRights before;
    bool ranEverywhere = false;  // on every CPU that was there
    CpuSet cores;                // where it was put
  };

  // The thread that such a one was started by, or could have been; null when calm had no part in
  // what it has.
  const CalmedThread* makerOf(const ThreadRights& rights) const;
  int calmThread(ProcFiles& files, std::int32_t tid, std::uint64_t startTicks, const CpuSet& cores,
                 const std::vector<CalmedProcess>& others);
  ThreadRights ownRights(const ThreadRights& found, const std::vector<CalmedProcess>& others) const;
  const CalmedThread* find(std::int32_t tid, std::uint64_t startTicks) const;
  static bool giveBack(std::int32_t tid, const CalmedThread& calmed);

  ProcessIdentity identity_;
  LivingProcess process_;
  std::uint64_t since_;
  CpuSet online_;
  std::vector<CalmedThread> threads_;  // the leading one first
};

// When the process started, in clock ticks since boot. Absent when there is none.
std::optional<std::uint64_t> startTicksOf(ProcFiles& files, std::int32_t pid);

}  // namespace embrix
