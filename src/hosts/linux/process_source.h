// The process table of Linux, read below a proc file system's root.
//
// What makes a tick cheap: a process is not looked at again until it has run. One whose time on a
// CPU stands still cannot have changed its name, its threads or its time, and the kernel's clock of
// the process tells that without a file (run_clock.h). Where there are no such clocks, a small read
// through a kept handle settles a process of one thread (watched_process.h). Only what its owner
// cannot see it do is watched for from outside: its parent's death, and pages that the kernel takes
// away. And the list of processes is not taken while the kernel gave no new pid.
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
#include "hosts/linux/watched_process.h"

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
  struct Row {
    WatchedProcess process;
    std::int32_t ppid = 0;  // as reported: 1 below a session launcher
  };

  void updateEstimate();
  bool listChanged();
  void takeList();
  void refreshRows();
  void settleParents();

  ProcFiles files_;
  ProcView view_;
  std::string packageEnergyFile_;
  std::uint64_t bootTime_;  // seconds since 1970; read once, so that start times stand still
  EnergyEstimate estimate_;

  KeptFile loadAverage_;
  std::string lastLoad_;  // the part of /proc/loadavg that moves with the table
  unsigned ticksSinceList_ = 0;
  bool parentsMoved_ = false;  // some process came, went, changed its name or its parent
  std::vector<Row> rows_;      // ascending by pid, the order of the table

  // Storage that outlives a tick only to be used again.
  std::vector<std::int32_t> pids_;
  std::vector<Row> merged_;
  HashMap<std::int32_t, const WatchedProcess*> byPID_;
};

}  // namespace embrix
