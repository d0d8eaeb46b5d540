// The process table of Linux, read below a proc file system's root.
//
// What makes a tick cheap: a process is not looked at again until it has run. A single-threaded
// process whose time on a CPU stands still cannot have changed its name, its threads or its time,
// so one small read through a kept handle settles it. Only what its owner cannot see it do is
// watched for from outside: its parent's death, and pages that the kernel takes away.
//
// The counters, in the words of ProcessSource: times are nanoseconds; wakeups are the times its
// threads were put on a CPU; the footprint is the resident set; the energy is estimated
// (energy_estimate.h). A process that ends and whose pid starts again is a new process.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "base/hash_map.h"
#include "host/process_source.h"
#include "hosts/linux/energy_estimate.h"
#include "hosts/linux/proc_files.h"
#include "hosts/linux/proc_records.h"

namespace embrix {

class LinuxProcessSource final : public ProcessSource {
 public:
  struct Options {
    // Files kept open at most; absent for what the process's own limit allows.
    std::optional<int> keptFiles;
    // The package's energy counter, in microjoules.
    std::string packageEnergyFile = "/sys/class/powercap/intel-rapl:0/energy_uj";
  };

  explicit LinuxProcessSource(const std::string& procRoot = "/proc");
  LinuxProcessSource(const std::string& procRoot, const Options& options);

  double ticksToNS() override { return 1.0; }
  void read(std::vector<RawProcess>& table) override;
  std::optional<std::string> executablePath(std::int32_t pid) override;

 private:
  struct ThreadSlices {
    std::int32_t tid = 0;
    std::uint64_t slices = 0;
  };

  // What is known of one process from tick to tick.
  struct Slot {
    std::int32_t pid = 0;
    std::int32_t ppid = 0;          // the kernel's
    std::int32_t reportedPPID = 0;  // 1 below a session launcher
    std::uint32_t uid = 0;
    std::uint64_t startTicks = 0;
    std::string commandName;
    bool isKnown = false;       // stat was read at least once
    bool hasSchedStat = true;   // schedstat could be read at the first look
    bool hasThreads = false;    // more than the leading one, when stat was last read
    bool readsStat = false;     // which file settles a tick: stat, or schedstat
    int watchedLooks = 0;       // so many more full looks read the user as well
    KeptFile counter;           // the file that settles a tick
    std::uint64_t runNS = 0;    // of the leading thread, as last read
    std::uint64_t ticksNS = 0;  // of all threads by stat, as last read
    std::uint64_t cpuNS = 0;
    std::uint64_t slices = 0;  // of the leading thread, as last read
    std::uint64_t wakeups = 0;
    std::uint64_t footprint = 0;
    double energyNJ = 0;
    std::vector<ThreadSlices> threads;  // of a multithreaded process, by tid
  };

  bool listChanged();
  void takeList();
  // Each returns false when the process is gone or cannot be read.
  bool refresh(Slot& slot);
  bool refreshBySchedStat(Slot& slot);
  bool refreshByStat(Slot& slot);
  bool meet(Slot& slot);
  bool takeStat(Slot& slot, std::optional<std::string_view> text);
  void takeSchedStat(Slot& slot, const SchedStat& sched);
  void addTime(Slot& slot, std::uint64_t ranNS);
  void chooseFile(Slot& slot);
  void countThreadSlices(Slot& slot);
  void readUser(Slot& slot);
  void reparent();
  void updateEstimate();

  ProcFiles files_;
  std::string packageEnergyFile_;
  std::uint64_t bootTime_ = 0;    // seconds since 1970; read once, so that start times stand still
  std::uint64_t tickNS_ = 0;      // nanoseconds in a clock tick
  std::uint64_t pageSize_ = 0;    // bytes
  bool runTimeIsCounted_ = true;  // false on a kernel whose schedstat tells nothing
  EnergyEstimate estimate_;

  KeptFile loadAverage_;
  std::string lastLoad_;  // the part of /proc/loadavg that moves with the table
  unsigned ticksSinceList_ = 0;
  unsigned tick_ = 0;
  bool isFirstTable_ = true;
  bool parentsMoved_ = false;  // some process came, went or changed its name
  std::vector<std::int32_t> pids_;
  std::vector<std::int32_t> tids_;
  std::vector<Slot> slots_;  // ascending by pid, the order of the table
  std::vector<Slot> merged_;
  HashMap<std::int32_t, const Slot*> byPID_;
};

}  // namespace embrix
