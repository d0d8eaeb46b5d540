// What the program does to processes of the user: slow them down, give them their speed back, ask
// them to end. Main thread only; every call returns at once.
//
// A process is named by pid and start time, so that a pid that has been given to another process
// since is left alone. Whose process it is, the caller has looked at before; the system refuses
// what is not the user's besides.
#pragma once

#include <compare>
#include <cstdint>

namespace embrix {

struct ProcessIdentity {
  std::int32_t pid = 0;
  std::int64_t startTime = 0;  // whole seconds since 1970, as the process table tells it

  auto operator<=>(const ProcessIdentity&) const = default;
};

class ProcessControl {
 public:
  virtual ~ProcessControl() = default;

  // Each gives 0, or the errno of the failure; ESRCH when that process is gone.

  // Into the background: the process goes on, slower and cooler. Again for one that is there
  // already does nothing.
  virtual int calm(const ProcessIdentity& process) = 0;

  // Out of the background again, to what it was before.
  virtual int restore(const ProcessIdentity& process) = 0;

  // Asks the process to end (SIGTERM). It may refuse.
  virtual int terminate(const ProcessIdentity& process) = 0;
};

}  // namespace embrix
