// Calm, restore and terminate on Linux, for processes of the user's own. What calm takes and how it
// is given back is in calmed_process.h.
//
// A signal goes through a handle of the process (pidfd), and the start time is looked at after the
// handle was made: a pid that was given to another process is never signalled.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "base/descriptor.h"
#include "base/scheduler.h"
#include "host/process_control.h"
#include "hosts/linux/calmed_process.h"
#include "hosts/linux/cpu_set.h"
#include "hosts/linux/proc_files.h"

namespace embrix {

class LinuxProcessControl final : public ProcessControl {
 public:
  struct Options {
    std::string procRoot = "/proc";  // of this machine: calls go to the processes that it names
    std::string root = "/";          // where "/sys" is looked for
  };

  // The scheduler outlives this.
  explicit LinuxProcessControl(Scheduler& scheduler);
  LinuxProcessControl(Scheduler& scheduler, const Options& options);

  // Whoever is calm at the end gets its speed back.
  ~LinuxProcessControl() override;
  LinuxProcessControl(const LinuxProcessControl&) = delete;
  LinuxProcessControl& operator=(const LinuxProcessControl&) = delete;

  int calm(const ProcessIdentity& process) override;
  int restore(const ProcessIdentity& process) override;
  int terminate(const ProcessIdentity& process) override;

 private:
  struct Handle {
    Descriptor descriptor;
    LivingProcess process;
  };

  int open(const ProcessIdentity& process, Handle& handle);
  void forgetTheGone();
  void releaseHeirsSoon();
  void releaseHeirs();

  Scheduler& scheduler_;
  ProcFiles files_;
  std::uint64_t bootTime_;  // seconds since 1970
  std::string root_;
  std::vector<CalmedProcess> calmed_;
  std::vector<CalmedProcess> released_;  // whose heirs are still to be looked for
  Scheduled release_;
};

}  // namespace embrix
