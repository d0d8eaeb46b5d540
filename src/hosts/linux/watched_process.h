// One process of Linux, watched from tick to tick: its counters, and what may have changed since
// the last look. The table around it is in process_source.h. Sampling thread only.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "hosts/linux/proc_files.h"
#include "hosts/linux/proc_records.h"

namespace embrix {

// What all looks of one machine share.
struct ProcView {
  ProcFiles& files;
  std::uint64_t tickNS = 0;      // nanoseconds in a clock tick of stat
  std::uint64_t pageSize = 0;    // bytes
  bool hasRunClocks = false;     // see run_clock.h
  bool runTimeIsCounted = true;  // false on a kernel whose schedstat tells nothing
  bool isFirstTable = true;      // whoever is met now was there before this program looked
  double wattsPerBusyCore = 0;   // of this tick
  unsigned tick = 0;
};

class WatchedProcess {
 public:
  explicit WatchedProcess(std::int32_t pid) : pid_(pid) {}

  // Takes this tick's figures. A process that ended and whose pid another one has by now is that
  // other one from here on. False when there is none, or none that can be read.
  bool refresh(ProcView& view);

  // Reads the parent again though the process may not have run: its parent has gone.
  void rereadParent(ProcView& view);

  // Whether the parent or the name changed since the last call.
  bool takeRelationChange();

  std::int32_t pid() const { return pid_; }
  std::int32_t ppid() const { return ppid_; }  // the kernel's
  std::uint32_t uid() const { return uid_; }   // effective
  const std::string& commandName() const { return commandName_; }
  std::uint64_t startTicks() const { return startTicks_; }  // since boot
  std::uint64_t cpuNS() const { return cpuNS_; }            // all threads; never goes back
  std::uint64_t wakeups() const { return wakeups_; }        // all threads; never goes back
  std::uint64_t footprint() const { return footprint_; }    // bytes
  std::uint64_t energyNJ() const { return static_cast<std::uint64_t>(energyNJ_); }  // an estimate

 private:
  struct ThreadSlices {
    std::int32_t tid = 0;
    std::uint64_t slices = 0;
  };

  bool meet(ProcView& view);
  bool isDue(const ProcView& view) const;
  bool refreshByClock(ProcView& view);
  bool refreshBySchedStat(ProcView& view);
  bool refreshByStat(ProcView& view);
  bool takeStat(ProcView& view, std::optional<std::string_view> text);
  void takeSchedStat(const SchedStat& sched);
  void addTime(const ProcView& view, std::uint64_t cpuNS);
  void chooseFile(ProcView& view);
  void countThreadSlices(ProcView& view);
  void readUser(ProcView& view);

  std::int32_t pid_;
  std::int32_t ppid_ = 0;
  std::uint32_t uid_ = 0;
  std::string commandName_;
  std::uint64_t startTicks_ = 0;

  bool isKnown_ = false;          // stat was read at least once
  bool hasNewRelations_ = false;  // see takeRelationChange()
  bool hasRunClock_ = false;      // its clock could be read at the first look; no file settles
  bool hasSchedStat_ = true;      // schedstat could be read at the first look
  bool hasThreads_ = false;       // more than the leading one, when stat was last read
  bool readsStat_ = false;        // which file settles a tick: stat, or schedstat
  int watchedLooks_ = 0;          // so many more full looks read the user as well
  KeptFile counter_;              // the file that settles a tick; stat, once it has run

  std::uint64_t runNS_ = 0;            // of the leading thread, as last read
  std::uint64_t slices_ = 0;           // of the leading thread, as last read
  std::uint64_t ticksNS_ = 0;          // of all threads by stat, as last read
  std::vector<ThreadSlices> threads_;  // by tid; empty while the leading one is alone
  std::uint64_t cpuNS_ = 0;
  std::uint64_t wakeups_ = 0;
  std::uint64_t footprint_ = 0;
  double energyNJ_ = 0;
};

}  // namespace embrix
