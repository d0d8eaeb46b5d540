// The scheduler of a real machine, less the few things that each system does in its own way: its
// clocks, how its main loop is woken, and the rank of a thread.
#pragma once

#include <functional>
#include <map>
#include <mutex>
#include <optional>
#include <vector>

#include "base/scheduler.h"
#include "base/worker_threads.h"

namespace embrix {

// What the system does. Everything is called on the main thread, but where it says otherwise.
struct Clockwork {
  std::function<double()> wallTime;  // seconds since 1970
  // Seconds since the machine started, those that it was suspended among them: the clock that
  // pauses go by.
  std::function<double()> uptime;
  // Has the main loop call turn() at that uptime, or soon afterwards; absent for no more. The
  // newest call counts.
  std::function<void(std::optional<double>)> wakeAt;
  // Has the main loop call turn() as soon as it can. Any thread.
  std::function<void()> wakeNow;
  // The first thing in a thread for work of that priority, called on it.
  std::function<void(WorkPriority)> beginThread;
};

class LiveScheduler final : public Scheduler {
 public:
  explicit LiveScheduler(Clockwork clockwork);

  double wallTime() override { return clockwork_.wallTime(); }
  double uptime() override { return clockwork_.uptime(); }

  // Calls back for all timers whose time has come and for all work that is done.
  void turn();

 private:
  using Callback = std::function<void()>;
  struct Work;

  void runAfter(double seconds, Callback callback) override;
  void runInBackground(WorkPriority priority, Callback work, Callback then) override;
  void callDueTimers();
  void callForDoneWork();
  void wakeForNextTimer();
  void finish(Callback then);

  Clockwork clockwork_;
  std::multimap<double, Callback> timers_;  // by uptime

  std::mutex mutex_;  // for `done_`
  std::vector<Callback> done_;

  // Last, so that their threads have ended before anything that these use goes.
  WorkerThreads utility_;
  WorkerThreads userInitiated_;
};

}  // namespace embrix
